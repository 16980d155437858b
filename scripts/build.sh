#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quayline authors
# SPDX-License-Identifier: MIT
#
# Builds everything: scripts/build.sh [release|debug|sanitize] [target ...]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

preset=${1:-release}
shift || true

if [[ $preset == sanitize ]]; then
  scripts/deps.sh --sanitize
else
  scripts/deps.sh
fi

# Two checkouts share what ccache holds, and a precompiled header does not spoil it.
export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1
export CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime

cmake --preset "$preset"
cmake --build --preset "$preset" --parallel "$(nproc)" ${1:+--target "$@"}
