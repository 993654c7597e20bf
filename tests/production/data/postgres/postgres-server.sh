#!/usr/bin/env bash
# The PostgreSQL server that the server tests read: a private cluster in a temporary folder,
# listening on 127.0.0.1 only on a free port, with its socket inside that folder, loaded with
# the sample database and the test tables.
#
#   postgres-server.sh start STATE_DIR SAMPLE_DATABASE
#   postgres-server.sh stop STATE_DIR
#
# start leaves in STATE_DIR: "uri" (the readers' address), "pgpass" (their password file, for
# PGPASSFILE), "port" and "server" (the temporary folder). stop ends the server and removes
# both folders; it does nothing when no server was started, and start stops a server that an
# interrupted run left behind first.
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
fail() {
    echo "postgres-server: $*" >&2
    exit 1
}
[ $# -ge 2 ] || fail "usage: $0 start STATE_DIR SAMPLE_DATABASE | stop STATE_DIR"
action=$1
state=$(realpath -m "$2")

bindir=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -n 1)
[ -n "$bindir" ] && [ -x "$bindir/initdb" ] ||
    fail "the PostgreSQL server is not installed (package postgresql; scripts/install-deps.sh installs it)"

# The server refuses to run as root, so root runs it as the postgres account.
as_server=()
if [ "$(id -u)" -eq 0 ]; then
    getent passwd postgres >/dev/null ||
        fail "there is no 'postgres' account to run the server as (package postgresql)"
    as_server=(runuser -u postgres --)
fi

stop_server() {
    [ -f "$state/server" ] || { rm -rf "$state"; return 0; }
    local dir
    dir=$(cat "$state/server")
    # Only a folder this script made is removed.
    case "$dir" in
        "${TMPDIR:-/tmp}"/tabulor-pg.*) ;;
        *) fail "'$state/server' names '$dir', which this script did not make" ;;
    esac
    if [ -f "$dir/data/postmaster.pid" ]; then
        "${as_server[@]}" "$bindir/pg_ctl" -D "$dir/data" -m immediate -w -t 20 stop >/dev/null 2>&1 || true
    fi
    rm -rf "$dir" "$state"
}

source "$(dirname "${BASH_SOURCE[0]}")/../../../support/free-port.sh"

start_server() {
    local sample
    sample=$(realpath -m "$1")
    [ -f "$sample" ] || fail "the sample database '$sample' does not exist (build the sample_files target)"
    stop_server
    mkdir -p "$state"
    # Global, for the trap below.
    dir=$(mktemp -d "${TMPDIR:-/tmp}/tabulor-pg.XXXXXX")
    echo "$dir" >"$state/server"
    [ ${#as_server[@]} -eq 0 ] || chown postgres: "$dir"
    # Whatever fails from here on leaves nothing behind and shows the server's log.
    trap 'status=$?; if [ $status -ne 0 ]; then cat "$dir"/*.log >&2 2>/dev/null; stop_server; fi' EXIT
    cd "$dir"

    "${as_server[@]}" "$bindir/initdb" -D "$dir/data" -U tabulor_admin -E UTF8 --locale=C.UTF-8 \
        --auth-local=trust --auth-host=scram-sha-256 --no-sync --no-instructions \
        >"$dir/initdb.log" 2>&1
    cat >>"$dir/data/postgresql.conf" <<CONF
listen_addresses = '127.0.0.1'
unix_socket_directories = '$dir'
fsync = off
synchronous_commit = off
full_page_writes = off
CONF

    # A port found free may be taken before the server binds it: then another is tried.
    local port="" attempt
    for attempt in 1 2 3 4 5; do
        port=$(free_port)
        if "${as_server[@]}" "$bindir/pg_ctl" -D "$dir/data" -o "-p $port" -l "$dir/server.log" \
            -w -t 30 start >/dev/null 2>&1; then
            break
        fi
        port=""
    done
    [ -n "$port" ] || fail "the server did not start on 127.0.0.1"

    local psql=("${as_server[@]}" "$bindir/psql" -X -q -v ON_ERROR_STOP=1 -h "$dir" -p "$port"
        -U tabulor_admin)
    "${psql[@]}" -d postgres -c "CREATE ROLE report_reader LOGIN PASSWORD 'reader-secret'" \
        -c "CREATE DATABASE tabulor_sample" >/dev/null
    { python3 "$here/sample_to_postgres.py" "$sample"; cat "$here/postgres-fixture.sql"; } |
        "${psql[@]}" -d tabulor_sample >/dev/null

    echo "$port" >"$state/port"
    echo "postgresql://report_reader@127.0.0.1:$port/tabulor_sample" >"$state/uri"
    (umask 077 && echo "127.0.0.1:$port:*:report_reader:reader-secret" >"$state/pgpass")
    trap - EXIT
    echo "PostgreSQL $("$bindir/postgres" --version | awk '{print $3}') on 127.0.0.1:$port, data in $dir"
}

case "$action" in
    start)
        [ $# -eq 3 ] || fail "usage: $0 start STATE_DIR SAMPLE_DATABASE"
        start_server "$3"
        ;;
    stop) stop_server ;;
    *) fail "unknown action '$action'" ;;
esac
