# Defines Qt6::Svg.
if(NOT TARGET Qt6::Svg)
  get_filename_component(SVG_ROOT ${CMAKE_CURRENT_LIST_DIR}/../../.. ABSOLUTE)
  add_library(Qt6::Svg STATIC IMPORTED)
  set_target_properties(Qt6::Svg PROPERTIES
    IMPORTED_LOCATION ${SVG_ROOT}/lib/libQt6Svg.a
    INTERFACE_INCLUDE_DIRECTORIES "${SVG_ROOT}/include;${SVG_ROOT}/include/QtSvg"
    INTERFACE_LINK_LIBRARIES Qt6::Gui)
endif()
