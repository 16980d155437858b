#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Quayline authors
# SPDX-License-Identifier: MIT
#
# One whole update against a router on this computer: scripts/demo.sh [--cli] [--model NAME]
#
# Starts the demo router on loopback, gives it the ports of data/sample-list.qyl, and then shows the
# router's rules beside the list. Where there is a display this happens in the program's windows,
# else, and with --cli, on the terminal. Ends with 0 only if every entry is in the router. NAME is
# one of the demo router's models; those that data/routers/ has a router for can be updated.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

bin=build/release/bin
list=data/sample-list.qyl
login='admin' # the demo router's user and its password
model=formback
use_windows=false
if [[ -n ${DISPLAY:-}${WAYLAND_DISPLAY:-} ]]; then
  use_windows=true
fi

while (($# > 0)); do
  case "$1" in
    --cli) use_windows=false ;;
    --model)
      model=${2:-}
      shift "$(($# > 1))"
      ;;
    *) model= ;;
  esac
  shift
done

# Each file of a router says for which model of the demo router it is written.
mark='# quayline-demo-router --model '
router_file=$(grep -lxF -- "$mark$model" data/routers/*.txt || true)
if [[ -z $router_file ]]; then
  models=$(sed -n "s/^$mark//p" data/routers/*.txt | sort | paste -sd '|')
  echo "usage: scripts/demo.sh [--cli] [--model $models]" >&2
  exit 2
fi
router_name=$(sed -n 's/^routername: *//p' "$router_file")

scripts/build.sh release

folder=$(mktemp -d)
router=
program=
clean_up() {
  # The windows first: they work in the folder that goes.
  for process in $program $router; do
    kill "$process" 2>/dev/null || true
    wait "$process" 2>/dev/null || true
  done
  rm -rf "$folder"
}
trap clean_up EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

: >"$folder/router.out" # it is read before the router has had its turn
"$bin/quayline-demo-router" --port 0 --model "$model" >"$folder/router.out" &
router=$!

# The port is in the one line that the router prints when it is ready.
port=
for _ in {1..100}; do
  port=$(sed -n 's|^Listening on http://127\.0\.0\.1:\([0-9]*\)/.*|\1|p' "$folder/router.out")
  if [[ -n $port ]] || ! kill -0 "$router" 2>/dev/null; then
    break
  fi
  sleep 0.1
done
if [[ -z $port ]]; then
  echo "demo.sh: the demo router has not started." >&2
  exit 1
fi
echo "The demo router ($model) answers at http://127.0.0.1:$port/ (login $login, password $login)."

data=$folder/quayline
mkdir "$data"
cp -r build/release/share/quayline-data/. "$data/"

compare() {
  "$bin/quayline-demo-router" --compare "$list" --port "$port"
}

run_with_cli() {
  # Also after a failed update: what the router holds is the answer.
  printf '%s\n' "$login" |
    "$bin/quayline-cli" update --data "$data" --router "$router_name" --address 127.0.0.1 \
      --port "$port" --user "$login" --password-stdin --list "$list" ||
    echo "demo.sh: the update ended with $?." >&2
}

# The program as the user has it, with everything typed in and "Update Router" pressed.
run_with_windows() {
  cp "$list" "$data/list.qyl"
  (
    umask 077
    printf '%s\r\n' '[main]' "router=$router_name" 'routerip=127.0.0.1' "httpport=$port" \
      'httptype=http://' "routerusername=$login" "routerpassword=$login" \
      'showgettingstarted=1' >"$data/settings.ini"
  )
  "$bin/quayline" --data "$data" --run-update &
  program=$!
  local is_done=false
  while kill -0 "$program" 2>/dev/null; do
    if ! $is_done && compare >/dev/null 2>&1; then
      is_done=true
      compare
      echo "Every entry stands in the router. Close the program's windows to end the demo."
    fi
    sleep 1
  done
  wait "$program" || echo "demo.sh: the program ended with $?." >&2
}

if $use_windows; then
  run_with_windows
else
  run_with_cli
fi
echo
compare
