#!/usr/bin/env bash
# Starts or stops a private X server (Xvfb) for the tests that look at the designer on a real
# display. The display it took is written to STATE/display.
#
#   xvfb-server.sh start|stop STATE
set -euo pipefail
[ $# -eq 2 ] || { echo "usage: $0 start|stop STATE" >&2; exit 2; }
state=$2
case $1 in
start)
    command -v Xvfb >/dev/null ||
        { echo "Xvfb is not installed (scripts/install-deps.sh installs it)" >&2; exit 1; }
    "$0" stop "$state" 2>/dev/null || true
    mkdir -p "$state"
    # Xvfb picks a free display and tells its number through file descriptor 3.
    Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp 3>"$state/display" \
        >"$state/xvfb.log" 2>&1 &
    echo $! >"$state/pid"
    for _ in $(seq 100); do
        [ -s "$state/display" ] && { echo ":$(cat "$state/display")" >"$state/display"; exit 0; }
        sleep 0.1
    done
    echo "Xvfb did not start: $(cat "$state/xvfb.log")" >&2
    exit 1
    ;;
stop)
    [ -f "$state/pid" ] && kill "$(cat "$state/pid")" 2>/dev/null || true
    rm -f "$state/pid"
    ;;
*)
    echo "usage: $0 start|stop STATE" >&2
    exit 2
    ;;
esac
