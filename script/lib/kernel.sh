# SPDX-License-Identifier: GPL-3.0-or-later
# A Debian kernel of one's own in QEMU, with this machine's files, udev and hidraw, for the scripts that try something as
# root on it: prepare_kernel, then in_kernel. It takes neither root nor KVM. Where QEMU or the kernel's package is not to be
# had, the script ends with 77.
# shellcheck shell=bash

skip()
{
    say "skipped: $*"
    exit 77
}

# prepare_kernel: downloads the kernel that apt offers, once, and unpacks it; sets kernel, a folder, and release. The folder
# is a small system: what the package has, the list of its modules, and vmlinux, the image as QEMU starts it fastest.
prepare_kernel()
{
    local package
    PATH+=:/usr/sbin:/sbin
    "$WQV_ROOT/script/bootstrap" kernel || skip "QEMU, or what else it takes, is not installed and cannot be"

    package=$(apt-cache depends --important linux-image-amd64 2>/dev/null | sed -n 's/^ *Depends: //p' | head -n 1) || true
    [[ -n $package ]] || skip "this machine's package sources have no linux-image-amd64"
    release=${package#linux-image-}
    kernel=$WQV_ROOT/build/kernel/$release
    [[ -f $kernel/vmlinux ]] || unpack_kernel "$package"
}

unpack_kernel()
{
    local new=$kernel.new
    rm -rf "$kernel" "$new"
    mkdir -p "$new"
    say "downloads $1"

    # As root apt would download as another user, who may not write here.
    (cd "$new" && apt-get --quiet --quiet -o APT::Sandbox::User=root download "$1" </dev/null) ||
        skip "$1 cannot be downloaded from this machine's package sources"

    dpkg-deb --extract "$new"/*.deb "$new"
    rm "$new"/*.deb
    [[ -e $new/lib ]] || ln -s usr/lib "$new/lib"
    depmod --basedir "$new" "$release"
    decompress_image "$new/boot/vmlinuz-$release" "$new/vmlinux"
    mv "$new" "$kernel"
}

# decompress_image IMAGE FILE: the kernel in a boot image, as an ELF file; the image itself if it is packed in another way.
# A boot image begins with sectors for the start, whose number less one is at 497; where the packed kernel lies behind
# them, and its size, is at 584.
decompress_image()
{
    local sectors offset size packed=$2.packed tool
    sectors=$(od -An -tu1 -j 497 -N 1 "$1")
    read -r offset size < <(od -An -tu4 -j 584 -N 8 "$1")
    head -c $(((sectors + 1) * 512 + offset + size)) "$1" | tail -c "$size" >"$packed"

    # Its unpacked size follows, which both tools take for rubbish at the end.
    for tool in "xz --single-stream" zstd; do
        $tool -dc "$packed" >"$2" 2>/dev/null || true
        [[ $(head -c 4 "$2") != $'\x7fELF' ]] || break
    done

    rm "$packed"
    [[ $(head -c 4 "$2") == $'\x7fELF' ]] || cp "$1" "$2"
}

# make_start FOLDER COMMAND...: what the kernel starts from: busybox, the modules that it takes to get at this machine's
# files, in the order of their dependencies, and the command.
make_start()
{
    local start=$1/start module number=100
    rm -rf "$start"
    mkdir -p "$start"/{bin,modules,job}
    cp "$(command -v busybox)" "$start/bin/busybox"
    cp "$WQV_ROOT/script/lib/kernel/init" "$start/init"
    cp "$WQV_ROOT/script/lib/kernel/guest" "$start/job/guest"
    printf '%q ' "${@:2}" >"$start/job/command"
    printf '%s' "$1" >"$start/job/folder"
    printf '%s' "$kernel/lib/modules/$release" >"$start/job/modules"
    chmod 755 "$start/init"

    while read -r module; do
        number=$((number + 1))
        case $module in
            *.xz) xz -dc "$module" >"$start/modules/$number.ko" ;;
            *) cp "$module" "$start/modules/$number.ko" ;;
        esac
    done < <(modprobe --dirname "$kernel" --set-version "$release" --show-depends --all \
                 virtio_pci virtio_console 9pnet_virtio 9p overlay | sed -n 's/^insmod \([^ ]*\).*/\1/p' | awk '!known[$0]++')

    (cd "$start" && find . | cpio --create --format=newc --quiet) >"$1/start.cpio"
    rm -r "$start"
}

# in_kernel FOLDER SECONDS COMMAND...: runs the command there as root, in this folder, with an empty environment but for
# PATH; its output is this function's, its exit status too. Of all that it writes only what is in FOLDER stays; there is
# the kernel's own log, kernel.log. False if it takes longer. Sets machine, a process id, while it runs.
in_kernel()
{
    local folder status=0
    folder=$(realpath "$1")
    rm -f "$folder/status"
    make_start "$folder" "${@:3}"

    # Without -smap QEMU 7.2 takes the stack of a return to user mode for one of the kernel's, and kills a program that has
    # segments of its own. A second processor, and timers finer than a clock tick, make the wait of an idle program cost
    # four times as much.
    timeout --kill-after=10 "$2" qemu-system-x86_64 -nodefaults -no-user-config -display none -no-reboot \
        -M q35,hpet=on -accel tcg,thread=multi -cpu max,-avx,-avx2,-smap -m 2048 \
        -kernel "$kernel/vmlinux" -initrd "$folder/start.cpio" \
        -append "console=ttyS0 quiet panic=-1 nokaslr mitigations=off tsc=reliable no_timer_check audit=0 highres=off" \
        -serial "file:$folder/kernel.log" \
        -device virtio-serial-pci -chardev stdio,id=output,signal=off -device virtconsole,chardev=output \
        -virtfs "local,mount_tag=machine,path=/,security_model=none,readonly=on,multidevs=remap" \
        -virtfs "local,mount_tag=results,path=$folder,security_model=none" </dev/null &
    machine=$!
    wait "$machine" || status=$?
    machine=""
    rm -f "$folder/start.cpio"

    ((status != 124 && status != 137)) || { echo "not done within $2 seconds" >&2; return 1; }
    ((status == 0)) || { echo "QEMU ended with status $status" >&2; return 1; }
    [[ -s $folder/status ]] || { echo "the kernel ended early: $(tail -n 5 "$folder/kernel.log")" >&2; return 1; }
    status=$(<"$folder/status")
    rm "$folder/status"
    return "$status"
}

# stop_kernel: for the script's end, early or not.
stop_kernel()
{
    [[ -n ${machine:-} ]] || return 0
    kill "$machine" 2>/dev/null || true
    wait "$machine" 2>/dev/null || true
}
