#!/usr/bin/env bash
# Configures and builds one tree through the CMake presets: build/ (preset dev) normally,
# build-sanitize/ (preset dev-asan) with --sanitize.
set -euo pipefail
cd "$(dirname "$0")/.."

preset=dev
if [ "${1:-}" = "--sanitize" ]; then
    preset=dev-asan
fi

cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" -j "$(nproc)"
