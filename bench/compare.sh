#!/usr/bin/env bash
# Import speed side by side with the programs a chess player would use
# instead: vantrel-cli import (working database and library file included)
# against pgn-extract reading and checking every move of the same file, and,
# with --scid, Scid's importer storing the same games.
#
# With --book the file is a game database (vantrel-gen-games --book --shared
# over pgn-extract's eco.pgn: openings shared by a Zipf law and a few plies
# more as other games played them, 100,000 games unless --games says
# otherwise), and the opening tree of counting mode
# (--plies 16 --min-games 5 --counts) is timed against polyglot's make-book
# with the same limits.
#
#   bench/compare.sh [--scid] [--book] [--runs N] [--games N]
#
# Runs each program in turn, N times (default 5), and prints each one's
# median wall time and the median ratio vantrel / peer.
set -euo pipefail
cd "$(dirname "$0")/.."

RUNS=5
GAMES=
SCID=0
BOOK=0
while (($#)); do
  case "$1" in
    --scid) SCID=1 ;;
    --book) BOOK=1 ;;
    --runs) RUNS=$2; shift ;;
    --games) GAMES=$2; shift ;;
    *) echo "usage: bench/compare.sh [--scid] [--book] [--runs N] [--games N]" >&2; exit 2 ;;
  esac
  shift
done
if [[ -z "$GAMES" ]]; then ((BOOK)) && GAMES=100000 || GAMES=10000; fi

SUDO=""
[[ $(id -u) -ne 0 ]] && SUDO="sudo"
need() {  # need PACKAGE FILE
  [[ -x "$2" ]] && return
  echo "Installing $1" >&2
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "$1" >/dev/null
}
need pgn-extract /usr/games/pgn-extract
((BOOK)) && need polyglot /usr/games/polyglot
if ((SCID)); then
  need scid /usr/games/tkscid
  need xvfb /usr/bin/xvfb-run
fi

BUILD=${BUILD_DIR:-build}
[[ -x "$BUILD/bin/vantrel-cli" && -x "$BUILD/bin/vantrel-gen-games" ]] || scripts/build.sh >&2

WORK=$(mktemp -d)
trap 'rm -rf "$WORK"' EXIT
PGN="$WORK/games.pgn"
if ((BOOK)); then
  # Two halves at once, on the two cores, with seeds of their own.
  half=$((GAMES / 2))
  "$BUILD/bin/vantrel-gen-games" "$WORK/a.pgn" "$half" 1 --book /usr/share/pgn-extract/eco.pgn --shared &
  "$BUILD/bin/vantrel-gen-games" "$WORK/b.pgn" "$((GAMES - half))" 2 --book /usr/share/pgn-extract/eco.pgn --shared
  wait
  cat "$WORK/a.pgn" "$WORK/b.pgn" >"$PGN"
  rm -f "$WORK/a.pgn" "$WORK/b.pgn"
else
  "$BUILD/bin/vantrel-gen-games" "$PGN" "$GAMES"
fi
cp "$BUILD/bin/Tessimo.mdb" "$WORK/Tessimo.mdb"
echo "File: $GAMES made-up games$( ((BOOK)) && echo ' opening by book lines'), $(stat -c %s "$PGN") bytes; $RUNS runs each" >&2

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
tree() {
  "$BUILD/bin/vantrel-cli" import "$PGN" --name Tree --out-dir "$WORK" --overwrite --plies 16 --min-games 5 --counts
}
makebook() { /usr/games/polyglot make-book -pgn "$PGN" -bin "$WORK/book.bin" -max-ply 16 -min-game 5; }
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
: >"$WORK/t"; : >"$WORK/b"; : >"$WORK/rb"
for ((i = 1; i <= RUNS; i++)); do
  if ((BOOK)); then
    t=$(elapsed tree)
    b=$(elapsed makebook)
    echo "$t" >>"$WORK/t"
    echo "$b" >>"$WORK/b"
    ratio "$t" "$b" >>"$WORK/rb"
  fi
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
if ((BOOK)); then
  printf 'vantrel-cli tree     %.3f s (median; --plies 16 --min-games 5 --counts)\n' "$(median <"$WORK/t")"
  printf 'polyglot make-book   %.3f s (median; -max-ply 16 -min-game 5)\n' "$(median <"$WORK/b")"
  printf 'ratio vantrel / polyglot  %.2f (median of runs)\n' "$(median <"$WORK/rb")"
fi
if ((SCID)); then
  printf 'Scid sc_base import  %.3f s (median, inside Scid)\n' "$(median <"$WORK/s")"
  printf 'ratio vantrel / Scid  %.2f (median of runs)\n' "$(median <"$WORK/rs")"
fi
