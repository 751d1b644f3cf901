# SPDX-License-Identifier: GPL-3.0-or-later
# Reads from a program for Linux whether it has the protections of cmake/Hardening.cmake.
# shellcheck shell=bash

# missing_protections PROGRAM: a line for each that it lacks.
missing_protections()
{
    local elf
    elf=$(readelf --wide --file-header --program-headers --dynamic --dyn-syms "$1")

    has() { grep -qE "$1" <<<"$elf"; }
    has 'Flags:.* PIE' || echo "position-independent executable"
    has '^ *GNU_RELRO ' || echo "tables that become read-only (RELRO)"
    has 'Flags:.*\bNOW\b' || echo "all symbols bound at the start (BIND_NOW)"
    has '^ *GNU_STACK .* RW  ' || echo "stack that cannot be executed"
    ! has '^ *LOAD .* RWE ' || echo "memory either writable or executable"
    has '__stack_chk_fail@' || echo "stack protector"
    has '__[a-z_]+_chk@' || echo "_FORTIFY_SOURCE"
    has '__glibcxx_assert_fail' || echo "_GLIBCXX_ASSERTIONS"

    # Marks at the targets of jumps: endbr64 of Intel, and paciasp of ARM. That of the whole program needs a C library that was
    # compiled so, which Debian's has not been; some few are always there, of the compiler's library.
    case $(sed -n 's/^ *Machine: *//p' <<<"$elf") in
        *X86-64) has_marks "$1" '\xf3\x0f\x1e\xfa' || echo "control-flow protection (-fcf-protection)" ;;
        AArch64) has_marks "$1" '\x3f\x23\x03\xd5' || echo "control-flow protection (-mbranch-protection)" ;;
    esac
}

has_marks()
{
    (($(LC_ALL=C grep -aoP "$2" "$1" | wc -l) >= 100))
}

# expect_hardened FOLDER: all programs in it.
expect_hardened()
{
    local program missing faults=() programs=()

    while IFS= read -r program; do
        [[ $(head -c 4 "$program" | tr -d '\0') == $'\x7fELF' ]] || continue
        programs+=("${program##*/}")
        missing=$(missing_protections "$program" | paste -sd , | sed 's/,/, /g')
        [[ -z $missing ]] || faults+=("${program##*/} lacks: $missing.")
    done < <(find "$1" -type f -perm -u+x)

    ((${#faults[@]} == 0)) || fail "${faults[@]}"
    ((${#programs[@]} > 0)) || fail "there is no program in $1"
    say "hardened: $(printf '%s\n' "${programs[@]}" | sort -u | paste -sd ' ')"
}
