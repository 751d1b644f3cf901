# SPDX-License-Identifier: GPL-3.0-or-later
# The packages for Windows: an installer, and a folder to unpack.
# shellcheck shell=bash disable=SC2154 # script/package sets scratch

# What every Windows 10 has.
windows_libraries='advapi32|cfgmgr32|comctl32|comdlg32|dxgi|gdi32|hid|imm32|kernel32|msvcrt|ole32|oleaut32|rpcrt4|setupapi'
windows_libraries+='|shell32|shlwapi|user32|version|wininet|winmm|ws2_32|wsock32'

# expect_own PROGRAM: it needs nothing but the system's own libraries, and lets the system protect it.
expect_own()
{
    local facts unexpected flag
    facts=$(x86_64-w64-mingw32-objdump --private-headers "$1")
    unexpected=$(sed -n 's/^[[:space:]]*DLL Name: //p' <<<"$facts" | grep -iE -v "^($windows_libraries)\.dll$") || true
    [[ -z $unexpected ]] || fail "${1##*/} needs" "$unexpected"

    for flag in HIGH_ENTROPY_VA DYNAMIC_BASE NX_COMPAT; do
        grep -q "$flag" <<<"$facts" || fail "${1##*/} is not made with $flag"
    done

    # Without it the system has to load it where the linker said.
    x86_64-w64-mingw32-objdump --section-headers "$1" | grep -q '\.reloc' || fail "${1##*/} cannot be moved in memory"
}

# sign FILE: by the command that WQV_SIGN_WINDOWS names, if it names one.
sign()
{
    [[ -z ${WQV_SIGN_WINDOWS:-} ]] || $WQV_SIGN_WINDOWS "$1" || fail "signing ${1##*/}"
}

# stage FOLDER COMPONENT...: what the build installs there, signed and without symbols for debuggers.
stage()
{
    local component program

    for component in "${@:2}"; do
        cmake --install build/windows-release --strip --prefix "$1" --component "$component" >/dev/null || fail "installing"
    done

    for program in "$1"/*.exe; do
        expect_own "$program"
        sign "$program"
    done
}

# package_windows FOLDER CMAKE_SETTING...
package_windows()
{
    local folder=$1 version name program said contents=$scratch/program all

    "$WQV_ROOT/script/bootstrap" windows
    cmake --preset windows-release "${@:2}" </dev/null || fail "configuring"
    cmake --build --preset windows-release --parallel "$(jobs_at_once)" </dev/null || fail "building"

    version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' build/windows-release/CMakeCache.txt)
    name=wqv-krv20-updater-$version-windows-x86_64
    all=$scratch/$name
    stage "$contents" program
    stage "$all" program tools

    mkdir -p "$folder"
    rm -f "$folder"/wqv-krv20-updater-*-windows-x86_64*
    makensis -V2 -NOCD -WX -DVALUES="$WQV_ROOT/build/windows-release/packaging/installer.nsh" -DFILES="$contents" \
        -DOUTPUT="$folder/$name-setup.exe" ${WQV_SIGN_WINDOWS:+-DSIGN="$WQV_SIGN_WINDOWS"} \
        packaging/windows/installer.nsi </dev/null || fail "makensis"
    sign "$folder/$name-setup.exe"
    (cd "$scratch" && zip -q -X -r "$folder/$name.zip" "$name") || fail "zip"

    for program in "$folder/$name-setup.exe" "$folder/$name.zip"; do
        say "$(du -h "$program" | cut -f 1) $program"
    done

    if [[ -f $contents/WQV-KRV20_UP.upd ]]; then
        # On Windows an argument that begins with a slash is an option.
        said=$(cd "$all" && "$WQV_ROOT/script/lib/wine" wqv-package.exe verify WQV-KRV20_UP.upd </dev/null) ||
            fail "the firmware update is damaged"
        say "PASSED: the packages for Windows hold the program and ${said#*WQV-KRV20_UP.upd: }"
    else
        say "PASSED: the packages for Windows hold the program alone, WITHOUT a firmware update"
    fi
}
