#!/usr/bin/env bash
# How long the designer's window is blocked, on a 10,000,000-row table: opening a report on
# it, switching to the preview (and when its first page is painted), adding a group,
# resizing a column, and dropping a field into the groups and back into the details of the
# layout window. Runs the real window offscreen; the longest stretch in which the event
# loop did not come round is what a user would see as a freeze.
set -euo pipefail
cd "$(dirname "$0")/.."
source bench/large-sales-table.sh
scripts/build.sh >/dev/null
QT_QPA_PLATFORM=offscreen build/bench/bench_designer "$db" sales 5
