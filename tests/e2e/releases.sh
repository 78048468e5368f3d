# shellcheck shell=bash disable=SC2154
# Makes real releases of the program and serves them to it. To be sourced; the caller sets source to the
# project's folder.
# shellcheck source=main-window.sh
. "$(dirname "${BASH_SOURCE[0]}")/../../tools/screen/main-window.sh"

# Starts nginx on a free port, slow enough to see the progress. Sets server, the folder that it serves, and
# server_address.
start_server() {
    server=$screen_folder/server
    local options="daemon off; master_process off; pid $server/pid; error_log $server/errors;"
    local temporary
    temporary=$(printf "%s_temp_path $server/temporary; " client_body proxy fastcgi uwsgi scgi)
    mkdir -p "$server/updates"
    for ((tries = 0; tries < 20; ++tries)); do
        server_address=127.0.0.1:$(shuf -i 20000-32000 -n 1)
        cat >"$server/configuration" <<END
$options events {} http { $temporary log_format path '\$request_uri'; access_log $server/requests path;
limit_rate 60k; server { listen $server_address; root $server; } }
END
        PATH=$PATH:/usr/sbin start_program nginx -e "$server/errors" -c "$server/configuration" 2>/dev/null
        wait_until answers_or_has_ended "$started_pid"
        has_ended "$started_pid" || return 0
    done
    cat "$server/errors" >&2
    return 1
}

answers_or_has_ended() {
    has_ended "$1" || (exec 3<>"/dev/tcp/${server_address/://}") 2>/dev/null
}

# Makes a release of a version in a folder.
make_release() {
    "$source/packaging/release" -o "$2" "$1" "http://$server_address/updates" \
        -DVARNITH_UPDATE_SERVER="$server_address" >"$screen_folder/release.log" 2>&1 ||
        { cat "$screen_folder/release.log" >&2; return 1; }
}

# The processes that run a file, even if it has been renamed.
processes_of() {
    local process
    for process in /proc/[0-9]*; do
        [ "$(readlink "$process/exe" 2>/dev/null)" != "$1" ] || echo "${process#/proc/}"
    done
}
