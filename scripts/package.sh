#!/usr/bin/env bash
# Installs what is missing, builds, and makes the Debian package
# build/vantrel_VERSION_ARCH.deb (install it with sudo apt install ./build/vantrel_*.deb).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
scripts/build.sh
cd "${BUILD_DIR:-build}"
cpack -G DEB
ls -1 "$PWD"/vantrel_*.deb
