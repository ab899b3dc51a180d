#!/usr/bin/env bash
# A short fuzzing pass over the logging-file decoder: seeds made by code, then libFuzzer for the
# given number of seconds. Fails on any crash, leak or time-out it finds.
set -euo pipefail
build="${1:?usage: fuzz-smoke.sh BUILD_DIR SECONDS}"
seconds="${2:-30}"
mkdir -p "$build/fuzz/corpus"
cmake --build "$build" --target fuzz_decomp_logfile fuzz_seeds >/dev/null
"$build/bin/fuzz_decomp_logfile" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
    -artifact_prefix="$build/fuzz/" "$build/fuzz/corpus" "$build/fuzz/seeds" 2>&1 | tail -n 3
