#!/usr/bin/env bash
# The Debian package, unpacked into a scratch root: its files, its desktop
# entry and file type, and both programs run from it with a scratch HOME.
#   package_test.sh BUILD_DIR
set -euo pipefail
build=$(cd "$1" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fail() { echo "FAIL: $*" >&2; exit 1; }

cpack -G DEB --config "$build/CPackConfig.cmake" -B "$scratch/out" >"$scratch/cpack.log" 2>&1 ||
  { cat "$scratch/cpack.log" >&2; fail "cpack"; }
deb=$(ls "$scratch"/out/vantrel_*.deb)
root=$scratch/root
dpkg-deb -x "$deb" "$root"
depends=$(dpkg-deb -f "$deb" Depends)
for lib in libqt6widgets6 libqt6printsupport6 libsqlite3-0 libarchive13 libc6; do
  [[ $depends == *"$lib"* ]] || fail "Depends lacks $lib: $depends"
done

share=$root/usr/share
for f in usr/bin/vantrel usr/bin/vantrel-cli usr/share/vantrel/vantrel.HLP usr/share/vantrel/Tessimo.mdb \
  usr/share/applications/vantrel.desktop usr/share/mime/packages/vantrel.xml \
  usr/share/icons/hicolor/scalable/apps/vantrel.svg usr/share/icons/hicolor/48x48/apps/vantrel.png \
  usr/share/icons/hicolor/256x256/apps/vantrel.png usr/share/man/man1/vantrel.1.gz \
  usr/share/man/man1/vantrel-cli.1.gz usr/share/doc/vantrel/examples/sample-openings.pgn; do
  [[ -s $root/$f ]] || fail "missing $f"
done
# The PNG header's width and height.
[[ $(od -An -tu1 -j16 -N8 "$share/icons/hicolor/48x48/apps/vantrel.png" | xargs) == "0 0 0 48 0 0 0 48" ]] || fail "48x48 icon"

desktop-file-validate "$share/applications/vantrel.desktop" || fail "desktop entry"
grep -qx 'Exec=vantrel %f' "$share/applications/vantrel.desktop" || fail "Exec"
grep -qx 'MimeType=application/x-vantrel-library;' "$share/applications/vantrel.desktop" || fail "MimeType"
cp -r "$share/mime" "$scratch/mime"
XDG_DATA_DIRS=$scratch update-mime-database "$scratch/mime" 2>&1 | tee "$scratch/mime.log"
[[ ! -s $scratch/mime.log ]] || fail "MIME file"
grep -q 'application/x-vantrel-library:\*\.vnb' "$scratch/mime/globs2" || fail "*.vnb glob"

# Installed, the programs work in the user's folder and read the install.
export HOME=$scratch/home
unset XDG_DATA_HOME
mkdir -p "$HOME"
user=$HOME/.local/share/Vantrel
"$root/usr/bin/vantrel-cli" import "$share/doc/vantrel/examples/sample-openings.pgn" --name "Sample Openings" \
  >"$scratch/import.txt" || fail "import"
[[ -s $user/Tessimo.mdb && -s "$user/Sample Openings.vnb" ]] || fail "nothing in $user"
"$root/usr/bin/vantrel-cli" info "$user/Sample Openings.vnb" | grep -qx 'Opens in Vantrel: yes' || fail "info"
[[ ! -e $root/usr/bin/Tessimo.mdb && ! -e "$root/usr/bin/Sample Openings.vnb" ]] || fail "wrote into bin/"
if HOME=/proc/none "$root/usr/bin/vantrel-cli" import "$share/doc/vantrel/examples/sample-openings.pgn" \
  --name X 2>"$scratch/err.txt"; then fail "import without a folder"; fi
grep -q 'The folder /proc/none/.local/share/Vantrel could not be made' "$scratch/err.txt" || fail "$(cat "$scratch/err.txt")"

# The window program on that library for a moment: still running when stopped.
rc=0
QT_QPA_PLATFORM=offscreen timeout 4 "$root/usr/bin/vantrel" "$user/Sample Openings.vnb" || rc=$?
[[ $rc == 124 ]] || fail "vantrel ended with $rc"
echo "package: $(basename "$deb"), $(du -k "$deb" | cut -f1) KiB; Depends: $depends"
