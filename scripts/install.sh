#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quayline authors
# SPDX-License-Identifier: MIT
#
# Builds Quayline and installs it for you: scripts/install.sh [PREFIX]
#
# PREFIX is ~/.local unless it is given: no right of an administrator is needed there. Afterwards
# Quayline is in the menu of the desktop, and a double click on a ".qyl" file opens it.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

prefix=$(realpath -m -- "${1:-$HOME/.local}")

scripts/build.sh release quayline quayline-cli quayline-dbtool quayline-reader quayline-mapper \
  quayline_databases
cmake --install build/release --prefix "$prefix"

# A desktop seldom searches a home folder for programs: the desktop file names the path.
sed -i "s|^Exec=.*|Exec=\"$prefix/bin/quayline\" %f|" "$prefix/share/applications/quayline.desktop"

# What each of these does, a desktop does by itself at the next login where it is missing.
refresh() {
  if command -v "$1" >/dev/null; then
    "$@" >/dev/null
  fi
}
refresh update-mime-database "$prefix/share/mime"
refresh update-desktop-database "$prefix/share/applications"
refresh xdg-mime default quayline.desktop application/x-quayline-list

echo "Quayline is installed: $prefix/bin/quayline"
