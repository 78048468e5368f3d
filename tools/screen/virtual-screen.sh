# shellcheck shell=bash disable=SC2034
# A private virtual screen with a window manager, and what a user does on it. To be sourced; call start_screen
# first. All programs started here end with the shell, however it ends. Needs bash 4.4.

patience=120  # seconds; generous, because everything is slow on a busy machine

wait_until() {
    local end=$((SECONDS + patience)) pause=0.05
    until "$@"; do
        [ $SECONDS -lt $end ] || { echo "Waited $patience seconds for nothing: $*" >&2; return 1; }
        sleep "$pause"
    done
}

has_ended() {
    ! kill -0 "$1" 2>/dev/null
}

# Exits the shell unless FOUND equals WANTED.   expect WHAT WANTED FOUND
expect() {
    [ "$2" = "$3" ] || { printf '%s:\n%s\ninstead of\n%s\n' "$1" "$3" "$2" >&2; exit 1; }
}

# Starts a program that is killed when this shell ends. Sets started_pid to its process id.
start_program() {
    setpriv --pdeathsig KILL -- "$@" &
    started_pid=$!
}

# Starts a screen of a size in pixels, such as 1280x1024, and sets DISPLAY to it. The programs on it get an
# empty home and temporary folder, so that no setting of the user affects them.
start_screen() {
    screen_folder=$(mktemp -d "${TMPDIR:-/tmp}/varnith-screen-XXXXXX")
    trap stop_screen EXIT
    unset WAYLAND_DISPLAY XDG_CURRENT_DESKTOP XDG_SESSION_TYPE DBUS_SESSION_BUS_ADDRESS "${!QT_@}" "${!GTK_@}"
    export HOME=$screen_folder/home LC_ALL=C.UTF-8 XDG_RUNTIME_DIR=$screen_folder/runtime
    export XDG_CONFIG_HOME=$HOME/.config XDG_CACHE_HOME=$HOME/.cache XDG_DATA_HOME=$HOME/.local/share
    export TMPDIR=$screen_folder/temporary
    mkdir -m 0700 "$HOME" "$XDG_RUNTIME_DIR" "$TMPDIR"

    # The server reports the first free display number, which it takes, so that several can start at once.
    start_program Xvfb -displayfd 3 -screen 0 "$1x24" -noreset -nolisten tcp \
        3>"$screen_folder/number" 2>"$screen_folder/server.log"
    wait_until test -s "$screen_folder/number"
    DISPLAY=:$(<"$screen_folder/number")
    export DISPLAY

    start_program openbox --sm-disable >"$screen_folder/manager.log" 2>&1
    wait_until sh -c "xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 'window id'"
}

stop_screen() {
    local process
    for process in $(jobs -rp | tac); do
        kill "$process" 2>/dev/null || true
        wait "$process" 2>/dev/null || true
    done
    rm -rf "$screen_folder"
}

# Waits for a window whose title matches. Sets found_window.
wait_for_window() {
    wait_until find_window "$1"
}

find_window() {
    for found_window in $(xprop -root -notype _NET_CLIENT_LIST | grep -o '0x[0-9a-f]*'); do
        if has_title "$found_window" "$1"; then return 0; fi
    done
    return 1
}

has_title() {
    [[ $(xdotool getwindowname "$1" 2>/dev/null) =~ $2 ]]
}

size_of() {
    xdotool getwindowgeometry --shell "$1" | sed -n 's/^WIDTH=//p; s/^HEIGHT=//p' | xargs
}

is_active() {
    [ "$(xdotool getactivewindow 2>/dev/null)" = "$((${1}))" ]
}

# Clicks at a place in a window, in pixels from its left and top, or if negative from its right and bottom.
click() {
    local width height
    read -r width height < <(size_of "$1")
    xdotool mousemove --window "$1" $(($2 < 0 ? width + $2 : $2)) $(($3 < 0 ? height + $3 : $3)) click 1
}

press() {
    xdotool key --clearmodifiers "$1"
}

type_text() {
    xdotool type --clearmodifiers --delay 5 -- "$1"
}

# Saves a screenshot of a window, or of the whole screen as "root", as PNG once it has stopped changing.
take_picture() {
    wait_until picture_has_settled "$1"
    # Without dates, so that equal pictures give equal files. A palette keeps the file small.
    convert "$screen_folder/picture.miff" -strip +dither -colors 256 -depth 8 \
        -define png:exclude-chunks=date,time "$2"
}

picture_has_settled() {
    [ ! -e "$screen_folder/picture.miff" ] || mv "$screen_folder/picture.miff" "$screen_folder/earlier.miff"
    import -silent -frame -window "$1" "$screen_folder/picture.miff"
    cmp -s "$screen_folder/picture.miff" "$screen_folder/earlier.miff"
}
