#!/usr/bin/env bash
# Installs what is missing, builds, and runs Torvane Studio. Without arguments it makes a demo
# run and shows it; with arguments they go to torvane-cli.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/ensure-deps.sh
ensure_packages "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}"

cmake --preset release >/dev/null
cmake --build --preset release --target torvane-cli torvane-logger-sim tlm

bin=build/release/bin
if [ "$#" -gt 0 ]; then
    exec "$bin/torvane-cli" "$@"
fi

data="${TORVANE_HOME:-$PWD/$bin}/DATA"
mkdir -p "$data"
demo="$data/DEMO.rlg"
"$bin/torvane-cli" generate "$demo" --minutes 10 --seed 1
echo "Demo run: $demo"
"$bin/torvane-cli" info "$demo"

# The virtual logger, on a socket of its own for this demo, holding three recorded runs.
socket_dir=$(mktemp -d)
"$bin/torvane-logger-sim" --socket "unix:$socket_dir/logger.sock" --idle --files 3 --minutes 20 \
    >"$socket_dir/logger.out" &
logger_pid=$!
trap 'kill "$logger_pid" 2>/dev/null; wait "$logger_pid" 2>/dev/null; rm -rf "$socket_dir"' EXIT
for _ in $(seq 100); do
    grep -q listening "$socket_dir/logger.out" 2>/dev/null && break
    sleep 0.1
done
sleep 1.2   # the logger initialises for a second after power-on
echo
echo "Virtual logger: unix:$socket_dir/logger.sock"
TORVANE_LOGGER="unix:$socket_dir/logger.sock" "$bin/torvane-cli" logger list
