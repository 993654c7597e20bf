#!/usr/bin/env bash
# Installs, builds and runs every test: the normal build, then the same tests built with
# AddressSanitizer and UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh

export QT_QPA_PLATFORM=offscreen
export LSAN_OPTIONS="suppressions=$PWD/tests/lsan.supp:print_suppressions=0"
status=0
for variant in "" --sanitize; do
    scripts/build.sh $variant
    dir=build
    [ -n "$variant" ] && dir=build-sanitize
    echo "== tests in $dir"
    ctest --test-dir "$dir" --output-on-failure -j "$(nproc)" || status=1
done
exit $status
