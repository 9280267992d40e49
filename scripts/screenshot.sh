#!/usr/bin/env bash
# Starts Vantrel on a virtual screen, waits, and saves a picture of the
# screen: scripts/screenshot.sh OUT.png [seconds] [program arguments...]
set -euo pipefail
cd "$(dirname "$0")/.."
out=${1:?usage: scripts/screenshot.sh OUT.png [seconds] [args...]}
wait=${2:-4}
shift $(( $# >= 2 ? 2 : 1 ))
BIN="$PWD/${BUILD_DIR:-build}/bin"
display=:$((90 + RANDOM % 9))
Xvfb "$display" -screen 0 1280x900x24 >/dev/null 2>&1 &
xvfb=$!
trap 'kill $app $xvfb 2>/dev/null || true' EXIT
sleep 1
DISPLAY=$display "$BIN/vantrel" "$@" &
app=$!
sleep "$wait"
DISPLAY=$display import -window root "$out"
echo "saved $out"
