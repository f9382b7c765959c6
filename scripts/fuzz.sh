#!/usr/bin/env bash
# Builds the libFuzzer targets of fuzz/ with clang into build-fuzz/ and runs each for the
# seconds given (default 8), seeded from the shared corpus of real-world files. A crash, a
# hang (an input that takes over 10 s), a leak or a failed check in any target fails the run;
# the input that did it is kept in build-fuzz/findings/.
#
#   scripts/fuzz.sh [seconds per target] [target ...]
#
# The work corpus of each target grows in build-fuzz/corpus/<target>/ from run to run.
set -euo pipefail
top="$(cd "$(dirname "$0")/.." && pwd)"
seconds=${1:-8}
shift || true
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(delimited_reader options_file colors_file animated_cursor decoder_request decoder_reply)
corpus=${TW_CORPUS:-$top/../shared/corpus}
out=$top/build-fuzz
cxx=$(command -v clang++-14 || command -v clang++)

cmake -S "$top/fuzz" -B "$out" -G Ninja -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$out" >/dev/null

# Seeds: the real-world files each reader meets, and messages as the two sides send them.
seed() {
  local t=$1
  shift
  mkdir -p "$out/seeds/$t"
  for f in "$@"; do [ -f "$f" ] && cp -f "$f" "$out/seeds/$t/" || true; done
}
seed delimited_reader "$corpus"/playlist/* "$corpus"/url/* "$top"/tests/fixtures/*.json
seed options_file "$corpus"/playlist/*
seed colors_file "$corpus"/playlist/*
seed animated_cursor "$corpus"/ani/* "$corpus"/cur/* "$corpus"/ico/*
"$out/fuzz_seeds" "$out/seeds/decoder_request" "$out/seeds/decoder_reply"
# Settings files as the program writes them.
printf '0 100 8000 10500 0 2 0 115 115 2 40 0 5000 500 9\r\nPC\r\n/home/u/Pictures\r\n0 1 0 0 0 0 1 1 1 0 0 1\r\n' \
  >"$out/seeds/options_file/Options.INI"
printf '8421504 0 -2147483644 12582912 -2147483644 8388608 -2147483625 8388608 14737632 4210752 32768 16777215 16744576 8388608 12640511 16512 32768 8421631 16744576 0 12648384 0 12632319 0 4210752 16777215 12583104 16777152 12632256 0\r\n' \
  >"$out/seeds/colors_file/Colors.INI"
cp -f "$out/seeds/options_file/Options.INI" "$out/seeds/colors_file/Colors.INI" "$out/seeds/delimited_reader/"

export QT_QPA_PLATFORM=offscreen
# The settings targets write their file at every input: in memory where the system has it.
[ -d /dev/shm ] && [ -w /dev/shm ] && export TMPDIR=/dev/shm
export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:allocator_may_return_null=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
status=0
mkdir -p "$out/findings"
for t in "${targets[@]}"; do
  mkdir -p "$out/corpus/$t"
  log=$out/$t.log
  if "$out/fuzz_$t" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=65536 \
    -artifact_prefix="$out/findings/$t-" -print_final_stats=1 \
    "$out/corpus/$t" "$out/seeds/$t" >"$log" 2>&1; then
    runs=$(grep -Eo 'stat::number_of_executed_units: *[0-9]+' "$log" | grep -Eo '[0-9]+$' || echo "?")
    units=$(find "$out/corpus/$t" -type f | wc -l)
    echo "fuzz $t: $runs executions in ${seconds} s, nothing found (corpus $units inputs)"
  else
    status=1
    echo "fuzz $t: FAILED"
    grep -E 'ERROR|SUMMARY|Test unit written|==[0-9]+==' "$log" | head -12
  fi
done
exit $status
