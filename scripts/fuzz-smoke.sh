#!/usr/bin/env bash
# A short fuzzing pass over every reader: each target of build/fuzz/targets.txt runs for the given
# number of seconds from its seeds (made by code) and the corpus kept from earlier passes. Fails
# on any crash, leak or time-out a target finds; prints each target's executions and coverage.
set -euo pipefail
build="${1:?usage: fuzz-smoke.sh BUILD_DIR [SECONDS_PER_TARGET]}"
seconds="${2:-10}"
cmake --build "$build" --target fuzz_all >/dev/null
failed=0
while read -r name; do
    [ -n "$name" ] || continue
    corpus="$build/fuzz/corpus/$name"
    seeds="$build/fuzz/seeds/$name"
    mkdir -p "$corpus" "$seeds" "$build/fuzz/artifacts/$name"
    log="$build/fuzz/$name.log"
    if "$build/bin/fuzz_$name" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
        -print_final_stats=1 -artifact_prefix="$build/fuzz/artifacts/$name/" \
        "$corpus" "$seeds" >"$log" 2>&1; then
        runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
        edges=$(grep -o 'cov: [0-9]*' "$log" | tail -n 1 | cut -d' ' -f2)
        printf '  %-24s %10s executions  %6s edges\n' "$name" "${runs:-?}" "${edges:-?}"
    else
        echo "  $name FAILED; the end of its log ($log):"
        tail -n 30 "$log"
        failed=1
    fi
done <"$build/fuzz/targets.txt"
exit "$failed"
