#!/usr/bin/env bash
# The strict builds: everything once more with warnings as errors (gcc, in
# build-werror/), and the core tests built with clang under AddressSanitizer
# and UndefinedBehaviorSanitizer (in build-asan/, no windows), run once.
# Exits non-zero on the first warning, the first failed test or the first
# sanitizer report.
#
#   scripts/strict.sh [werror|sanitize]...   (both when none is named)
set -euo pipefail
cd "$(dirname "$0")/.."
steps=("$@")
((${#steps[@]})) || steps=(werror sanitize)
scripts/install-deps.sh --extras
JOBS=$(nproc)

for step in "${steps[@]}"; do
  case "$step" in
    werror)
      BUILD=${WERROR_BUILD_DIR:-build-werror}
      cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_FLAGS=-Werror >/dev/null
      cmake --build "$BUILD" -j"$JOBS"
      echo "strict.sh: built with -Werror, no warnings"
      ;;
    sanitize)
      BUILD=${SANITIZE_BUILD_DIR:-build-asan}
      flags="-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer -Werror"
      cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++ \
        -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_EXE_LINKER_FLAGS="-fsanitize=address,undefined" \
        -DVANTREL_GUI=OFF -DVANTREL_BENCH=OFF >/dev/null
      cmake --build "$BUILD" -j"$JOBS" --target core_tests
      (cd "$BUILD" &&
        ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1 \
          ctest --output-on-failure -j"$JOBS" --timeout 600)
      echo "strict.sh: core tests clean under AddressSanitizer and UndefinedBehaviorSanitizer"
      ;;
    *)
      echo "strict.sh: no step $step (werror, sanitize)" >&2
      exit 2
      ;;
  esac
done
