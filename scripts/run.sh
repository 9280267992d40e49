#!/usr/bin/env bash
# Installs what is missing, builds, makes the sample library from the bundled
# games and starts Vantrel on it.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
scripts/build.sh
BIN="$PWD/${BUILD_DIR:-build}/bin"
"$BIN/vantrel-cli" import data/sample-openings.pgn --name "Sample Openings" --tags Event,White,Black \
  --out-dir "$BIN" --overwrite >/dev/null
if [[ -z "${DISPLAY:-}" && -z "${WAYLAND_DISPLAY:-}" ]]; then
  echo "No display found: starting Vantrel on a virtual one (xvfb-run)."
  exec xvfb-run -a -s "-screen 0 1280x900x24" "$BIN/vantrel" "$BIN/Sample Openings.vnb"
fi
exec "$BIN/vantrel" "$BIN/Sample Openings.vnb"
