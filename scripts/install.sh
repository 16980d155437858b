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
  quayline-firewall-helper quayline-demo-router quayline_databases
cmake --install build/release --prefix "$prefix"

# A desktop seldom searches a home folder for programs: the desktop file names the path.
sed -i "s|^Exec=.*|Exec=\"$prefix/bin/quayline\" %f|" "$prefix/share/applications/quayline.desktop"

# With the policy the system asks for the password in words of Quayline, and keeps it for a few
# minutes. It reads policies of its own folders only, and must not trust a helper that a user could
# replace: without the policy it asks each time.
policy="$prefix/share/polkit-1/actions/org.quayline.firewall.policy"
helper="$prefix/libexec/quayline/quayline-firewall-helper"
sed -i "s|>[^<]*/quayline-firewall-helper<|>$helper<|" "$policy"
system_policies=/usr/share/polkit-1/actions
if ((EUID == 0)) && [[ -d $system_policies && $policy != "$system_policies"/* ]] &&
  [[ $prefix == /usr/local || $prefix == /opt/* ]]; then
  install -m 644 "$policy" "$system_policies/"
fi

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
