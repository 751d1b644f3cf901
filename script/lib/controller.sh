# SPDX-License-Identifier: GPL-3.0-or-later
# Virtual controllers on USB ports, who may use them, what the program and they say, and the runs that are the same on every
# system: for Tests/Linux/drive-controller and Tests/Windows/drive-controller, after lib/drive.sh.
# shellcheck shell=bash disable=SC2154,SC2034 # scratch, run and log are those of drive.sh; some are for the runs

: "${build:?the folder of a build}" "${package:?the update package beside the program}" "${start:?the command of the program}"

# What is sent when, counted from 1: the controller restarts at the first request, and is asked again. The package has two
# blocks to be written, of 191 and 135 pieces. At the end it is busy for five polls.
enter=1
summary=3
header=4
piece=40
last_piece=195
next_header=196
finish=332
last_poll=337

# make_ports: two USB ports of this machine that lead to itself.
make_ports()
{
    modprobe dummy_hcd num=2
    modprobe --all libcomposite usb_f_hid
    mountpoint --quiet /sys/kernel/config || mount -t configfs configfs /sys/kernel/config
}

rule=/etc/udev/rules.d/70-wqv-krv20.rules

# By the rule as it is shipped, but for everybody: there is no logind that would give a session's user access.
allow_access()
{
    mkdir -p "${rule%/*}"
    sed 's/MODE="0660"/MODE="0666"/' "$build/packaging/${rule##*/}" >"$rule"
    udevadm control --reload
}

forbid_access()
{
    rm "$rule"
    udevadm control --reload
}

# The file descriptors by which the controllers of a run take orders, by name.
declare -A orders=()

# start_controller NAME PORT [OPTIONS...]: it is plugged in, and udev is done with it.
start_controller()
{
    local file folder=$scratch/$run-$1
    mkdir "$folder"
    mkfifo "$folder/orders"
    "$build/bin/wqv-controller" --udc "dummy_udc.$2" --pace 0 --received "$folder" --report "$folder/report.json" \
        "${@:3}" <"$folder/orders" >"$folder/log" 2>&1 &
    processes[$1]=$!
    exec {file}>"$folder/orders"
    orders[$1]=$file
    expect_of "$1" 'controller plugged in'
    udevadm settle --timeout 20
}

tell()
{
    printf '%s\n' "$2" >&"${orders[$1]}"
}

has_lines()
{
    local count
    count=$(grep -cE -- "$2" "$1" 2>/dev/null) || true
    ((count >= $3))
}

# expect_of NAME PATTERN [TIMES]: the controller says so.
expect_of()
{
    wait_until 60 has_lines "$scratch/$run-$1/log" "$2" "${3:-1}" ||
        fail "$run: the controller does not say '$2': $(tail -n 5 "$scratch/$run-$1/log")"
}

# end_controller NAME: the program has kept to the protocol; the blocks and the report are there.
end_controller()
{
    local file=${orders[$1]} folder=$scratch/$run-$1 status=0
    tell "$1" quit
    exec {file}>&-
    wait_until 20 has_ended "${processes[$1]}" || fail "$run: the controller does not end"
    wait "${processes[$1]}" || status=$?
    unset "processes[$1]"
    cat "$folder/log" >>"$log"
    ((status == 0)) || fail "$run: the controller ended with status $status: $(tail -n 3 "$folder/log")"
    ! has_line "$folder/log" 'host error' || fail "$run: $(grep 'host error' "$folder/log")"
}

# What has been compared, a file for each picture's sum and name.
known=$scratch/known
mkdir "$known"

# What makes two pictures one screen. Greys may differ a little, as they do from one version of JUCE to another; between two
# screens black and white do.
likeness='fx:maxima<0.1'

# compare_screen NAME: "1" if the window's last picture is the documents' one of that name.
compare_screen()
{
    # Only an update that is running has none.
    has_button "$scratch/now.pnm" || return 0
    timeout 60 convert "$scratch/now.pnm" "$WQV_ROOT/docs/pictures/$1.png" -crop "$above_buttons" +repage -alpha off \
        -compose difference -composite -format "%[$likeness]" info: 2>>"$log"
}

# is_screen NAME...: the window shows one of these of the documents' pictures; sets shown. What was compared once is known by
# its sum.
is_screen()
{
    local sum
    shoot "$scratch/now.pnm" || return 1
    sum=$(sha256sum <"$scratch/now.pnm")

    for shown in "$@"; do
        local same=$known/${sum%% *}-$shown
        [[ -e $same ]] || compare_screen "$shown" >"$same"
        [[ $(<"$same") != 1 ]] || return 0
    done

    return 1
}

expect_screen()
{
    wait_until 30 is_screen "$1" || fail "$run: the screen is not '$1'"
    say "  $1"
}

# expect_outcome complete|error: what the program says first. Until a controller has finished nobody looks, since that takes
# more of the processor than an update does.
expect_outcome()
{
    [[ $1 == error ]] || wait_until 60 grep -q 'update finished' "$scratch/$run-"*/log || fail "$run: the update does not end"
    wait_until 60 is_screen complete error || fail "$run: the program does not say how it ended"
    [[ $shown == "$1" ]] || fail "$run: the program says '$shown', not '$1'"
    say "  $1"
}

# expect_requests NAME NUMBER: so many have reached the controller, which has ended.
expect_requests()
{
    local requests
    requests=$(jq .requests "$scratch/$run-$1/report.json")
    ((requests == $2)) || fail "$run: $requests requests, not $2"
}

# end_updated NAME: a whole update has reached the controller.
end_updated()
{
    end_controller "$1"
    expect_blocks "$build/bin/wqv-package" "$package" "$scratch/$run-$1"
}

# start_program SCREEN: as far as the screen that follows the first one.
start_program()
{
    launch "${start[@]}"
    expect_screen start
    click "${right_button[@]}"
    expect_screen "$1"
}

leave()
{
    click "${right_button[@]}"
    expect_end "the right-hand button"
}

# update COMPLETE|ERROR [CONTROLLER OPTIONS...]: from start to end. A controller that goes away comes back.
update()
{
    start_controller main 0 "${@:2}"
    start_program ready
    click "${right_button[@]}"

    if [[ " $* " == *unplug@* ]]; then
        expect_of main 'controller unplugged' $((1 + ("${!#//[!0-9]/}" > enter)))
        tell main plug
    fi

    expect_outcome "$1"
    leave
}

whole_update()
{
    update complete
    end_updated main
    expect_requests main "$last_poll"
}

# Nothing had begun, so it is asked again.
unplugged_at_first_request()
{
    update complete --fault "unplug@$enter"
    end_updated main
}

# The next update does what this one could not.
unplugged_at_piece()
{
    update error --fault "unplug@$piece"
    start_program ready
    click "${right_button[@]}"
    expect_outcome complete
    leave
    end_updated main
}
