#!/usr/bin/env bash
# Installs what is missing, builds, and runs Torvane Studio with the virtual logger beside it and
# a demo run open. With arguments they go to torvane-cli instead. Without a display it prints
# the demo run's info and the virtual logger's files.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/ensure-deps.sh
ensure_packages "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}"

cmake --preset release >/dev/null
cmake --build --preset release --target torvane-studio torvane-cli torvane-logger-sim tlm

bin=build/release/bin
if [ "$#" -gt 0 ]; then
    exec "$bin/torvane-cli" "$@"
fi

data="${TORVANE_HOME:-$PWD/$bin}/DATA"
mkdir -p "$data"
demo="$data/DEMO.rlg"
"$bin/torvane-cli" generate "$demo" --minutes 10 --seed 1
echo "Demo run: $demo"

# The virtual logger, on a socket of its own, holding three recorded runs; it goes with us.
socket_dir=$(mktemp -d)
export TORVANE_LOGGER="unix:$socket_dir/logger.sock"
"$bin/torvane-logger-sim" --socket "$TORVANE_LOGGER" --idle --files 3 --minutes 20 \
    >"$socket_dir/logger.out" &
logger_pid=$!
trap 'kill "$logger_pid" 2>/dev/null; wait "$logger_pid" 2>/dev/null; rm -rf "$socket_dir"' EXIT
for _ in $(seq 100); do
    grep -q listening "$socket_dir/logger.out" 2>/dev/null && break
    sleep 0.1
done
echo "Virtual logger: $TORVANE_LOGGER (File > Logger(L) downloads from it)"

if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    "$bin/torvane-studio" "$demo"
else
    echo "No display: the demo run's info and the logger's files instead of the desktop."
    "$bin/torvane-cli" info "$demo"
    sleep 1.2   # the logger initialises for a second after power-on
    "$bin/torvane-cli" logger list
fi
