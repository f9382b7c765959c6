#!/usr/bin/env bash
# Configures and builds into build/ at the repository root.
set -euo pipefail
top="$(cd "$(dirname "$0")/.." && pwd)"
cd "$top"
BUILD_TYPE="${BUILD_TYPE:-RelWithDebInfo}"
launcher=()
command -v ccache >/dev/null 2>&1 && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
if [ ! -f build/build.ninja ]; then
  cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE="$BUILD_TYPE" "${launcher[@]}" "$@"
fi
cmake --build build -j"$(nproc)"
