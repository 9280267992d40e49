#!/usr/bin/env bash
# Builds the fuzz targets with clang (libFuzzer, AddressSanitizer,
# UndefinedBehaviorSanitizer) into build-fuzz/ and runs each on its seed
# corpus for SECONDS seconds (default 60). New inputs go to a scratch folder,
# so the corpora in fuzz/corpus stay small. Exits non-zero on the first crash,
# leaving the input that caused it in build-fuzz/.
#
#   scripts/fuzz.sh [SECONDS]
set -euo pipefail
cd "$(dirname "$0")/.."
SECONDS_EACH=${1:-60}
scripts/install-deps.sh --extras
BUILD=${FUZZ_BUILD_DIR:-build-fuzz}
cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++ -DVANTREL_FUZZ=ON >/dev/null
cmake --build "$BUILD" -j"$(nproc)"

declare -A CORPUS=(
  [fuzz_library_loader]=library
  [fuzz_packed_file]=packed
  [fuzz_pgn_reader]=pgn
  [fuzz_san_reader]=san
  [fuzz_resolver]=resolver
)
for target in "${!CORPUS[@]}"; do
  [[ -x "$BUILD/bin/$target" ]] || { echo "fuzz.sh: $target was not built" >&2; exit 1; }
done
for target in $(printf '%s\n' "${!CORPUS[@]}" | sort); do
  scratch=$(mktemp -d)
  log="$BUILD/$target.log"
  rc=0
  (cd "$BUILD" && "bin/$target" "$scratch" "../fuzz/corpus/${CORPUS[$target]}" -max_total_time="$SECONDS_EACH" \
     -print_final_stats=1) >"$log" 2>&1 || rc=$?
  rm -rf "$scratch"
  runs=$(grep -o 'stat::number_of_executed_units: *[0-9]*' "$log" | grep -o '[0-9]*$' || echo "?")
  echo "$target: ${SECONDS_EACH}s, $runs runs, exit $rc"
  if ((rc != 0)); then
    grep -E "==[0-9]+==|SUMMARY|Test unit written|runtime error" "$log" | head -n 20 >&2
    echo "fuzz.sh: $target failed; the whole output is in $log" >&2
    exit 1
  fi
done
echo "fuzz.sh: no crashes; ${#CORPUS[@]} passed, 0 failed"
