#!/usr/bin/env bash
# Installs what building and testing Tabulor needs on Debian 12. Safe to run again: packages
# that are already there are left alone, and the package lists are only refreshed when
# something is missing.
set -euo pipefail

packages=(
    build-essential cmake ninja-build ccache pkg-config git clang-format clang-tidy
    clang libclang-rt-dev
    qt6-base-dev qt6-base-dev-tools libqt6sql6-sqlite qt6-qpa-plugins libgl1-mesa-dev
    libgtest-dev googletest
    sqlite3 libsqlite3-dev python3
    mdbtools-dev
    fonts-wine fonts-dejavu-core fontconfig
    poppler-utils
    libharfbuzz-dev libfontconfig-dev libdeflate-dev qpdf fonts-noto-cjk fonts-urw-base35
    postgresql libpq-dev unixodbc-dev odbcinst libsqliteodbc odbc-postgresql
    cups cups-client printer-driver-cups-pdf libcups2-dev desktop-file-utils shared-mime-info
    xvfb xauth imagemagick adwaita-icon-theme libqt6svg6
)

missing=()
for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done

if [ ${#missing[@]} -gt 0 ]; then
    echo "Installing: ${missing[*]}"
    sudo_cmd=()
    [ "$(id -u)" -ne 0 ] && sudo_cmd=(sudo)
    "${sudo_cmd[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
