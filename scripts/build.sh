#!/usr/bin/env bash
# Configures and builds one tree: build/ normally, build-sanitize/ with --sanitize.
set -euo pipefail
cd "$(dirname "$0")/.."

dir=build
flags=(-DCMAKE_BUILD_TYPE=RelWithDebInfo)
if [ "${1:-}" = "--sanitize" ]; then
    dir=build-sanitize
    flags=(-DCMAKE_BUILD_TYPE=Debug -DTABULOR_SANITIZE=ON)
fi

cmake -S . -B "$dir" -G Ninja "${flags[@]}" >/dev/null
cmake --build "$dir" -j "$(nproc)"
