#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quayline authors
# SPDX-License-Identifier: MIT
#
# Checks format and the clang-tidy profile: scripts/lint.sh [--all | --since COMMIT | FILE ...]
#
# Without arguments: the files that differ from the branch "main", and those not yet added.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

changed_since() {
  git diff --name-only --diff-filter=d "$(git merge-base HEAD "$1")"
  git ls-files --others --exclude-standard
}

case "${1:-}" in
  --all) mapfile -t files < <(git ls-files) ;;
  --since) mapfile -t files < <(changed_since "${2:?a commit is missing}") ;;
  '') mapfile -t files < <(changed_since main) ;;
  -*)
    echo "usage: scripts/lint.sh [--all | --since COMMIT | FILE ...]" >&2
    exit 2
    ;;
  *) files=("$@") ;;
esac

sources=()
units=()
for file in "${files[@]}"; do
  case "$file" in
    *.cpp)
      sources+=("$file")
      units+=("$file")
      ;;
    *.h) sources+=("$file") ;;
  esac
done
if ((${#sources[@]} == 0)); then
  echo "Nothing to check."
  exit 0
fi

scripts/deps.sh --lint
clang-format-19 --dry-run -Werror "${sources[@]}"
echo "The format of ${#sources[@]} files is right."

if ((${#units[@]} > 0)); then
  # clang-tidy reads the precompiled headers and what moc and uic make, so all of it has to be built.
  scripts/build.sh release
  printf '%s\0' "${units[@]}" |
    xargs -0 -n 1 -P "$(nproc)" clang-tidy-19 -p build/release --quiet
  echo "clang-tidy has nothing to say about ${#units[@]} files."
fi
