#!/usr/bin/env bash
# Installs what is missing, builds, and runs Torvane Studio. Without arguments it makes a demo
# run and shows it; with arguments they go to torvane-cli.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/ensure-deps.sh
ensure_packages "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}"

cmake --preset release >/dev/null
cmake --build --preset release --target torvane-cli tlm

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
