# shellcheck shell=bash disable=SC2034
# Shared by the tables: their sizes and files, the measured window, and the lines of figures. A table sources
# it. bench/run builds the programs before it starts a table.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
repository=$PWD
programs=$repository/build/release/bench
place=$repository/build/bench
[ "${BENCH_SIZE:-}" != small ] || place+=/small
runs=${BENCH_RUNS:-$([ "${BENCH_SIZE:-}" = small ] && echo 1 || echo 5)}
table=${0##*/}
mkdir -p "$place/figures"
# shellcheck source=../tools/screen/main-window.sh
. tools/screen/main-window.sh
patience=1800

is_small() {
    [ "${BENCH_SIZE:-}" = small ]
}

# Prints the first argument in a table of the full size, the second in a small one.
size() {
    if is_small; then echo "$2"; else echo "$1"; fi
}

# Ends the table with a line that says why it has no figures.
skip() {
    echo "skipped: $*" | tee "$place/figures/$table"
    exit 0
}

# Makes files with make-tree, unless an earlier run has made the same.
#   corpus KIND NAME ARGUMENT...
corpus() {
    local path=$place/$2
    if [ "$(cat "$path.made" 2>/dev/null)" != "$*" ]; then
        echo "Making $path ..." >&2
        rm -rf "$path" "$path.made"
        "$programs/make-tree" "$1" "$path" "${@:3}"
        echo "$*" >"$path.made"
    fi
}

# Makes the tree of small files that several tables use. 1 % of the files are damaged. Sets tree_files to
# their number.
corpus_of_small_files() {
    local folders each=500
    folders=$(size 400 1)
    tree_files=$((folders * each))
    corpus boxes tree "$folders" $each 100
}

# The measured figures by name. A value has one figure for each run, separated by spaces.
declare -A figures

note() {
    figures[$1]+=" $2"
}

# Runs the limit (limit.cpp) and notes NAME.seconds and NAME.processor.
#   run_limit NAME [-t THREADS] [-e EVERY] FOLDER
run_limit() {
    local name=$1 line
    line=$("${around_limit[@]}" "$programs/limit" "${@:2}")
    [[ $line =~ seconds\ ([0-9.]+)\ processor\ ([0-9.]+) ]]
    note "$name.seconds" "${BASH_REMATCH[1]}"
    note "$name.processor" "${BASH_REMATCH[2]}"
}
# A command that runs the limit, and additional environment variables for the program. Tables may set them.
around_limit=()
around_window=()

open_window() {
    [ -n "${screen_folder:-}" ] || start_screen 1280x1024
    # Uses a copy of the program, so that the user's results, which are next to the program, aren't
    # overwritten.
    rm -rf "$place/Varnith.app" "$place/varnth" "$place/turns"
    cp -a build/release/Varnith.app "$place/"
    HOME=$place start_program env LD_PRELOAD="$programs/libturns.so" BENCH_TURNS="$place/turns" \
        "${around_window[@]}" "$place/Varnith.app/Contents/MacOS/Varnith"
    program_pid=$started_pid
    wait_for_main_window
}

close_window() {
    kill "$program_pid"
    wait "$program_pid" || true
}

# Prints a value of /proc/PID/status of the program in KiB, for example of RssAnon.
status_of_program() {
    awk -v key="$1:" '$1 == key { print $2 }' "/proc/$program_pid/status"
}

processor_of_program() {
    awk -v ticks="$(getconf CLK_TCK)" '{ sub(/.*\) /, ""); print ($12 + $13) / ticks }' "/proc/$program_pid/stat"
}

# Sets line to the next line that xprop prints. xprop ends when its window does.
next_line() {
    read -r -t "$patience" -u "$1" line || { echo "The window has told nothing in $patience seconds, or is gone." >&2; return 1; }
}

# Accepts the folder dialog and waits until the scan has ended. Sets start and end. xprop reports each new
# title by itself; polling would take processor time from the program.
accept_and_wait() {
    local titles line spy
    exec {titles}< <(exec xprop -spy -id "$main_window" _NET_WM_NAME)
    spy=$!
    next_line "$titles"
    start=$EPOCHREALTIME
    press Return
    until [[ $line == *' - Finished"' ]]; do next_line "$titles"; done
    end=$EPOCHREALTIME
    kill "$spy"
    exec {titles}<&-
}

# Scans FOLDER, in $place, with a newly started program. The start of the program is not measured. Notes
#   NAME.seconds      from the Return key to " - Finished"
#   NAME.processor    seconds of processor time
#   NAME.gap          the longest turn of the event loop, in ms
#   NAME.gap99        the turn that 99 of 100 turns don't exceed, in ms
#   NAME.grown        the memory at the end, above that before the scan, in KiB
#   NAME.peak         the highest memory, above that before the scan, in KiB
# COMMAND-BEFORE runs just before the scan. Fails unless the scan has saved FILES rows.
#   run_window NAME FOLDER FILES [COMMAND-BEFORE...]
run_window() {
    local name=$1 files=$3 memory resident processor saved
    open_window
    memory=$(status_of_program RssAnon)
    resident=$(status_of_program VmRSS)
    click_include_subfolders
    locate "$2"
    "${@:4}"
    processor=$(processor_of_program)
    accept_and_wait
    note "$name.processor" "$(difference "$(processor_of_program)" "$processor")"
    note "$name.seconds" "$(difference "$end" "$start")"
    note "$name.grown" "$(difference "$(status_of_program RssAnon)" "$memory")"
    note "$name.peak" "$(difference "$(status_of_program VmHWM)" "$resident")"
    close_window
    note_gaps "$name"
    saved=$(sqlite3 "$place/varnth" 'select count(*) from preferences')
    [ "$saved" = "$files" ] || { echo "The scan of $2 saved $saved rows for $files files." >&2; return 1; }
}

difference() {
    awk "BEGIN { printf \"%.4f\", $1 - $2 }"
}

note_gaps() {
    local gaps
    gaps=$(awk -v from="$start" -v to="$end" '$1 >= from && $1 - $2 / 1000 <= to { print $2 }' "$place/turns" | sort -g)
    note "$1.gap" "$(tail -n 1 <<<"$gaps")"
    note "$1.gap99" "$(awk '{ gap[NR] = $1 } END { print gap[int((NR * 99 + 99) / 100)] }' <<<"$gaps")"
}

# Runs a program that does its own comparisons and notes the figures that it prints as NAME.ours and
# NAME.theirs. Sets compared to the names.
note_comparisons() {
    local name ours theirs
    "$@" >"$place/comparisons"
    mapfile -t compared < <(cut -f 1 "$place/comparisons" | awk '!seen[$0]++')
    while IFS=$'\t' read -r name ours theirs; do
        note "$name.ours" "$ours"
        note "$name.theirs" "$theirs"
    done <"$place/comparisons"
}

begin_table() {
    local load
    read -r load _ </proc/loadavg
    echo "# $(date '+%F %H:%M'), runs: $runs, load average at the start: $load" >"$place/figures/$table"
    line_of 'what' 'compared with' 'ours' 'theirs' 'ratio' 'spread' 'target' ''
}

line_of() {
    printf '%-46s %-48s %11s %11s %8s %-16s %6s %s\n' "$@"
}

# Prints a line of the table and stores it for the results. OURS and THEIRS are names of figures. The ratio is
# of their medians; the spread is the lowest and the highest ratio of single runs. Without THEIRS, the spread
# and the target are of the figure itself. TARGET is the highest allowed value, or the lowest if it starts
# with ">". It may be empty, and is ignored in small tables.
#   row WHAT AGAINST UNIT TARGET OURS [THEIRS]
row() {
    local line fields target=$4
    ! is_small || target=
    line=$(awk -v what="$1" -v against="$2" -v unit="$3" -v target="$target" \
        -v ours="${figures[$5]}" -v theirs="${6:+${figures[$6]}}" -f bench/row.awk)
    echo "$line" >>"$place/figures/$table"
    IFS=$'\t' read -r -a fields < <(sed 's/\t\t/\t \t/g; s/\t\t/\t \t/g' <<<"$line")
    line_of "${fields[@]}"
}
