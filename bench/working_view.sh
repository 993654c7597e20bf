#!/usr/bin/env bash
# Times opening a 10,000,000-row table in the designer's working view: the record source is
# opened, 250 grid rows are loaded and the total is counted.
set -euo pipefail
cd "$(dirname "$0")/.."
dpkg-query -W -f='${Status}' time 2>/dev/null | grep -q "install ok installed" ||
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq time >/dev/null
source bench/large-sales-table.sh
scripts/build.sh >/dev/null
# The peak memory comes from the system's time command.
/usr/bin/time -f "peak %M KB" build/bench/bench_working_view "$db" sales 7
