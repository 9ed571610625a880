#!/usr/bin/env bash
# Builds the libraries that Debian has no Windows form of, static, from Debian's source packages.
# Usage: build_libraries.sh FOLDER [small]. Sources, build folders and the result (FOLDER/root) are kept in FOLDER, so a
# later call builds only what is missing. With `small` Qt consists of QtCore and QtGui, without plug-ins for windows.
set -euo pipefail
HERE=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
mkdir -p "$1"
CACHE=$(cd "$1" && pwd)
ROOT=$CACHE/root
export VELLUM_WINDOWS_ROOT=$ROOT

# apt reads a list of its own, so the lists of the system stay as they are.
APT_OPTIONS=(-qq -o "Dir::Etc::sourcelist=$CACHE/apt/sources.list" -o Dir::Etc::sourceparts=/dev/null
    -o "Dir::State::lists=$CACHE/apt/lists")

# Reads the list of Debian's source packages, once.
update_sources() {
    mkdir -p "$CACHE/apt/lists/partial"
    echo 'deb-src http://deb.debian.org/debian bookworm main' >"$CACHE/apt/sources.list"
    [ -n "$(ls "$CACHE"/apt/lists/*Sources* 2>/dev/null)" ] || apt-get "${APT_OPTIONS[@]}" update
}

# Unpacks a source package of Debian, with Debian's patches, into $CACHE/src/NAME.
fetch() {
    local name=$1
    [ -e "$CACHE/src/$name/.complete" ] && return
    rm -rf "$CACHE/src/$name"
    mkdir -p "$CACHE/apt/$name" "$CACHE/src"
    (cd "$CACHE/apt/$name" && apt-get "${APT_OPTIONS[@]}" source --download-only "$name" &&
        dpkg-source --no-check -x ./*.dsc "$CACHE/src/$name" >/dev/null)
    touch "$CACHE/src/$name/.complete"
}

# Configures, builds and installs a CMake project. done_NAME marks what is installed.
cmake_install() {
    local name=$1 source=$2
    shift 2
    [ -e "$CACHE/done_$name" ] && return
    echo "building $name for Windows"
    cmake -S "$source" -B "$CACHE/build/$name" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$HERE/toolchain.cmake" \
        -DCMAKE_INSTALL_PREFIX="$ROOT" -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=OFF \
        -DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache "$@" >"$CACHE/$name.log" 2>&1 ||
        { tail -30 "$CACHE/$name.log"; exit 1; }
    cmake --build "$CACHE/build/$name" -j "$(nproc)" >>"$CACHE/$name.log" 2>&1 || { tail -30 "$CACHE/$name.log"; exit 1; }
    cmake --install "$CACHE/build/$name" --strip >>"$CACHE/$name.log" 2>&1
    touch "$CACHE/done_$name"
}

# Debian ships its Qt without the header of WinTab, and Qt prefers pointer messages anyway. Its reader of WinTab is left
# out; the application has its own.
leave_out_wintab() {
    local plugin=$CACHE/src/qt6-base/src/plugins/platforms/windows
    [ -e "$plugin/qwindowstabletsupport.cpp" ] || return 0
    rm "$plugin"/qwindowstabletsupport.*
    sed -i '/CONDITION QT_FEATURE_tabletevent/,/^)/d' "$plugin/CMakeLists.txt"
    sed -i 's/#if QT_CONFIG(tabletevent)/#if 0/' "$plugin/qwindowscontext.cpp"
    sed -i '/qwindowstabletsupport/d' "$plugin/qwindowspointerhandler.cpp"
}

# Without widgets nothing is shown, and the plug-ins for windows are not built.
leave_out_plugins_without_widgets() {
    sed -i 's/^if(TARGET Qt::Gui)$/if(TARGET Qt::Widgets)/' "$CACHE/src/qt6-base/src/plugins/CMakeLists.txt"
}

build_qt() {
    local name=$1
    shift
    fetch qt6-base
    leave_out_wintab
    leave_out_plugins_without_widgets
    cmake_install "$name" "$CACHE/src/qt6-base" -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TESTS=OFF \
        -DFEATURE_pkg_config=OFF -DFEATURE_sql=OFF -DFEATURE_dbus=OFF -DFEATURE_opengl=OFF -DINPUT_opengl=no \
        -DFEATURE_vulkan=OFF -DFEATURE_printsupport=OFF -DFEATURE_concurrent=OFF -DFEATURE_xml=OFF -DFEATURE_zstd=OFF \
        -DFEATURE_icu=OFF -DFEATURE_glib=OFF -DFEATURE_ssl=OFF -DFEATURE_schannel=OFF -DFEATURE_http=OFF \
        -DFEATURE_gssapi=OFF -DFEATURE_direct2d=OFF -DFEATURE_directwrite3=OFF "$@"
    # A hook for debuggers is exported from whatever contains the library; the module may export PluginMain alone.
    x86_64-w64-mingw32-objcopy --remove-section .drectve "$ROOT/lib/libQt6Core.a"
}

# The tarball of Debian's qt6-svg is missing on some mirrors. The module of Qt 5 draws the same; a patch brings it to Qt 6.
build_svg() {
    fetch qtsvg-opensource-src
    local source=$CACHE/src/qtsvg-opensource-src
    if [ ! -e "$source/.ported" ]; then
        sed -i 's/QXmlStreamStringRef/QString/g; s/QStringRef/QStringView/g' "$source"/src/svg/*.{h,cpp}
        patch -s -p0 -d "$source" <"$HERE/svg/qt6.patch"
        touch "$source/.ported"
    fi
    cmake_install svg "$HERE/svg" -DSVG_SOURCE="$source"
}

# TIFF, WebP and others, which Debian has in a package of their own.
build_formats() {
    fetch qt6-imageformats
    cmake_install formats "$CACHE/src/qt6-imageformats"
}

build_giflib() {
    [ -e "$CACHE/done_giflib" ] && return
    fetch giflib
    local name objects=()
    mkdir -p "$ROOT/include" "$ROOT/lib" "$CACHE/build/giflib"
    for name in dgif_lib egif_lib gif_err gif_hash gifalloc openbsd-reallocarray; do
        x86_64-w64-mingw32-gcc-posix -std=gnu99 -O2 -c "$CACHE/src/giflib/$name.c" -o "$CACHE/build/giflib/$name.o"
        objects+=("$CACHE/build/giflib/$name.o")
    done
    x86_64-w64-mingw32-ar rcs "$ROOT/lib/libgif.a" "${objects[@]}"
    cp "$CACHE/src/giflib/gif_lib.h" "$ROOT/include"
    touch "$CACHE/done_giflib"
}

# Libraries of headers alone are the same everywhere. All of /usr/include would bring this system's headers.
link_headers() {
    mkdir -p "$ROOT/include" "$ROOT/lib/cmake/nlohmann_json"
    ln -sfn /usr/include/boost "$ROOT/include/boost"
    ln -sfn /usr/include/nlohmann "$ROOT/include/nlohmann"
    cat >"$ROOT/lib/cmake/nlohmann_json/nlohmann_jsonConfig.cmake" <<'TXT'
if(NOT TARGET nlohmann_json::nlohmann_json)
  add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED)
  get_filename_component(JSON_ROOT ${CMAKE_CURRENT_LIST_DIR}/../../.. ABSOLUTE)
  set_target_properties(nlohmann_json::nlohmann_json PROPERTIES INTERFACE_INCLUDE_DIRECTORIES ${JSON_ROOT}/include)
endif()
TXT
}

build_others() {
    build_giflib
    fetch highway
    cmake_install highway "$CACHE/src/highway" -DHWY_ENABLE_TESTS=OFF -DHWY_ENABLE_EXAMPLES=OFF -DHWY_ENABLE_CONTRIB=OFF
    cmake_install googletest /usr/src/googletest
}

link_headers
update_sources
# Qt's configuration uses one processor; the other one builds the small libraries meanwhile.
build_others &
OTHERS=$!
if [ "${2:-}" = small ]; then
    # Quick to build; the full library takes its place.
    off=(widgets network testlib harfbuzz freetype accessibility systemtrayicon filesystemmodel standarditemmodel
        proxymodel animation movie picture undocommand pdf textodfwriter textmarkdownreader textmarkdownwriter
        texthtmlparser cssparser ico jpeg gif)
    off=("${off[@]/#/-DFEATURE_}")
    [ -e "$CACHE/done_qt" ] || build_qt qt-small "${off[@]/%/=OFF}" \
        -DQT_USE_DEFAULT_CMAKE_OPTIMIZATION_FLAGS=ON -DCMAKE_C_FLAGS_RELEASE=-O0 -DCMAKE_CXX_FLAGS_RELEASE=-O0
else
    build_qt qt
    build_svg
    build_formats
fi
wait $OTHERS
