#!/usr/bin/env bash
# Checks that the report library runs without QtWidgets: nothing it loads, directly or through
# other libraries, is the widgets library. The printer library, which needs it, shows that the
# check sees it where it is.
#
#   no-widgets.sh LIBTABULOR LIBTABULOR_PRINT
set -euo pipefail
[ $# -eq 2 ] || { echo "usage: $0 LIBTABULOR LIBTABULOR_PRINT" >&2; exit 2; }
widgets() { ldd "$1" | grep -o 'libQt6Widgets[^ ]*' || true; }
found=$(widgets "$1")
if [ -n "$found" ]; then
    echo "$1 loads $found: the engine must stay free of widgets" >&2
    exit 1
fi
if [ -z "$(widgets "$2")" ]; then
    echo "$2 does not load libQt6Widgets, so this check cannot tell either way" >&2
    exit 1
fi
