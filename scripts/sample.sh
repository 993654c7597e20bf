#!/usr/bin/env bash
# Installs, builds and renders the bundled sample report to build/sample-report.pdf.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
scripts/build.sh
export QT_QPA_PLATFORM=offscreen
build/src/app/tabulor render build/sample/sales_by_region.vrd -o build/sample-report.pdf
echo "The sample report is in $(pwd)/build/sample-report.pdf ($(pdfinfo build/sample-report.pdf | sed -n 's/^Pages: *//p') pages)."
