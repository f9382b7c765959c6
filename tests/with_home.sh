#!/usr/bin/env bash
# Runs a command with a fresh temporary HOME (whose path holds no dot) and removes it after.
set -u
h=$(mktemp -d /tmp/twhomeXXXXXX | tr -d '.')
mkdir -p "$h"
export HOME="$h" XDG_DATA_HOME="$h/share" XDG_CACHE_HOME="$h/cache" XDG_CONFIG_HOME="$h/config" XDG_RUNTIME_DIR="$h/run"
mkdir -p "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"
"$@"
rc=$?
rm -rf "$h"
exit $rc
