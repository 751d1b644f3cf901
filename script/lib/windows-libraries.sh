# SPDX-License-Identifier: GPL-3.0-or-later
# What the Windows build needs and Debian has no MinGW package of, in build/windows-libraries: libpng, libjpeg-turbo and
# GoogleTest, built from Debian's sources, and the headers of the libraries that are headers alone.
# shellcheck shell=bash disable=SC2016 # apt expands what is in $()

# download_sources FOLDER PACKAGE...: Debian's newest sources that can be had, unpacked there; the machine's own lists of
# package sources stay as they are.
download_sources()
{
    local folder=$1 options package version
    mkdir -p "$folder/lists/partial" "$folder/cache/archives/partial"

    # As root apt would download as another user, who may not write there.
    options=(-q -q -o Dir::Etc::SourceList="$folder/sources.list" -o Dir::Etc::SourceParts=/dev/null
             -o Dir::State::Lists="$folder/lists" -o Dir::Cache="$folder/cache" -o APT::Sandbox::User="$(id -un)")

    apt-get indextargets --format \
        'deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $(REPO_URI) $(RELEASE) $(COMPONENT)' \
        'Created-By: Packages' 'Origin: Debian' | sort -u >"$folder/sources.list"
    [[ -s $folder/sources.list ]] || fail "this machine has no sources of Debian packages"
    apt-get "${options[@]}" update </dev/null || fail "apt-get update, of the sources"

    for package in "${@:2}"; do
        # A mirror may name a version that it has not got yet.
        while read -r version; do
            (cd "$folder" && apt-get "${options[@]}" source --only-source "$package=$version" </dev/null >"$folder/log" 2>&1) &&
                break
        done < <(apt-cache "${options[@]}" showsrc --only-source "$package" | sed -n 's/^Version: //p' | sort --reverse --version-sort)

        compgen -G "$folder/$package-*.*" >/dev/null || fail "no sources of $package: $(tail -n 3 "$folder/log")"
    done
}

# build_library SOURCE SETTING...: builds and installs into $new/prefix.
build_library()
{
    local build=$new/build/${1##*/}
    mkdir -p "$build"
    say "builds ${1##*/} for Windows"
    {
        cmake -S "$1" -B "$build" -G Ninja --toolchain "$WQV_ROOT/cmake/MinGW.cmake" -D CMAKE_BUILD_TYPE=Release \
            -D CMAKE_FIND_LIBRARY_SUFFIXES=.a -D CMAKE_INSTALL_PREFIX="$new/prefix" "${@:2}" &&
            cmake --build "$build" --target install
    } </dev/null >"$build/log" 2>&1 || fail "$(tail -n 20 "$build/log")"
}

# make_windows_libraries: does nothing when they are there.
make_windows_libraries()
{
    local prefix=$WQV_ROOT/build/windows-libraries new=$WQV_ROOT/build/windows-libraries.new
    [[ ! -d $prefix ]] || return 0

    rm -rf "$new"
    mkdir -p "$new/prefix"/{include,share/cmake}
    download_sources "$new/sources" libpng1.6 libjpeg-turbo

    # Without assembler sources, which take another tool; three small pictures are all that they are for.
    build_library "$(compgen -G "$new/sources/libpng1.6-*.*")" -D PNG_SHARED=OFF -D PNG_TESTS=OFF -D PNG_EXECUTABLES=OFF
    build_library "$(compgen -G "$new/sources/libjpeg-turbo-*.*")" -D ENABLE_SHARED=OFF -D WITH_TURBOJPEG=OFF -D WITH_SIMD=OFF
    build_library /usr/src/googletest

    # JUCE (7.0.5) includes one header more, as Debian's own package has it, and all of them inside a namespace, which has to
    # have the type "boolean" too. Said twice, it is the same as Windows's.
    cp "$new"/sources/libjpeg-turbo-*/jpegint.h "$new/prefix/include"
    sed -i '/#ifndef __RPCNDR_H__/d; /^typedef unsigned char boolean;/{n;d}' "$new/prefix/include/jconfig.h"

    cp -r /usr/include/{CLI,nlohmann} "$new/prefix/include"
    cp -r /usr/share/cmake/{CLI11,nlohmann_json} "$new/prefix/share/cmake"
    mv "$new/prefix" "$prefix"
    rm -rf "$new"
}
