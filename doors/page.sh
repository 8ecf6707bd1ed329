# shellcheck shell=bash
# Builds the page. Source it with the repository root as the working directory.
. doors/build.sh

# shellcheck disable=SC2034 # for who sources this
page=build-web/page

# Where a Node of another origin stands before Debian's, Emscripten misses its modules.
build_page() {
    local emscripten
    emscripten=$(dirname "$(readlink -f "$(command -v emcc)")")
    export NODE_PATH=${NODE_PATH:+$NODE_PATH:}/usr/share/nodejs
    build build-web "the page" all "${for_viewers[@]}" \
        "-DCMAKE_TOOLCHAIN_FILE=$emscripten/cmake/Modules/Platform/Emscripten.cmake"
}
