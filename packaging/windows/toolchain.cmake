# Compiles for 64-bit Windows with Debian's cross compiler, in its form with std::thread. The libraries lie where
# build_libraries.sh has built them: in VELLUM_WINDOWS_ROOT of the environment.
if(NOT DEFINED ENV{VELLUM_WINDOWS_ROOT})
  set(ENV{VELLUM_WINDOWS_ROOT} $ENV{HOME}/.cache/vellumcraft/windows/root)
endif()
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
# The compiler does not align the stack for AVX as its own moves require it (GCC's bug 54412).
# It also takes for granted which registers an inline function leaves alone, though the linker may keep the copy of another
# file, which was compiled otherwise: hidden functions count as bound to their own file, but not in this object format.
set(CMAKE_C_FLAGS_INIT "-Wa,-muse-unaligned-vector-move -fno-ipa-ra")
set(CMAKE_CXX_FLAGS_INIT "-Wa,-muse-unaligned-vector-move -fno-ipa-ra")

set(CMAKE_FIND_ROOT_PATH $ENV{VELLUM_WINDOWS_ROOT} /usr/x86_64-w64-mingw32)
set(CMAKE_PREFIX_PATH $ENV{VELLUM_WINDOWS_ROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_LIBDIR} $ENV{VELLUM_WINDOWS_ROOT}/lib/pkgconfig:$ENV{VELLUM_WINDOWS_ROOT}/share/pkgconfig)
set(ZLIB_USE_STATIC_LIBS ON)
# Qt's own tools run on this system.
set(QT_HOST_PATH /usr)
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/x86_64-linux-gnu/cmake)
# FindOpenMP would take the import library of a DLL.
execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libgomp.a OUTPUT_VARIABLE OpenMP_gomp_LIBRARY
  OUTPUT_STRIP_TRAILING_WHITESPACE)
set(OpenMP_gomp_LIBRARY ${OpenMP_gomp_LIBRARY} CACHE FILEPATH "" FORCE)
