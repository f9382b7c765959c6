#!/usr/bin/env bash
# Sets up, builds and starts Tarnwick. An optional file path is handed to the program.
set -euo pipefail
top="$(cd "$(dirname "$0")/.." && pwd)"
"$top/scripts/setup.sh"
"$top/scripts/build.sh"
exec "$top/build/bin/tarnwick" "$@"
