#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quayline authors
# SPDX-License-Identifier: MIT
#
# Sees to it that the packages which Quayline is built and tested with are there.
#
#   scripts/deps.sh [--check] [--sanitize] [--lint]
#
# Calls apt only when something is missing. --check installs nothing: it names what is missing and
# ends with 1. --sanitize and --lint add what those runs need beyond a build.
# Known to fit Debian 12 and 13 and Ubuntu 24.04. "a|b" is one package under two names.
set -euo pipefail

packages=(
  # the tools
  clang-19 lld-19 binutils cmake ninja-build pkg-config ccache git
  # what the program links
  qt6-base-dev qt6-webengine-dev 'qt6-svg-dev|libqt6svg6-dev' libqt6sql6-sqlite
  libcurl4-openssl-dev mdbtools-dev libglib2.0-dev libseccomp-dev
  libminiupnpc-dev libnatpmp-dev libarchive-dev libsodium-dev libxcb1-dev
  # what it wants when it runs: certificates, and one font, without which windows show no text
  ca-certificates fontconfig fonts-dejavu-core
  # the tests; iproute2 and nftables build their networks, openssl their certificates, dbus-daemon
  # stands in for a desktop
  libgtest-dev libgmock-dev libbenchmark-dev iproute2 nftables openssl dbus-daemon
)

# A router, a firewall and a network service of the tests; not for a developer's own computer, where
# they would run as services.
if [[ -n ${CI:-} ]]; then
  packages+=(miniupnpd firewalld network-manager)
fi

check_only=false
for option in "$@"; do
  case "$option" in
    --check) check_only=true ;;
    --sanitize) packages+=(libclang-rt-19-dev llvm-19) ;;
    --lint) packages+=(clang-format-19 clang-tidy-19) ;;
    *)
      echo "deps.sh: unknown option '$option' (known: --check, --sanitize, --lint)" >&2
      exit 2
      ;;
  esac
done

is_installed() {
  [[ "$(dpkg-query --show --showformat='${db:Status-Status}' "$1" 2>/dev/null)" == installed ]]
}

# The first of "a|b" that this system's package lists know, or the last one.
name_here() {
  local name last=
  for name in ${1//|/ }; do
    last=$name
    if apt-cache policy "$name" 2>/dev/null | grep -q 'Candidate: [^(]'; then
      break
    fi
  done
  echo "$last"
}

missing=()
if ! command -v dpkg-query >/dev/null; then
  echo "This system has no apt: install what these Debian packages hold yourself: ${packages[*]}." >&2
  exit 0
fi
for package in "${packages[@]}"; do
  found=false
  for name in ${package//|/ }; do
    if is_installed "$name"; then
      found=true
    fi
  done
  if ! $found; then
    missing+=("$package")
  fi
done

if ((${#missing[@]} == 0)); then
  exit 0
fi
if $check_only; then
  echo "Missing packages: ${missing[*]}"
  exit 1
fi

as_root=()
if ((EUID != 0)); then
  if ! command -v sudo >/dev/null; then
    echo "Quayline needs the packages ${missing[*]}; run scripts/deps.sh as root, here is no sudo." >&2
    exit 1
  fi
  as_root=(sudo)
fi

echo "Installing with apt what Quayline is built and tested with and this system lacks: ${missing[*]}."
"${as_root[@]}" apt-get update -qq
names=()
for package in "${missing[@]}"; do
  names+=("$(name_here "$package")")
done
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
  apt-get install -y -qq --no-install-recommends "${names[@]}"
