#!/usr/bin/env bash
# The print server that the printing tests print to: a private CUPS scheduler in a temporary
# folder, with its own configuration, listening on 127.0.0.1 only on a free port, with these
# queues, both on the cups-pdf backend:
#   TabulorPDF      the default printer; each job becomes a PDF in the folder named in "out"
#   TabulorRejects  a queue that refuses jobs
#
#   cups-server.sh start STATE_DIR
#   cups-server.sh stop STATE_DIR
#
# start leaves in STATE_DIR: "address" (127.0.0.1:PORT, for CUPS_SERVER), "out" and "server"
# (the temporary folder). stop ends the server and removes what start made; it does
# nothing when no server was started, and start stops a server that an interrupted run left
# behind first.
#
# cups-pdf reads its settings from /etc/cups/cups-pdf-NAME.conf for a device cups-pdf:/NAME, so
# the queue gets a device name of its own and such a file, which stop removes again; the
# system's cups-pdf.conf is left as it is. The backend runs as root, so the server does too.
set -euo pipefail

fail() {
    echo "cups-server: $*" >&2
    exit 1
}
[ $# -eq 2 ] || fail "usage: $0 start|stop STATE_DIR"
action=$1
state=$(realpath -m "$2")
config_dir=/etc/cups
marker="# Tabulor test printer, server folder:"

# A device settings file is only removed when it is one of ours and its server folder is gone
# (or is the one being stopped).
remove_device_configs() {
    local keep_unless=$1 file folder
    for file in "$config_dir"/cups-pdf-tabulor-*.conf; do
        [ -f "$file" ] || continue
        folder=$(sed -n "s|^$marker ||p" "$file")
        [ -n "$folder" ] || continue
        if [ "$folder" = "$keep_unless" ] || [ ! -d "$folder" ]; then
            rm -f "$file"
        fi
    done
}

stop_server() {
    [ -f "$state/server" ] || { rm -rf "$state"; return 0; }
    local dir pid
    dir=$(cat "$state/server")
    # Only a folder this script made is removed.
    case "$dir" in
        "${TMPDIR:-/tmp}"/tabulor-cups.*) ;;
        *) fail "'$state/server' names '$dir', which this script did not make" ;;
    esac
    if [ -f "$dir/cupsd.pid" ]; then
        pid=$(cat "$dir/cupsd.pid")
        if kill -0 "$pid" 2>/dev/null; then
            kill -TERM "$pid" 2>/dev/null || true
            for _ in $(seq 50); do kill -0 "$pid" 2>/dev/null || break; sleep 0.2; done
            kill -KILL "$pid" 2>/dev/null || true
        fi
    fi
    remove_device_configs "$dir"
    rm -rf "$dir" "$state"
}

source "$(dirname "${BASH_SOURCE[0]}")/../support/free-port.sh"

write_configuration() {
    local port=$1
    cat >"$dir/cups-files.conf" <<CONF
ServerRoot $dir/root
RequestRoot $dir/spool
TempDir $dir/spool/tmp
CacheDir $dir/cache
StateDir $dir/state
Printcap $dir/printcap
ErrorLog $dir/log/error_log
AccessLog $dir/log/access_log
PageLog $dir/log/page_log
SystemGroup root
CONF
    # Anyone on this machine may print and manage queues; nobody else can reach the server.
    cat >"$dir/cupsd.conf" <<CONF
Listen 127.0.0.1:$port
LogLevel info
Browsing No
BrowseLocalProtocols none
WebInterface No
DefaultAuthType None
<Location />
  Order allow,deny
  Allow 127.0.0.1
</Location>
<Policy default>
  <Limit All>
    Order deny,allow
  </Limit>
</Policy>
CONF
}

server_answers() {
    lpstat -h "127.0.0.1:$1" -r 2>/dev/null | grep -q "is running"
}

start_server() {
    [ "$(id -u)" -eq 0 ] ||
        fail "the test print server must run as root: the cups-pdf backend only runs for root"
    local ppd=/usr/share/ppd/cups-pdf/CUPS-PDF_opt.ppd tool
    for tool in cupsd lpadmin lpstat cupsreject pdftocairo; do
        command -v "$tool" >/dev/null ||
            fail "$tool is not installed (packages cups, cups-client, poppler-utils; scripts/install-deps.sh installs them)"
    done
    [ -x /usr/lib/cups/backend/cups-pdf ] && [ -f "$ppd" ] ||
        fail "cups-pdf is not installed (package printer-driver-cups-pdf; scripts/install-deps.sh installs it)"
    [ -w "$config_dir" ] || fail "$config_dir is not writable, so cups-pdf cannot be told where to write"

    stop_server
    remove_device_configs ""
    mkdir -p "$state"
    # Global, for the trap below.
    dir=$(mktemp -d "${TMPDIR:-/tmp}/tabulor-cups.XXXXXX")
    echo "$dir" >"$state/server"
    # Filters run as the lp account and must reach the job files.
    chmod 755 "$dir"
    mkdir -p "$dir"/{root,spool/tmp,cache,state,log,out,cups-pdf-spool}
    trap 'status=$?; if [ $status -ne 0 ]; then cat "$dir"/log/*_log >&2 2>/dev/null; stop_server; fi' EXIT

    local device="tabulor-${dir##*.}"
    cat >"$config_dir/cups-pdf-$device.conf" <<CONF
$marker $dir
Out $dir/out
Spool $dir/cups-pdf-spool
Log $dir/log
CONF

    # A port found free may be taken before the server binds it: then another is tried.
    local port="" attempt pid
    for attempt in 1 2 3 4 5; do
        port=$(free_port)
        write_configuration "$port"
        cupsd -f -c "$dir/cupsd.conf" -s "$dir/cups-files.conf" </dev/null \
            >"$dir/log/cupsd_log" 2>&1 &
        pid=$!
        echo "$pid" >"$dir/cupsd.pid"
        for _ in $(seq 100); do
            server_answers "$port" && break
            kill -0 "$pid" 2>/dev/null || break
            sleep 0.1
        done
        server_answers "$port" && break
        kill -KILL "$pid" 2>/dev/null || true
        port=""
    done
    [ -n "$port" ] || fail "the print server did not start on 127.0.0.1"

    # cups-pdf turns the job back into PDF through PostScript; made with the cairo renderer,
    # that PostScript keeps the text readable in the PDF.
    local host="127.0.0.1:$port" queue output
    for queue in TabulorPDF TabulorRejects; do
        # lpadmin warns that printer drivers are deprecated; only a failure is shown.
        output=$(lpadmin -h "$host" -p "$queue" -v "cups-pdf:/$device" -P "$ppd" \
            -o pdftops-renderer-default=pdftocairo -E 2>&1) || fail "adding $queue: $output"
    done
    lpadmin -h "$host" -d TabulorPDF
    cupsreject -h "$host" TabulorRejects

    echo "$host" >"$state/address"
    echo "$dir/out" >"$state/out"
    trap - EXIT
    echo "CUPS $(cups-config --version 2>/dev/null || true) on $host, PDFs in $dir/out"
}

case "$action" in
    start) start_server ;;
    stop) stop_server ;;
    *) fail "unknown action '$action'" ;;
esac
