# SPDX-License-Identifier: GPL-3.0-or-later
# What the scripts share that drive a program with mouse and eyes: they set pictures, define one function a run, and call
# perform. A run calls launch, and expect_end when it has told the program to end.
# shellcheck shell=bash

: "${pictures:?a folder for pictures and logs}"

for needed in Xvfb openbox xdotool xwininfo import convert; do
    command -v "$needed" >/dev/null || fail "$needed is not installed: run script/bootstrap"
done

scratch=$(mktemp -d)
. "$WQV_ROOT/script/lib/display.sh"

# Within how many seconds its window must be there.
start_limit=30

# Within how many milliseconds a program that was told to end must have ended, on a busy machine too.
end_limit=5000

# shellcheck disable=SC2034 # for the runs
right_button=(350 140)

# The processes of a run, by name.
declare -A processes=()

cleanup()
{
    [[ -z ${scenario:-} ]] || end_process "$scenario"
    stop_display
    rm -rf "$scratch"
}

trap cleanup EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

# end_run STATUS: of a run that has failed there is a picture too.
end_run()
{
    local process

    (($1 == 0)) || [[ -z ${window:-} ]] || shoot "${log%.log}-failed.png" || true

    for process in "${processes[@]}"; do
        end_process "$process"
    done
}

# start_own_display: for a run that ends it.
start_own_display()
{
    scratch=$scratch/$run
    mkdir "$scratch"
    start_display
    processes[server]=$server
    processes[manager]=$manager
}

# end_display: the program's end on it has status 1, and one line.
end_display()
{
    # shellcheck disable=SC2034 # expect_end reads it
    told_at=$(milliseconds)
    kill "$server"
    expect_end "the end of the display" 1
    (($(grep -c 'the display has gone away' "$log") == 1)) || fail "$run: not one line: $(cat "$log")"
}

has_window_or_ended()
{
    is_settled "Updater Program" || has_ended "$program"
}

# launch COMMAND...: starts the program and waits for its window.
launch()
{
    say "$run: starts"
    "$@" </dev/null >>"$log" 2>&1 &
    program=$!
    processes[program]=$program
    settled=""
    last_screen=""
    wait_until "$start_limit" has_window_or_ended || true
    [[ -n $settled ]] || fail "$run: no window: $(tail -n 5 "$log")"
}

expect_log()
{
    wait_until "$1" has_line "$log" "$2" || fail "$run: the log does not say '$2': $(tail -n 5 "$log")"
    say "  $(grep -E -m 1 -- "$2" "$log")"
}

# expect_end WHY [STATUS]: the program, told at told_at, ends soon, as it should, and has obeyed the protocol.
expect_end()
{
    local status=0 took
    wait_until 20 has_ended "$program" || fail "$run: $1 does not end the program"
    took=$(($(milliseconds) - told_at))
    wait "$program" || status=$?
    unset 'processes[program]'

    ((status == ${2:-0})) || fail "$run: ended with status $status: $(tail -n 5 "$log")"
    ((took <= end_limit)) || fail "$run: took $took ms to end"
    ! has_line "$log" 'host error|cannot open' || fail "$run: $(grep -E 'host error|cannot open' "$log")"
    say "  ended by $1 within $took ms"
}

# expect_blocks WQV_PACKAGE PACKAGE FOLDER: the folder has the package's blocks that are to be written, and no other.
expect_blocks()
{
    local plain=$scratch/plain enabled=0 number block

    # Once, whatever the run.
    if [[ ! -e $plain/package.json ]]; then
        "$1" extract "$2" "$plain" >/dev/null || fail "$run: wqv-package extract"
        "$1" inspect --json "$2" >"$plain/package.json" || fail "$run: inspect --json"
    fi

    while read -r number block; do
        number=$(printf '%02d' "$number")

        if [[ $block == true ]]; then
            cmp "$plain/block-$number-"????.bin "$3/block-$number.bin" || fail "$run: block $number differs"
            enabled=$((enabled + 1))
        else
            [[ ! -e $3/block-$number.bin ]] || fail "$run: block $number is not enabled, but was sent"
        fi
    done < <(jq -r '.blocks | to_entries[] | "\(.key + 1) \(.value.enabled)"' "$plain/package.json")

    ((enabled > 0)) || fail "$run: the package has no enabled block"
    say "  the controller received $enabled blocks, byte for byte as in the package"
}

# perform RUN...: one after another, each in a subshell, so that one that fails ends there, with its processes.
perform()
{
    local failed=0
    start_display

    # The program sees an English user's surroundings, and none of this user's own settings.
    mkdir -m 700 "$scratch/home" "$scratch/run"
    export HOME=$scratch/home XDG_RUNTIME_DIR=$scratch/run XDG_CONFIG_HOME=$scratch/home LC_ALL=C.UTF-8 LANGUAGE=en
    unset DBUS_SESSION_BUS_ADDRESS

    for run in "$@"; do
        log=$pictures/${run//_/-}.log
        (
            set -E
            trap 'fail "$run: line $LINENO: $BASH_COMMAND"' ERR
            trap 'end_run $?' EXIT
            trap 'exit 143' TERM
            : >"$log"
            "$run"
        ) &
        scenario=$!
        wait "$scenario" || failed=$((failed + 1))
        scenario=""
    done

    say "pictures and logs are in $pictures"
    ((failed == 0)) || fail "$failed of $# runs"
    say "PASSED: $# runs"
}
