# Resources of the files for Windows: version, icon and, in the module, the property list.
enable_language(RC)

find_program(RSVG_CONVERT rsvg-convert)
set(ICON ${CMAKE_CURRENT_BINARY_DIR}/app.ico)
if(RSVG_CONVERT)
  set(ICON_SOURCE ${CMAKE_SOURCE_DIR}/resources/icons/app.svg)
  set(ICON_TOOL ${CMAKE_SOURCE_DIR}/tools/make_icon.py)
  add_custom_command(OUTPUT ${ICON}
    COMMAND Python3::Interpreter ${ICON_TOOL} ${ICON_SOURCE} ${ICON} ${RSVG_CONVERT}
    DEPENDS ${ICON_SOURCE} ${ICON_TOOL}
    VERBATIM)
  # One target makes it for all programs.
  add_custom_target(vellum-icon DEPENDS ${ICON})
else()
  message(STATUS "rsvg-convert is missing: the programs have no icon")
endif()

# Adds the resources to a target: its version, and the lines FURTHER_RESOURCES of a resource script. Further arguments
# are the files that these name.
function(vellum_add_resources TARGET FILE_NAME FILE_TYPE FILE_DESCRIPTION FURTHER_RESOURCES)
  set(SCRIPT ${CMAKE_CURRENT_BINARY_DIR}/${TARGET}.rc)
  configure_file(${CMAKE_SOURCE_DIR}/app/win32/Resources.rc.in ${SCRIPT} @ONLY)
  set_source_files_properties(${SCRIPT} PROPERTIES OBJECT_DEPENDS "${ARGN}")
  target_sources(${TARGET} PRIVATE ${SCRIPT})
endfunction()

function(vellum_add_program_resources TARGET FILE_DESCRIPTION)
  if(RSVG_CONVERT)
    add_dependencies(${TARGET} vellum-icon)
    vellum_add_resources(${TARGET} ${TARGET}.exe VFT_APP ${FILE_DESCRIPTION} "1 ICON \"${ICON}\"" ${ICON})
  else()
    vellum_add_resources(${TARGET} ${TARGET}.exe VFT_APP ${FILE_DESCRIPTION} "")
  endif()
endfunction()
