# shellcheck shell=bash disable=SC2034
# Operates the program's main window by key presses and clicks, as a user does. To be sourced.
# shellcheck source=virtual-screen.sh
. "$(dirname "${BASH_SOURCE[0]}")/virtual-screen.sh"

# Starts a program with a folder as its HOME, where its folder dialog opens. Sets program_pid and main_window.
open_main_window() {
    HOME=$2 start_program "$1"
    program_pid=$started_pid
    wait_for_main_window
}

wait_for_main_window() {
    wait_for_window '^Varnith - '
    main_window=$found_window
    wait_until is_active "$main_window"
    # The window opens at its design size plus the menu bar, whose height depends on the style.
    local height
    read -r _ height < <(size_of "$main_window")
    menu_bar_height=$((height - 670))
}

# Registers a browser that appends the URLs that it is given to a file.
register_browser() {
    mkdir -p "$XDG_DATA_HOME/applications" "$XDG_CONFIG_HOME"
    # shellcheck disable=SC2016 # the browser's shell expands it
    printf '#!/bin/sh\necho "$*" >>"%s"\n' "$1" >"$screen_folder/browser"
    chmod +x "$screen_folder/browser"
    printf '[Desktop Entry]\nType=Application\nName=Browser\nExec=%s %%u\n' "$screen_folder/browser" \
        >"$XDG_DATA_HOME/applications/browser.desktop"
    printf '[Default Applications]\nx-scheme-handler/http=browser.desktop\n' >"$XDG_CONFIG_HOME/mimeapps.list"
}

click_include_subfolders() {
    click "$main_window" 18 -15
}

click_locate() {
    click "$main_window" -48 $((menu_bar_height + 16))
    wait_until dialog_is_open
}

click_filter() {
    click "$main_window" -157 $((menu_bar_height + 17))
}

# Presses "Locate" and types a folder's name into the dialog; the caller accepts it. The name can't be a path:
# the dialog tries to complete each part of a path, and on a busy machine its proposals come late.
locate() {
    click_locate
    type_text "$1"
}

dialog_is_open() {
    local active
    active=$(xdotool getactivewindow 2>/dev/null) && [ "$active" != "$((main_window))" ]
}

scan_with_subfolders() {
    click_include_subfolders
    locate "$1"
    press Return
    wait_until has_title "$main_window" ' - Finished$'
}

# A menu is a window of the program that the window manager doesn't manage.
menu_is_open() {
    local window
    for window in $(xwininfo -root -children | awk '/\("Varnith" "Varnith"\)/ { print $1 }'); do
        if xwininfo -id "$window" | grep -q IsViewable; then return 0; fi
    done
    return 1
}

menu_is_closed() {
    ! menu_is_open
}

# Runs a command that opens a menu, and waits for the menu.
open_menu() {
    wait_until menu_is_closed
    "$@"
    wait_until menu_is_open
}

open_exporter() {
    open_menu press F10
    press Return
    wait_for_window '^Export$'
    exporter=$found_window
    wait_until is_active "$exporter"
}

# Types the name of a file in the home folder into the save dialog, and accepts it.
answer_save_dialog() {
    wait_for_window '^Save As$'
    wait_until is_active "$found_window"
    type_text "$1"
    press Return
}
