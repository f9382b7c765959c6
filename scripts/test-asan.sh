#!/usr/bin/env bash
# Builds everything with AddressSanitizer into build-asan/ and runs the whole suite there.
set -euo pipefail
top="$(cd "$(dirname "$0")/.." && pwd)"
cd "$top"
"$top/scripts/setup.sh"
cmake --preset asan -DCMAKE_CXX_COMPILER_LAUNCHER=ccache >/dev/null
cmake --build --preset asan -j"$(nproc)"
ctest --preset asan -j"$(nproc)" "$@"
