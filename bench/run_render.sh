#!/usr/bin/env bash
# The reference report end to end, database to finished PDF, at 10k, 100k and 1M rows, with
# the ReportLab peer measured in the same run: median wall seconds of RUNS runs, peak memory
# and pages. Needs python3-reportlab and GNU time (bench/run_render.sh installs them).
set -euo pipefail
cd "$(dirname "$0")/.."
runs="${RUNS:-3}"
cache="${TABULOR_BENCH_CACHE:-$HOME/.cache/tabulor-bench}"
shared="$(cd .. && pwd)/shared/bench"
mkdir -p "$cache"
for p in python3-reportlab time; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" ||
        DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "$p" >/dev/null
done
scripts/build.sh >/dev/null
tool=build/src/app/tabulor
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

# Prints "median-seconds peak-MB" of a command run $runs times.
measure() {
    local times=() peak=0
    for _ in $(seq "$runs"); do
        /usr/bin/time -f "%e %M" -o "$work/time" "$@" >/dev/null 2>&1
        read -r seconds kb <"$work/time"
        times+=("$seconds")
        [ "$kb" -gt "$peak" ] && peak=$kb
    done
    median=$(printf '%s\n' "${times[@]}" | sort -n | sed -n "$(((runs + 1) / 2))p")
    echo "$median $((peak / 1024))"
}

printf '%-8s %-26s %-26s %s\n' rows "tabulor (s, MB, pages)" "ReportLab (s, MB, pages)" ratio
for rows in ${ROWS:-10000 100000 1000000}; do
    db="$cache/sales_$rows.db"
    [ -f "$db" ] || python3 "$shared/gen_sales.py" "$rows" "$db"
    "$tool" new --database "$db" --source sales --group region --group product \
        --detail order_date --detail customer --detail quantity --detail unit_price \
        --detail amount --total quantity=sum --total unit_price=avg --total amount=sum \
        --subtotals both -o "$work/reference.vrd"
    read -r ours ourPeak < <(measure "$tool" render "$work/reference.vrd" -o "$work/ours.pdf")
    ourPages=$(pdfinfo "$work/ours.pdf" | awk '/^Pages:/ {print $2}')
    read -r peer peerPeak < <(measure /usr/bin/python3 "$shared/peers/rl_report.py" "$db" "$work/peer.pdf" --chunk 100)
    peerPages=$(pdfinfo "$work/peer.pdf" | awk '/^Pages:/ {print $2}')
    ratio=$(awk -v a="$peer" -v b="$ours" 'BEGIN { printf "%.1fx", a / b }')
    printf '%-8s %-26s %-26s %s\n' "$rows" "$ours s, $ourPeak MB, $ourPages" \
        "$peer s, $peerPeak MB, $peerPages" "$ratio"
done
