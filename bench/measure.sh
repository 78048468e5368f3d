# shellcheck shell=bash disable=SC2034
# What the tables share: their sizes and files, the window that is measured, and the lines of figures. To be
# sourced by a table, which bench/run starts after the build.
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

# The size of something in the whole table, or in a small one.
size() {
    if is_small; then echo "$2"; else echo "$1"; fi
}

# Ends the table with a line that says why there are no figures.
skip() {
    echo "skipped: $*" | tee "$place/figures/$table"
    exit 0
}

# Makes files by make-tree unless an earlier run has made the same.   corpus KIND NAME ARGUMENT...
corpus() {
    local path=$place/$2
    if [ "$(cat "$path.made" 2>/dev/null)" != "$*" ]; then
        echo "Making $path ..." >&2
        rm -rf "$path" "$path.made"
        "$programs/make-tree" "$1" "$path" "${@:3}"
        echo "$*" >"$path.made"
    fi
}

# The tree of small files, 1 % of them damaged, that several tables go through. Sets tree_files.
corpus_of_small_files() {
    local folders each=500
    folders=$(size 400 1)
    tree_files=$((folders * each))
    corpus boxes tree "$folders" $each 100
}

# The figures that were taken, by name, with spaces between those of each run.
declare -A figures

note() {
    figures[$1]+=" $2"
}

# Runs the limit and notes NAME.seconds and NAME.processor.   run_limit NAME [-t THREADS] [-e EVERY] FOLDER
run_limit() {
    local name=$1 line
    line=$("${around_limit[@]}" "$programs/limit" "${@:2}")
    [[ $line =~ seconds\ ([0-9.]+)\ processor\ ([0-9.]+) ]]
    note "$name.seconds" "${BASH_REMATCH[1]}"
    note "$name.processor" "${BASH_REMATCH[2]}"
}
# What the limit is started by, and what the program's environment has besides.
around_limit=()
around_window=()

open_window() {
    [ -n "${screen_folder:-}" ] || start_screen 1280x1024
    # A program of one's own, so that the results beside it are not the user's.
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

# A value of the program's status, in KiB, such as RssAnon.
status_of_program() {
    awk -v key="$1:" '$1 == key { print $2 }' "/proc/$program_pid/status"
}

processor_of_program() {
    awk -v ticks="$(getconf CLK_TCK)" '{ sub(/.*\) /, ""); print ($12 + $13) / ticks }' "/proc/$program_pid/stat"
}

# Sets line to the next that xprop tells. It ends when its window does.
next_line() {
    read -r -t "$patience" -u "$1" line || { echo "The window has told nothing in $patience seconds, or is gone." >&2; return 1; }
}

# Accepts the folder dialog and waits until the scan has ended. Sets start and end. The window system tells of
# each new title, so there is no looking again and again, which would take from what is measured.
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

# Scans a folder of $place in a program started anew, whose start doesn't count. Of NAME it notes .seconds from
# the press to " - Finished", .processor in seconds, .gap and .gap99, the longest turn of the event loop and the
# one that 99 of 100 keep below, in ms, and .grown and .peak, the memory at the end and at most above what the
# program took before, in KiB.   run_window NAME FOLDER FILES [COMMAND-BEFORE...]
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

# Runs a program that compares by itself, and notes the pairs that it prints. Sets compared to their names.
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

# Prints a line of the table and keeps it for the results. The ratio is of the medians, its spread that of the
# runs one by one. Without THEIRS the target is one of the figure itself. A target is the most that is allowed,
# or the least if it begins with ">"; it may be empty, and small tables have none.
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
