#!/usr/bin/env bash
# Runs the benchmarks on the reference sales data at 10k, 100k and 1M rows. The databases are
# generated once into a cache folder outside the repository.
set -euo pipefail
cd "$(dirname "$0")/.."
cache="${TABULOR_BENCH_CACHE:-$HOME/.cache/tabulor-bench}"
generator="$(cd .. && pwd)/shared/bench/gen_sales.py"
mkdir -p "$cache"
scripts/build.sh >/dev/null

for rows in 10000 100000 1000000; do
    db="$cache/sales_$rows.db"
    [ -f "$db" ] || python3 "$generator" "$rows" "$db"
done

echo "== report grid build"
for rows in 10000 100000 1000000; do
    printf '%8d: ' "$rows"
    build/bench/bench_grid_build "$cache/sales_$rows.db" 5
done
