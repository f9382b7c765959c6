#!/usr/bin/env bash
# Sets up, builds and runs the whole test suite headless. Every test runs with a
# temporary HOME of its own, so the user's files are never touched.
set -euo pipefail
top="$(cd "$(dirname "$0")/.." && pwd)"
"$top/scripts/setup.sh"
"$top/scripts/build.sh"
export QT_QPA_PLATFORM=offscreen
export QTWEBENGINE_DISABLE_SANDBOX=1
cd "$top/build"
ctest --output-on-failure -j"$(nproc)" "$@"
