# SPDX-License-Identifier: GPL-3.0-or-later
# A display of one's own, and a user in front of it: what lib/drive.sh starts, looks at and clicks. Nothing here
# waits for a fixed time: everything polls a state, and every wait has an end.
# shellcheck shell=bash

: "${scratch:?a temporary folder}"

polling=0.05

# wait_until SECONDS COMMAND...: polls; false when the time is over.
wait_until()
{
    local end=$((SECONDS + $1 + 1))
    shift

    until "$@"; do
        ((SECONDS < end)) || return 1
        sleep "$polling"
    done
}

milliseconds()
{
    echo $((${EPOCHREALTIME/[.,]/} / 1000))
}

is_running()
{
    kill -0 "$1" 2>/dev/null
}

has_ended()
{
    ! is_running "$1"
}

# end_process PID: asks it to end, then makes it. Our own children only.
end_process()
{
    is_running "$1" || return 0
    kill "$1" 2>/dev/null || true
    wait_until 5 has_ended "$1" || kill -KILL "$1" 2>/dev/null || true
    wait "$1" 2>/dev/null || true
}

# start_display: sets DISPLAY; the server takes the first free number, so several can run side by side.
start_display()
{
    Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp -noreset </dev/null 3>"$scratch/display" \
        >"$scratch/Xvfb.log" 2>&1 &
    server=$!
    wait_until 20 has_line "$scratch/display" '^[0-9]' || fail "no display: $(tail -n 3 "$scratch/Xvfb.log")"
    DISPLAY=:$(<"$scratch/display")
    export DISPLAY
    wait_until 20 answers || fail "the display $DISPLAY does not answer"

    # It may lose a window that appears while it starts, so it tells itself when it has started.
    openbox --startup "touch $(printf '%q' "$scratch/managed")" </dev/null >"$scratch/openbox.log" 2>&1 &
    manager=$!
    wait_until 20 test -e "$scratch/managed" || fail "no window manager: $(tail -n 3 "$scratch/openbox.log")"
}

stop_display()
{
    [[ -z ${manager:-} ]] || end_process "$manager"
    [[ -z ${server:-} ]] || end_process "$server"
}

answers()
{
    timeout 5 xdpyinfo >/dev/null 2>&1
}

has_line()
{
    grep -qE -- "$2" "$1" 2>/dev/null
}

# windows: the ids of all windows of the program that can be seen, menus too.
windows()
{
    timeout 5 xdotool search --onlyvisible --class "^${window_class:-WQVUpdateProgram}\$" 2>/dev/null || true
}

is_unseen()
{
    [[ -z $(windows) ]]
}

title_is()
{
    [[ $(timeout 5 xdotool getwindowname "$window" 2>/dev/null) == "$1" ]]
}

# geometry WINDOW: its client area as "width height x y", x and y on the screen.
geometry()
{
    timeout 5 xwininfo -id "$1" 2>/dev/null |
        awk '/Absolute upper-left X/ { x = $NF } /Absolute upper-left Y/ { y = $NF }
             /^ *Width:/ { w = $NF } /^ *Height:/ { h = $NF } END { print w, h, x, y }'
}

# is_settled TITLE: there is one window with that title, and it was there unchanged the last time too; sets window. A
# window manager may still move it.
is_settled()
{
    local before=${settled:-}
    settled=""
    window=$(windows)

    if [[ $window =~ ^[0-9]+$ ]] && title_is "$1"; then
        settled="$window $(geometry "$window")"
    fi

    [[ -n $settled && $settled == "$before" ]]
}

# pixels PICTURE [CROP]: names what is seen, so that two equal pictures give the same. All as colours: of a picture that has
# none elsewhere either, ImageMagick 7 would see grey, which has another name.
pixels()
{
    timeout 20 convert "$1" ${2:+-crop "$2" +repage} -colorspace sRGB -type TrueColor -format '%#' info: 2>/dev/null
}

shoot()
{
    timeout 20 import -silent -window "${2:-$window}" "$1" 2>/dev/null
}

# The part of the window above the buttons, which change their look under the mouse, and have a line around them.
above_buttons=420x124+0+0

# has_button PICTURE: there is something at the right-hand button's place, which every screen has but the running update's.
has_button()
{
    [[ $(timeout 20 convert "$1" -crop 100x20+300+130 +repage -format '%k' info: 2>/dev/null) -gt 1 ]]
}

# shows_another_screen: the texts are not those of the last screen, and the user can go on.
shows_another_screen()
{
    shoot "$scratch/now.png" && has_button "$scratch/now.png" &&
        [[ $(pixels "$scratch/now.png" "$above_buttons") != "$last_screen" ]]
}

# shows PICTURE: the screen is this one.
shows()
{
    shoot "$scratch/now.png" &&
        [[ $(pixels "$scratch/now.png" "$above_buttons") == "$(pixels "$1" "$above_buttons")" ]]
}

is_still()
{
    shoot "$scratch/now.png" || return 1
    local before=${still:-}
    still=$(pixels "$scratch/now.png")
    [[ -n $still && $still == "$before" ]]
}

# picture FILE: waits for a screen other than the last one, and until nothing moves in it any more; takes the picture.
picture()
{
    wait_until 20 shows_another_screen || fail "the screen did not change (${1##*/})"
    timeout 5 xdotool mousemove 1 1
    still=""
    wait_until 20 is_still || fail "the screen does not come to rest (${1##*/})"
    mv "$scratch/now.png" "$1"
    last_screen=$(pixels "$1" "$above_buttons")
    [[ $1 == "$scratch"/* ]] || say "  ${1##*/}"
}

# click X Y [OPTIONS]: the left button at a place in the window's client area, as xdotool's options say; notes when, in told_at.
click()
{
    # shellcheck disable=SC2034 # expect_end reads it
    told_at=$(milliseconds)
    # On a fast machine two clicks at one place would be a double click.
    aside=$((20 - ${aside:-20}))
    timeout 5 xdotool mousemove --window "$window" $(($1 + aside)) "$2" click "${@:3}" 1 || fail "no click at $1,$2"
}

# press KEY...: one after another, for the program; notes when, in told_at.
press()
{
    # shellcheck disable=SC2034 # expect_end reads it
    told_at=$(milliseconds)
    timeout 5 xdotool key "$@" || fail "no key $*"
}

has_menu()
{
    local id w h rest

    # The largest: under Wine a menu's shadow is made of windows too.
    menu=$(windows | grep -vFx "$window" | while read -r id; do
        read -r w h rest < <(geometry "$id")
        echo "$((${w:-0} * ${h:-0})) $id"
    done | sort --numeric-sort | sed -n '$s/.* //p')
    [[ -n $menu ]]
}

has_no_menu()
{
    ! has_menu
}

# has_items: the open menu has more than one.
has_items()
{
    [[ $(geometry "$menu" | cut -d ' ' -f 2) -gt 40 ]]
}

# choose first|last: clicks an item of the open menu; a menu that has just opened may overlook a click, so it is repeated.
choose()
{
    local w h x y tries
    read -r w h x y < <(geometry "$menu")
    [[ $1 == first ]] || y=$((y + h - 20))

    for ((tries = 0; tries < 10; ++tries)); do
        timeout 5 xdotool mousemove $((x + w / 8)) $((y + 10)) click 1
        wait_until 1 has_no_menu && return
    done

    fail "the menu does not close"
}
