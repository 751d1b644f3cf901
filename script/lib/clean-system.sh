# SPDX-License-Identifier: GPL-3.0-or-later
# A Debian that has nothing but apt, in a folder, for the scripts that try something on it. They call own_mounts first, set
# scratch and root, and unmount_root at the end. It takes root or sudo, a mount namespace and the system's package sources;
# where they are not to be had, the script ends with 77.
# shellcheck shell=bash disable=SC2154 # the script sets scratch and root

declare -A codenames=([12]=bookworm [13]=trixie)
this_release=$(. /etc/os-release 2>/dev/null && echo "${ID:-}${VERSION_ID:-}") || true
this_release=${this_release#debian}

skip()
{
    say "skipped: $*"
    exit 77
}

# known_release RELEASE: false with a word for one that is not known.
known_release()
{
    [[ -n ${codenames[$1]:-} ]] || { echo "the releases of Debian are ${!codenames[*]}, not '$1'" >&2; return 1; }
}

# own_mounts ARGUMENTS...: starts the script once more, where no mount outlives it.
own_mounts()
{
    [[ ${WQV_NAMESPACE:-} != own ]] || return 0
    local namespace=(unshare --mount --propagation private)
    ((EUID == 0)) || namespace=(sudo -n "${namespace[@]}")
    "${namespace[@]}" true 2>/dev/null || skip "neither root nor sudo without a password, or no mount namespaces here"
    exec "${namespace[@]}" env WQV_NAMESPACE=own "$0" "$@"
}

# sources_of RELEASE: a line for each of this machine's sources of Debian packages, but for that release.
sources_of()
{
    local keys=/usr/share/keyrings/debian-archive-keyring.gpg here=${codenames[$this_release]:-}

    [[ -n $here ]] || return 0
    apt-get indextargets --format "deb [signed-by=$keys] \$(REPO_URI) \$(RELEASE) \$(COMPONENT)" \
        'Created-By: Packages' 'Origin: Debian' 2>/dev/null | sed "s/ $here/ ${codenames[$1]}/" | sort -u
}

# make_system RELEASE ARCHIVE: the smallest system that has apt, from this machine's own sources.
make_system()
{
    local options=() option
    sources_of "$1" >"$scratch/sources.list"
    [[ -s $scratch/sources.list ]] || skip "this machine has no sources of Debian packages"

    # This machine's way to the sources is that of the clean system, too.
    while IFS= read -r option; do
        options+=(--aptopt="$option")
    done < <(apt-config dump | grep -E '^Acquire::(https?::|Check-)')

    ! grep -q 'https:' "$scratch/sources.list" || options+=(--include=ca-certificates)

    say "makes a clean Debian $1, once"
    mmdebstrap --quiet --mode=root --variant=apt --format=tar "${options[@]}" \
        "${codenames[$1]}" "$2.part" "$scratch/sources.list" </dev/null ||
        { rm -f "$2.part"; skip "no clean Debian $1 from this machine's package sources"; }

    mv "$2.part" "$2"
}

# unpack_root RELEASE: into root, a mount point, from an archive that is kept for a month.
unpack_root()
{
    local system=$WQV_ROOT/build/clean-${codenames[$1]}.tar
    command -v mmdebstrap >/dev/null || fail "mmdebstrap is not installed: run script/bootstrap packaging"
    mkdir -p "$WQV_ROOT/build"

    [[ -n $(find "$system" -mtime -30 2>/dev/null) ]] || make_system "$1" "$system"
    tar --extract --file "$system" --directory "$root" || skip "the clean Debian $1 cannot be unpacked here"
    mount --rbind /proc "$root/proc"
    cp --dereference /etc/resolv.conf "$root/etc/resolv.conf"
}

unmount_root()
{
    umount --recursive "$root" 2>/dev/null || true
}

# in_root COMMAND...: with nothing of this machine's environment.
in_root()
{
    env -i HOME=/root PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 \
        DEBIAN_FRONTEND=noninteractive "$(command -v chroot)" "$root" "$@" </dev/null
}
