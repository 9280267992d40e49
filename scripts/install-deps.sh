#!/usr/bin/env bash
# Installs, from Debian's packages, whatever the build, the tests and the
# screenshots need and the machine does not have yet. The package needs
# dpkg-shlibdeps (dpkg-dev), the icons rsvg-convert, and its test
# desktop-file-validate and update-mime-database. --extras adds what the
# fuzzing and the screenshots under a window manager use.
set -euo pipefail

PACKAGES=(
  build-essential cmake ninja-build pkg-config
  qt6-base-dev qt6-base-dev-tools qt6-svg-dev libgl1-mesa-dev
  libsqlite3-dev libcli11-dev libarchive-dev
  libgtest-dev libbenchmark-dev
  fonts-dejavu-core
  fonts-urw-base35  # the fonts of a full desktop, for the window tests
  xvfb xauth poppler-utils
  dpkg-dev desktop-file-utils shared-mime-info librsvg2-bin
)
if [[ "${1:-}" == "--extras" ]]; then
  PACKAGES+=(clang libclang-rt-14-dev imagemagick openbox xdotool)
fi

missing=()
for p in "${PACKAGES[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if ((${#missing[@]})); then
  SUDO=""
  [[ $(id -u) -ne 0 ]] && SUDO="sudo"
  echo "Installing: ${missing[*]}"
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
