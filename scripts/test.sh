#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quayline authors
# SPDX-License-Identifier: MIT
#
# Builds and runs the tests: scripts/test.sh [--sanitize] [--filter REGEX]
#
#   --sanitize      under the address and undefined-behaviour sanitizers
#   --filter REGEX  only the test programs whose name fits, "transport" for example
#
# The last line counts the single tests of all programs: "N passed, N failed". A program that
# crashes or hangs counts as one failed test. Ends with 0 only if nothing failed and something ran.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

usage() {
  echo "usage: scripts/test.sh [--sanitize] [--filter REGEX]" >&2
  exit 2
}

preset=release
filter=.
while (($# > 0)); do
  case "$1" in
    --sanitize) preset=sanitize ;;
    --filter)
      (($# > 1)) || usage
      filter=$2
      shift
      ;;
    *) usage ;;
  esac
  shift
done

scripts/build.sh "$preset"

if [[ $preset == sanitize ]]; then
  # The hosted browser frees with other sizes than it took.
  export ASAN_OPTIONS=new_delete_type_mismatch=0${ASAN_OPTIONS:+:$ASAN_OPTIONS}
  export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1${UBSAN_OPTIONS:+:$UBSAN_OPTIONS}
  if [[ -f tests/leaks.supp ]]; then
    export LSAN_OPTIONS=suppressions=$PWD/tests/leaks.supp:print_suppressions=0
  fi
fi

results=$PWD/build/$preset/test-results
rm -rf "$results"
mkdir -p "$results"
export GTEST_OUTPUT="xml:$results/"

status=0
# Pages and their time limits want a core for themselves: half of the cores run tests.
ctest --test-dir "build/$preset" --output-on-failure --timeout 300 --tests-regex "$filter" \
  --no-tests=error --parallel "$((($(nproc) + 1) / 2))" --output-junit "$results/programs.junit" ||
  status=$?

# The sum of an attribute of the outermost element of each program's report.
total() {
  local file sum=0 value
  for file in "$results"/*.xml; do
    value=$(sed -n "s/.*<testsuites [^>]*\\b$1=\"\\([0-9]*\\)\".*/\\1/p" "$file" 2>/dev/null | head -n 1)
    sum=$((sum + ${value:-0}))
  done
  echo "$sum"
}

ran=$(total tests)
failed=$(($(total failures) + $(total errors)))
disabled=$(total disabled)
skipped=$(cat "$results"/*.xml 2>/dev/null | grep -c 'result="skipped"' || true)
programs_run=$(grep -c '<testcase ' "$results/programs.junit" 2>/dev/null || true)
reports=$(find "$results" -name '*.xml' | wc -l)
# A program that ended early has left no report.
failed=$((failed + ${programs_run:-0} - reports))
if ((status != 0 && failed <= 0)); then
  failed=1
fi
passed=$((ran - disabled - skipped - $(total failures) - $(total errors)))

echo
if ((skipped > 0)); then
  echo "$skipped skipped, for the reasons given in their output:"
  grep -hB1 -A1 'result="skipped"' "$results"/*.xml | grep -o 'message="[^"]*"' | sort | uniq -c || true
fi
echo "$passed passed, $failed failed"
exit "$((status != 0 || failed > 0))"
