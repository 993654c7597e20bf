#!/usr/bin/env bash
# Installs the build into a temporary prefix and uses it as a host would: the example C host
# built with the installed pkg-config file and, separately, with the installed CMake package;
# both run on the sample report. Checks the command line, the desktop entry and the file type.
#
#   install-test.sh BUILD_DIR SOURCE_DIR SAMPLE_DIR
set -euo pipefail

fail() {
    echo "install-test: $*" >&2
    exit 1
}
[ $# -eq 3 ] || fail "usage: $0 BUILD_DIR SOURCE_DIR SAMPLE_DIR"
build=$1
source=$2
sample=$3
for tool in cc c++ nm pkg-config cmake pdfinfo pdftotext desktop-file-validate update-mime-database; do
    command -v "$tool" >/dev/null ||
        fail "$tool is not installed (scripts/install-deps.sh installs what the tests need)"
done

work=$(mktemp -d "${TMPDIR:-/tmp}/tabulor-install.XXXXXX")
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix
cmake --install "$build" --prefix "$prefix" >"$work/install.log" ||
    { cat "$work/install.log" >&2; fail "cmake --install failed"; }

libdir=$(find "$prefix" -name libtabulor.so -printf '%h\n' | head -n 1)
[ -n "$libdir" ] || fail "libtabulor.so was not installed"
for file in include/tabulor/tabulor.h include/tabulor/tabulor_recordset.h \
    include/tabulor/component/Tabulor.h include/tabulor/printing/PrinterOutput.h \
    bin/tabulor share/applications/tabulor.desktop share/mime/packages/tabulor.xml; do
    [ -e "$prefix/$file" ] || fail "$file was not installed"
done
for file in libtabulor_print.so libtabulor_designer.so pkgconfig/tabulor.pc cmake/Tabulor/TabulorConfig.cmake \
    cmake/Tabulor/TabulorTargets.cmake; do
    [ -e "$libdir/$file" ] || fail "$libdir/$file was not installed"
done

# Only the public headers are installed, and each compiles on its own as a host includes it.
read -r -a public <"$build/package/public-headers.txt"
expected=$(printf '%s\n' "${public[@]}" tabulor.h tabulor_recordset.h | sort)
installed=$(cd "$prefix/include/tabulor" && find . -name '*.h' | sed 's|^\./||' | sort)
[ "$installed" = "$expected" ] || fail "the installed headers are not the public ones:
$(diff <(echo "$expected") <(echo "$installed"))"
# shellcheck disable=SC2046 # the flags are words
for header in "${public[@]}"; do
    echo "#include \"$header\"" | c++ -std=c++20 -fPIC -fsyntax-only -Werror -x c++ - \
        -I"$prefix/include/tabulor" $(pkg-config --cflags Qt6Widgets) ||
        fail "the installed header $header does not compile on its own"
done

# The library shows hosts its public classes and nothing of what lies behind them.
exported=$(nm -DC --defined-only "$libdir/libtabulor.so")
for hidden in OutlineGrid ReportSession DataSource PdfWriter StringTable; do
    ! grep -q "tabulor::$hidden" <<<"$exported" || fail "libtabulor.so exports tabulor::$hidden"
done
grep -q 'tabulor::Tabulor::DoReport' <<<"$exported" || fail "libtabulor.so hides Tabulor::DoReport"

# The installed program finds its libraries by itself.
"$prefix/bin/tabulor" --help >/dev/null

desktop-file-validate "$prefix/share/applications/tabulor.desktop"
# It notes that the prefix is not where applications look; that is expected here.
update-mime-database "$prefix/share/mime" 2>/dev/null
grep -q "Tabulor report definition" "$prefix/share/mime/application/x-tabulor-report.xml" ||
    fail "the report definition file type is not in the MIME database made from the install"

# The pkg-config file gives everything that compiling and linking a C host takes.
mkdir -p "$work/pkg"
export PKG_CONFIG_PATH=$libdir/pkgconfig
# shellcheck disable=SC2046 # the flags are words
# HOST_CFLAGS: what else the hosts are built with (the sanitizers of an instrumented library).
cc -std=c11 -Wall -Wextra -Wpedantic -Werror ${HOST_CFLAGS:-} -o "$work/pkg/host" \
    "$source/examples/host.c" $(pkg-config --cflags --libs tabulor) -Wl,-rpath,"$libdir"

# The CMake package, for a host project of its own.
cmake -S "$source/examples" -B "$work/cmake" -DCMAKE_PREFIX_PATH="$prefix" \
    -DCMAKE_C_FLAGS="-Wall -Wextra -Wpedantic -Werror ${HOST_CFLAGS:-}" \
    -DCMAKE_BUILD_RPATH="$libdir" \
    >"$work/cmake.log" 2>&1 || { cat "$work/cmake.log" >&2; fail "configuring against the package failed"; }
cmake --build "$work/cmake" >>"$work/cmake.log" 2>&1 ||
    { cat "$work/cmake.log" >&2; fail "building against the package failed"; }

export QT_QPA_PLATFORM=offscreen TABULOR_SETTINGS=$work/none.ini
for host in "$work/pkg/host" "$work/cmake/tabulor_host"; do
    out=$(dirname "$host")
    "$host" "$sample/sales_by_region.vrd" "$out"
    for pdf in "$out/from-database.pdf" "$out/from-host.pdf"; do
        pages=$(pdfinfo "$pdf" | sed -n 's/^Pages: *//p')
        [ "${pages:-0}" -ge 1 ] || fail "$pdf has no pages"
        text=$(pdftotext -layout "$pdf" -)
        [[ $text == *"Page 1 of $pages"* ]] || fail "$pdf has no page header"
    done
done
echo "installed into $prefix; hosts built with pkg-config and with the CMake package"
