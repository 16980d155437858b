#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Quayline authors
# SPDX-License-Identifier: MIT
#
# Renders every window to build/screenshots/*.png, at scale 1 and 2, in a light and a dark palette.
set -eu
cd "$(dirname "$0")/.."
preset=${1:-release}
[ -f "build/$preset/build.ninja" ] || cmake --preset "$preset"
cmake --build "build/$preset" --target quayline_screenshots
mkdir -p build/screenshots
for scale in 1 2; do
  for palette in light dark; do
    QT_QPA_PLATFORM=offscreen QT_SCALE_FACTOR=$scale XDG_RUNTIME_DIR="${XDG_RUNTIME_DIR:-/tmp}" \
      "build/$preset/bin/quayline_screenshots" build/screenshots "$palette"
  done
done
ls build/screenshots
