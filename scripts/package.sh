#!/bin/bash
# SPDX-License-Identifier: MIT
# Usage: package.sh [--built] [FOLDER]
# Builds and packs velmora-VERSION-win64.zip into the folder (build/package): the adapter
# of Visual Studio where that built it, else both trial builds. With --built nothing is
# built. The same commit gives the same bytes.
set -euo pipefail
cd "$(dirname "$0")/.."

build=yes
if [ "${1:-}" = --built ]; then
    build=
    shift
fi
folder=${1:-build/package}
mkdir -p "$folder"
folder=$(cd "$folder" && pwd)
version=$(sed -nE 's/^project\(.* VERSION ([0-9.]+).*/\1/p' CMakeLists.txt)
stage=$folder/stage

# One time for every file and for what stands inside the archive; in no zone.
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct 2>/dev/null || echo 315532800)
export SOURCE_DATE_EPOCH TZ=UTC
umask 022

visual_studio=build/windows-msvc/bin/Release
# put FOLDER FILE...
put() {
    local file
    mkdir -p "$stage/$1"
    for file in "${@:2}"; do
        install -m 644 "$file" "$stage/$1/${file##*/}"
    done
}

# licence NAME PACKAGE...: the text that came with the first package that is installed.
licences=${VELMORA_LICENCES:-/usr/share/doc}
licence() {
    local package
    for package in "${@:2}"; do
        if [ -f "$licences/$package/copyright" ]; then
            install -m 644 "$licences/$package/copyright" "$stage/licences/$1.txt"
            return
        fi
    done
    echo "package.sh: no licence text of $1 in $licences" >&2
    exit 1
}

# camhost's own texts, as the program in the package gives them.
put_camhost_texts() {
    local run=(scripts/wine_run.sh)
    case $(uname -s) in
    MINGW* | MSYS* | CYGWIN*) run=() ;;
    esac
    "${run[@]}" "$stage/camhost/camhost.exe" manual >"$stage/camhost/camhost.1"
    "${run[@]}" "$stage/camhost/camhost.exe" completion bash >"$stage/camhost/completion.bash"
    "${run[@]}" "$stage/camhost/camhost.exe" completion powershell >"$stage/camhost/completion.ps1"
    chmod 644 "$stage"/camhost/*
}

put_visual_studio() {
    put adapter $visual_studio/velmora_adapter.dll
    put lib build/windows-msvc/adapter/Release/velmora_adapter.lib
    put camhost $visual_studio/camhost.exe
    put virtual-cameras $visual_studio/ORV_CAPLB11_x64.dll
    install -m 644 package/README_visual_studio.txt "$stage/README.txt"
}

put_trial_builds() {
    if [ -n "$build" ]; then
        scripts/setup.sh test
        scripts/build.sh windows velmora_adapter virtual_cameras camhost
        scripts/build.sh windows-msvc-abi velmora_adapter virtual_cameras
    fi
    local mingw=build/windows/bin abi=build/windows-msvc-abi/bin
    put adapter-trial-mingw-w64 $mingw/velmora_adapter.dll
    put adapter-trial-msvc-abi $abi/velmora_adapter.dll
    put lib build/windows-msvc-abi/adapter/velmora_adapter.lib
    put camhost $mingw/camhost.exe
    put virtual-cameras/mingw-w64 $mingw/ORV_CAPLB11_x64.dll
    put virtual-cameras/msvc-abi $abi/ORV_CAPLB11_x64.dll
    install -m 644 package/README_trial.txt "$stage/README.txt"
    licence gcc-runtime gcc-mingw-w64-base
    licence mingw-w64-runtime mingw-w64-x86-64-dev
    licence libc++ libc++-14-dev
    licence wine libwine-dev
    # Named by the two above.
    put licences /usr/share/common-licenses/GPL-3 /usr/share/common-licenses/LGPL-2.1
}

rm -rf "$stage"
put include/velmora include/velmora/*.h
put example package/example/first_frame.c
put . README.md CONTRIBUTING.md
put docs docs/*.md
put docs/images docs/images/*
mkdir -p "$stage/licences"
install -m 644 LICENSE "$stage/licences/velmora.txt"
licence Boost libboost1.74-dev boost-beast
licence nlohmann-json nlohmann-json3-dev nlohmann-json
licence CLI11 libcli11-dev cli11
licence stb libstb-dev stb
licence tomlplusplus libtomlplusplus-dev tomlplusplus
if [ -f $visual_studio/velmora_adapter.dll ]; then
    put_visual_studio
else
    put_trial_builds
fi
put_camhost_texts

(cd "$stage" && find . -type f ! -name SHA256SUMS | LC_ALL=C sort | sed 's|^\./||' |
    xargs -d '\n' sha256sum >"$folder/SHA256SUMS" && mv "$folder/SHA256SUMS" .)
find "$stage" -exec touch -d "@$SOURCE_DATE_EPOCH" {} +
cpack --config package/cpack.cmake -B "$folder" -D CPACK_PACKAGE_VERSION="$version" \
    -D CPACK_PACKAGE_FILE_NAME="velmora-$version-win64" \
    -D CPACK_INSTALLED_DIRECTORIES="$stage;/" >"$folder/cpack.log" 2>&1 ||
    { cat "$folder/cpack.log" >&2; exit 1; }
rm -rf "$folder/_CPack_Packages" "$stage"
(cd "$folder" && sha256sum "velmora-$version-win64.zip")
