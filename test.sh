#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test: the formatting check, the release build's
# suites, the core, driver, simulator and logger suites again under address and
# undefined-behaviour sanitizers, and a short fuzzing pass over every reader.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/ensure-deps.sh
ensure_packages "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}" "${FUZZ_PACKAGES[@]}"

jobs=$(nproc)
passed=0
failed=0

# Runs ctest and adds its counts to the totals; the summary line is ctest's own.
run_ctest() {
    local log status=0
    log=$(mktemp)
    ctest "$@" --output-on-failure -j "$jobs" 2>&1 | tee "$log" || status=$?
    local summary
    summary=$(grep -E 'tests passed, [0-9]+ tests failed out of [0-9]+' "$log" | tail -n 1 || true)
    rm -f "$log"
    if [ -z "$summary" ]; then
        echo "ctest gave no summary"; return 1
    fi
    local total bad
    bad=$(sed -E 's/.* ([0-9]+) tests failed out of ([0-9]+).*/\1/' <<<"$summary")
    total=$(sed -E 's/.* ([0-9]+) tests failed out of ([0-9]+).*/\2/' <<<"$summary")
    passed=$((passed + total - bad))
    failed=$((failed + bad))
    return "$status"
}

# Counts as one test; the run goes on after a failure, so one pass shows everything that is wrong.
echo "== Formatting (clang-format)"
if scripts/check-format.sh; then
    passed=$((passed + 1))
else
    failed=$((failed + 1))
fi

echo "== Release build and all tests"
cmake --preset release >/dev/null
cmake --build --preset release -j "$jobs"
run_ctest --preset release

# Root ignores permission bits, so the read-only cases skip themselves in the run above; run them
# again as an unprivileged user where that is possible.
if [ "$(id -u)" -eq 0 ] && command -v setpriv >/dev/null; then
    echo "== Read-only folder cases as an unprivileged user"
    nobody=(setpriv --reuid=65534 --regid=65534 --clear-groups)
    for suite in core_tests driver_tests; do
        binary="build/release/bin/$suite"
        if ! "${nobody[@]}" test -x "$binary"; then
            echo "$binary is out of an unprivileged user's reach; skipped"
            continue
        fi
        if "${nobody[@]}" env HOME=/tmp "$binary" --gtest_filter='*ReadOnly*' --gtest_brief=1; then
            passed=$((passed + 1))
        else
            failed=$((failed + 1))
        fi
    done
fi

echo "== Sanitizer build: core, driver, simulator and logger tests"
cmake --preset debug-asan >/dev/null
cmake --build --preset debug-asan -j "$jobs" --target core_tests core_load_tests calc_tests logger_live_tests driver_tests \
    sim_tests logger_tests
run_ctest --preset debug-asan -L 'core_tests|core_load_tests|calc_tests|logger_live_tests|driver_tests|sim_tests|logger_tests'

echo "== Fuzzing every reader briefly"
cmake --preset fuzz >/dev/null
if scripts/fuzz-smoke.sh build/fuzz 10; then
    passed=$((passed + 1))
else
    failed=$((failed + 1))
fi

echo "test.sh: $passed passed, $failed failed"
[ "$failed" -eq 0 ]
