# SPDX-License-Identifier: GPL-3.0-or-later
# The runs of drive-controller that need no window: wqv-update, once, with faults, and many times in a row.
# shellcheck shell=bash disable=SC2154,SC2034 # what drive-controller and its libraries set

cp "$build/bin/wqv-update" "$scratch/program/"
update_tool=$scratch/program/wqv-update

# in_terminal STATUS [OPTIONS...]: an update that ends so; $said has what it says, a JSON object a line.
in_terminal()
{
    local status=0
    said=$scratch/$run.json
    timeout 120 "${as_user[@]}" "$update_tool" --yes --json "${@:2}" </dev/null >"$said" 2>>"$log" || status=$?
    ((status == $1)) || fail "$run: wqv-update ended with status $status: $(tail -n 3 "$said")"
}

# expect_said FILTER: of the last outcome.
expect_said()
{
    jq --exit-status --slurp "map(select(.event == \"outcome\")) | last | $1" "$said" >/dev/null ||
        fail "$run: not so: $1: $(tail -n 3 "$said")"
}

terminal_update()
{
    local trace=$scratch/$run.trace
    install -m 666 /dev/null "$trace"
    start_controller main 0
    in_terminal 0 --trace "$trace"
    expect_said '.result == "complete"'
    end_updated main
    (($(grep -c ' > ' "$trace") == last_poll)) || fail "$run: not $last_poll requests in the trace: $(tail -n 3 "$trace")"
}

# It names what the controller really did.
terminal_names_the_cause()
{
    start_controller wrong 0 --fault "wrong@$piece:0x55"
    in_terminal 1
    expect_said ".cause.block == 1 and .cause.piece == $((piece - header)) and .cause.received == $((0x55))"
    end_controller wrong

    start_controller gone 0 --fault "unplug@$summary"
    in_terminal 1
    expect_said '.cause.kind == "interrupted"'
    end_controller gone
}

# what_it_holds PROCESS: files, threads, KiB of memory.
what_it_holds()
{
    echo "$(find "/proc/$1/fd" -mindepth 1 | wc -l) $(find "/proc/$1/task" -mindepth 1 -maxdepth 1 | wc -l)" \
         "$(awk '/^VmRSS/ { print $2 }' "/proc/$1/status")"
}

has_node()
{
    compgen -G '/dev/hidraw*' >/dev/null
}

# many_in_a_row COUNT: with a small package, one controller after another. Each is complete, and nothing is left over in the
# process.
many_in_a_row()
{
    local number tool small=$scratch/small.upd files_early threads_early memory_early files threads memory
    head -c 400 "$package" >"$scratch/small.bin"
    "$build/bin/wqv-package" create --version 1.05 --block "id=0001,file=$scratch/small.bin" --output "$small" >>"$log"
    said=$scratch/$run.json
    start_controller main 0
    "${as_user[@]}" "$update_tool" --package "$small" --yes --json --repeat </dev/null >"$said" 2>>"$log" &
    tool=$!
    processes[tool]=$tool

    for ((number = 1; number <= $1; number++)); do
        wait_until 60 has_lines "$said" '"event":"outcome"' "$number" || fail "$run: no outcome $number: $(tail -n 3 "$said")"

        # It was plugged in at first, and restarts twice in each update. wqv-update must have seen that before it is taken out.
        expect_of main 'controller plugged in' $((3 * number))
        wait_until 20 has_node || fail "$run: no node after update $number"
        udevadm settle --timeout 20
        read -r files threads memory < <(what_it_holds "$tool")
        ((number != 2)) || read -r files_early threads_early memory_early <<<"$files $threads $memory"
        ((number < $1)) || break
        tell main unplug
        expect_of main 'controller unplugged' $((3 * number))
        tell main plug
    done

    kill -INT "$tool"
    wait "$tool" || fail "$run: wqv-update ended with status $?: $(tail -n 3 "$said")"
    unset 'processes[tool]'
    (($(grep -c '"result":"complete"' "$said") == $1)) || fail "$run: not $1 are complete: $(tail -n 3 "$said")"
    say "  files $files_early, then $files; threads $threads_early, then $threads; memory $memory_early, then $memory KiB"
    ((files <= files_early && threads <= threads_early && memory <= memory_early + 1024)) || fail "$run: something is left over"
}

terminal_five_in_a_row() { many_in_a_row 5; }
terminal_fifty_in_a_row() { many_in_a_row 50; }
