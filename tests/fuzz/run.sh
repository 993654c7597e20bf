#!/usr/bin/env bash
# Runs the fuzz targets of a tree built with TABULOR_FUZZ, one after the other, each for a while,
# starting from its committed corpus and the inputs it once failed on and keeping what it finds
# in a scratch folder. A crash, leak, time-out or broken promise fails the run; the input is
# kept under <tree>/fuzz-artifacts/<name>/ and the log names it. Once the fault is fixed, the
# input goes to tests/fuzz/regressions/<name>/, which the ordinary test suite replays.
#
#   tests/fuzz/run.sh [--seconds N] [--keep-going] [--merge] <tree> [name...]
#
# --keep-going runs on past a failure, in a child process that libFuzzer restarts, so that a
# long run collects every failing input it meets rather than stopping at the first.
# --merge folds what the run found into the committed corpus, adding only the inputs that add
# coverage: how the corpus is grown after a long run (keep it small: a few hundred KB in all).
set -euo pipefail
cd "$(dirname "$0")/../.."

seconds=20
merge=0
keep_going=0
while [ $# -gt 0 ]; do
    case "$1" in
    --seconds) seconds=$2; shift 2 ;;
    --keep-going) keep_going=1; shift ;;
    --merge) merge=1; shift ;;
    *) break ;;
    esac
done
if [ $# -lt 1 ]; then
    echo "usage: $0 [--seconds N] [--keep-going] [--merge] <tree> [name...]" >&2
    exit 2
fi
tree=$1
shift
table="$tree/fuzz-targets.txt"
if [ ! -f "$table" ]; then
    echo "$table is missing: configure the tree with clang, TABULOR_SANITIZE=ON and TABULOR_FUZZ=ON" >&2
    exit 2
fi

export LSAN_OPTIONS="suppressions=$PWD/tests/lsan.supp:print_suppressions=0"
export QT_QPA_PLATFORM=offscreen
# Qt's warnings about damaged input would only fill the log.
export QT_LOGGING_RULES="*=false"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

status=0
while read -r name program corpus dictionary regressions; do
    if [ $# -gt 0 ] && [[ " $* " != *" $name "* ]]; then
        continue
    fi
    artifacts="$tree/fuzz-artifacts/$name"
    mkdir -p "$artifacts" "$scratch/$name"
    options=(-max_total_time="$seconds" -timeout=25 -close_fd_mask=1 -print_final_stats=1
        -artifact_prefix="$artifacts/")
    [ $keep_going -eq 1 ] && options+=(-fork=1 -ignore_crashes=1 -ignore_timeouts=1 -ignore_ooms=1)
    [ "$dictionary" != - ] && options+=(-dict="$dictionary")
    echo "== fuzzing $name for ${seconds}s"
    inputs=("$scratch/$name" "$corpus")
    [ -d "$regressions" ] && inputs+=("$regressions")
    # Running on past a failure, libFuzzer still names each failing input it wrote.
    if ! "$program" "${options[@]}" "${inputs[@]}" 2>"$scratch/$name.log" ||
        grep -q 'Test unit written to' "$scratch/$name.log"; then
        status=1
        grep -E -B40 'Test unit written to' "$scratch/$name.log" >&2 || tail -60 "$scratch/$name.log" >&2
        echo "fuzz_$name failed; the inputs are in $artifacts/" >&2
        continue
    fi
    grep -E '^stat::(number_of_executed_units|new_units_added|peak_rss_mb)|cov: ' \
        "$scratch/$name.log" | tail -4 || true
    if [ $merge -eq 1 ]; then
        # Merged into the corpus itself, which keeps its inputs and their names and gains only
        # those of the run's that reach something none of them does.
        "$program" -merge=1 -close_fd_mask=1 "$corpus" "$scratch/$name" 2>"$scratch/$name.merge.log"
        echo "   corpus: $(find "$corpus" -type f | wc -l) inputs, $(du -sk "$corpus" | cut -f1) KB"
    fi
done <"$table"
exit $status
