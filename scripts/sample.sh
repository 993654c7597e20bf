#!/usr/bin/env bash
# Installs, builds and runs Tabulor on the bundled sample report.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
scripts/build.sh
export QT_QPA_PLATFORM=offscreen
build/src/app/tabulor info build/sample/sales_by_region.vrd
