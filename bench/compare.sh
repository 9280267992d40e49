#!/usr/bin/env bash
# Import speed side by side with the programs a chess player would use
# instead: vantrel-cli import (working database and library file included)
# against pgn-extract reading and checking every move of the same file, and,
# with --scid, Scid's importer storing the same games.
#
#   bench/compare.sh [--scid] [--runs N] [--games N]
#
# Runs each program in turn, N times (default 5), and prints each one's
# median wall time and the median ratio vantrel / peer.
set -euo pipefail
cd "$(dirname "$0")/.."

RUNS=5
GAMES=10000
SCID=0
while (($#)); do
  case "$1" in
    --scid) SCID=1 ;;
    --runs) RUNS=$2; shift ;;
    --games) GAMES=$2; shift ;;
    *) echo "usage: bench/compare.sh [--scid] [--runs N] [--games N]" >&2; exit 2 ;;
  esac
  shift
done

SUDO=""
[[ $(id -u) -ne 0 ]] && SUDO="sudo"
need() {  # need PACKAGE FILE
  [[ -x "$2" ]] && return
  echo "Installing $1" >&2
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "$1" >/dev/null
}
need pgn-extract /usr/games/pgn-extract
if ((SCID)); then
  need scid /usr/games/tkscid
  need xvfb /usr/bin/xvfb-run
fi

BUILD=${BUILD_DIR:-build}
[[ -x "$BUILD/bin/vantrel-cli" && -x "$BUILD/bin/vantrel-gen-games" ]] || scripts/build.sh >&2

WORK=$(mktemp -d)
trap 'rm -rf "$WORK"' EXIT
PGN="$WORK/games.pgn"
"$BUILD/bin/vantrel-gen-games" "$PGN" "$GAMES"
cp "$BUILD/bin/Tessimo.mdb" "$WORK/Tessimo.mdb"
echo "File: $GAMES made-up games, $(stat -c %s "$PGN") bytes; $RUNS runs each" >&2

now() { date +%s.%N; }
elapsed() {  # elapsed COMMAND...: wall seconds of one run
  local t0 t1
  t0=$(now)
  "$@" >/dev/null 2>&1
  t1=$(now)
  awk -v a="$t0" -v b="$t1" 'BEGIN { printf "%.4f\n", b - a }'
}
ratio() { awk -v a="$1" -v b="$2" 'BEGIN { printf "%.4f\n", a / b }'; }
median() { sort -g | awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }

vantrel() {
  "$BUILD/bin/vantrel-cli" import "$PGN" --name Compare --out-dir "$WORK" --db "$WORK/Tessimo.mdb" --overwrite
}
pgnextract() { /usr/games/pgn-extract -s -o /dev/null "$PGN"; }
# Scid is timed inside its own interpreter: creating the database, importing
# and closing it, without the start of Tk and of the virtual screen it needs.
cat > "$WORK/scid.tcl" <<'TCL'
set t0 [clock microseconds]
set db [sc_base create [lindex $argv 0]]
sc_base import $db [lindex $argv 1]
sc_base close $db
puts [format %.4f [expr {([clock microseconds] - $t0) / 1e6}]]
exit
TCL
scid() {
  rm -f "$WORK"/scid.si4 "$WORK"/scid.sg4 "$WORK"/scid.sn4
  xvfb-run -a /usr/games/tkscid "$WORK/scid.tcl" "$WORK/scid" "$PGN" 2>/dev/null | tail -n 1
}

vantrel >/dev/null 2>&1 || { echo "vantrel-cli import failed" >&2; exit 1; }  # warm the caches
: >"$WORK/v"; : >"$WORK/p"; : >"$WORK/s"; : >"$WORK/rp"; : >"$WORK/rs"
for ((i = 1; i <= RUNS; i++)); do
  v=$(elapsed vantrel)
  p=$(elapsed pgnextract)
  echo "$v" >>"$WORK/v"
  echo "$p" >>"$WORK/p"
  ratio "$v" "$p" >>"$WORK/rp"
  if ((SCID)); then
    s=$(scid)
    echo "$s" >>"$WORK/s"
    ratio "$v" "$s" >>"$WORK/rs"
  fi
done
printf 'vantrel-cli import   %.3f s (median)\n' "$(median <"$WORK/v")"
printf 'pgn-extract -s       %.3f s (median)\n' "$(median <"$WORK/p")"
printf 'ratio vantrel / pgn-extract  %.2f (median of runs)\n' "$(median <"$WORK/rp")"
if ((SCID)); then
  printf 'Scid sc_base import  %.3f s (median, inside Scid)\n' "$(median <"$WORK/s")"
  printf 'ratio vantrel / Scid  %.2f (median of runs)\n' "$(median <"$WORK/rs")"
fi
