#!/usr/bin/env bash
# Installs, checks the formatting, builds and runs every test: the normal build, then the same
# tests built with AddressSanitizer and UndefinedBehaviorSanitizer, then a short run of each
# fuzz target. A formatting fault is told at once but fails the run only at the end, so that it
# never hides what the tests say.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh

# Every tracked C and C++ file, not only the ones changed: on a fresh clone nothing is changed,
# and checking them all takes seconds.
unformatted=()
check_formatting() {
    if ! command -v clang-format >/dev/null; then
        echo "clang-format is not installed (apt-get install clang-format)" >&2
        return 1
    fi
    local files=() output
    if git rev-parse --is-inside-work-tree >/dev/null 2>&1; then
        mapfile -t files < <(git ls-files '*.h' '*.cpp' '*.c')
    else
        mapfile -t files < <(find bench examples sample src tests -name '*.h' -o -name '*.cpp' -o -name '*.c')
    fi
    if output=$(clang-format --dry-run --Werror "${files[@]}" 2>&1); then
        echo "== formatting: all ${#files[@]} C and C++ files as clang-format writes them"
        return 0
    fi
    mapfile -t unformatted < <(sed -n 's/^\(.*\):[0-9]*:[0-9]*: error: code should be clang-formatted.*/\1/p' \
        <<<"$output" | sort -u)
    if [ ${#unformatted[@]} -eq 0 ]; then
        echo "$output" >&2 # clang-format itself failed
    fi
    return 1
}
report_formatting() {
    if [ ${#unformatted[@]} -gt 0 ]; then
        echo "Not formatted as .clang-format says: ${unformatted[*]}" >&2
        echo "Fix with: clang-format -i $(printf '%q ' "${unformatted[@]}")" >&2
    else
        echo "The formatting could not be checked; see above." >&2
    fi
}

status=0
formatted=1
if ! check_formatting; then
    formatted=0
    status=1
    report_formatting
fi

# scripts/build.sh builds build/ through the preset dev, and build-sanitize/ through dev-asan.
for variant in "" --sanitize; do
    preset=dev
    [ -n "$variant" ] && preset=dev-asan
    scripts/build.sh $variant
    echo "== tests of preset $preset (the run has taken $((SECONDS / 60)) minutes so far)"
    ctest --preset "$preset" -j "$(nproc)" || status=1
done

# The fuzz targets are built with clang in build-fuzz/, only they and the layers they link, and
# each runs for TABULOR_FUZZ_SECONDS (30) from its corpus. That takes about a quarter of an hour
# on a machine without a compiler cache, so it starts only while the whole run can still end
# within an hour and a half; otherwise it says so and is left out.
fuzz_start_limit=${TABULOR_FUZZ_START_MINUTES:-62}
if ((SECONDS / 60 >= fuzz_start_limit)); then
    echo "== fuzzing left out: the builds and tests took $((SECONDS / 60)) minutes (limit ${fuzz_start_limit})"
else
    echo "== fuzzing (the run has taken $((SECONDS / 60)) minutes so far)"
    CC=clang CXX=clang++ cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DTABULOR_SANITIZE=ON -DTABULOR_FUZZ=ON >/dev/null
    if cmake --build build-fuzz -j "$(nproc)" --target tabulor_fuzz_programs; then
        tests/fuzz/run.sh --seconds "${TABULOR_FUZZ_SECONDS:-30}" build-fuzz || status=1
    else
        status=1
    fi
fi
echo "== done in $((SECONDS / 60)) minutes"

[ $formatted -eq 1 ] || report_formatting
exit $status
