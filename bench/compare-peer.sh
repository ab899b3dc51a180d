#!/usr/bin/env bash
# torvane-cli render against a general-purpose plotting program (kst, Debian package "kst")
# drawing the same runs, exported as CSV, into a 1280x960 PNG: the median wall time and peak
# memory of a few runs of each, for one run and for three runs laid over each other, at 10
# minutes, 2 hours and 4.5 hours. Ratios are the peer's figure over ours. A benchmark, not a
# test: nothing here fails on a slow result.
#
#   bench/compare-peer.sh [BIN_DIR] [REPEATS]    (BIN_DIR: build/release/bin, REPEATS: 5)
set -euo pipefail
here="$(cd "$(dirname "$0")/.." && pwd)"
bin="${1:-$here/build/release/bin}"
repeats="${2:-5}"
cli="$bin/torvane-cli"
[ -x "$cli" ] || { echo "no $cli: build the release preset first" >&2; exit 1; }

if ! command -v kst2 >/dev/null; then
    sudo=""
    [ "$(id -u)" -eq 0 ] || sudo="sudo"
    $sudo apt-get update
    $sudo apt-get install -y kst
fi
[ -x /usr/bin/time ] || { echo "GNU time (/usr/bin/time) is needed" >&2; exit 1; }

work="$(mktemp -d "${TMPDIR:-/tmp}/compare-peer.XXXXXX")"
trap 'rm -rf "$work"' EXIT

# Both draw off screen; each gets a home of its own so that no settings of the user's are read
# or changed. The peer's ASCII reader is told the files are comma-separated with a header line.
export QT_QPA_PLATFORM=offscreen
export XDG_RUNTIME_DIR="$work/runtime" TORVANE_HOME="$work/torvane"
mkdir -m 700 "$XDG_RUNTIME_DIR"
mkdir -p "$work/home/.config/kst"
cat >"$work/home/.config/kst/data.conf" <<'EOF'
[ASCII%20file]
Column%20Type=2
Column%20Delimiter=","
Data%20Start=1
Read%20Fields=true
Fields%20Line=0
Read%20Units=false
Use%20Dot=true
EOF

lengths=(10 120 270)
names=("10 min" "2 h" "4.5 h")
seeds=(11 12 13)
echo "making the runs and their CSV in $work ..."
for minutes in "${lengths[@]}"; do
    for seed in "${seeds[@]}"; do
        run="$work/run-$minutes-$seed"
        "$cli" generate "$run.rlg" --minutes "$minutes" --seed "$seed" >/dev/null
        "$cli" export "$run.rlg" "$run.csv"
    done
done

# Sets ms and kib: the medians over the repeats. GNU time gives the peak resident
# memory; the wall time is taken around it to the microsecond, as its own %e counts in steps of
# 10 ms, too coarse for our side.
measure() {
    local times=() peaks=() start end
    for ((i = 0; i < repeats; i++)); do
        start=$EPOCHREALTIME
        /usr/bin/time -f '%e %M' -o "$work/time.txt" "$@" >/dev/null 2>"$work/stderr.txt" || {
            echo "failed: $*" >&2
            cat "$work/stderr.txt" >&2
            exit 1
        }
        end=$EPOCHREALTIME
        times+=("$(awk -v s="$start" -v e="$end" 'BEGIN { printf "%.1f", (e - s) * 1000 }')")
        peaks+=("$(awk 'END { print $2 }' "$work/time.txt")")
    done
    ms="$(median "${times[@]}")"
    kib="$(median "${peaks[@]}")"
}

median() {
    printf '%s\n' "$@" | sort -g | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'
}

# The peer's arguments for one CSV: time on x, every other column as a curve of the one plot.
peer_args() {
    local csv="$1" field header fields
    header="$(head -n 1 "$csv")"
    printf '%s\n' "$csv" -x 'Time(s)'
    IFS=',' read -r -a fields <<<"$header"
    for field in "${fields[@]:1}"; do
        printf '%s\n' -y "$field"
    done
}

printf '\n%-7s %4s | %9s %9s %7s | %9s %9s %7s\n' "run" "runs" "ours ms" "peer ms" "time x" \
    "ours MiB" "peer MiB" "mem x"
for index in "${!lengths[@]}"; do
    minutes="${lengths[$index]}"
    for count in 1 3; do
        ours=("$cli" render "$work/run-$minutes-${seeds[0]}.rlg" "$work/ours.png" --size 1280x960)
        peer=(env HOME="$work/home" kst2)
        mapfile -t first < <(peer_args "$work/run-$minutes-${seeds[0]}.csv")
        peer+=("${first[0]}" -P P1 "${first[@]:1}")
        for ((layer = 1; layer < count; layer++)); do
            ours+=(--layer "$work/run-$minutes-${seeds[$layer]}.rlg")
            mapfile -t more < <(peer_args "$work/run-$minutes-${seeds[$layer]}.csv")
            peer+=("${more[@]}")
        done
        peer+=(--png "$work/peer.png")
        rm -f "$work/ours.png" "$work/peer.png"
        measure "${ours[@]}"
        oursMs=$ms oursKib=$kib
        measure "${peer[@]}"
        peerMs=$ms peerKib=$kib
        if [ ! -s "$work/ours.png" ] || [ ! -s "$work/peer.png" ]; then
            echo "a picture is missing" >&2
            exit 1
        fi
        awk -v name="${names[$index]}" -v count="$count" -v om="$oursMs" -v pm="$peerMs" \
            -v ok="$oursKib" -v pk="$peerKib" 'BEGIN {
                printf "%-7s %4d | %9.1f %9.1f %6.1fx | %9.1f %9.1f %6.1fx\n", name, count, om, pm,
                    pm / om, ok / 1024, pk / 1024, pk / ok }'
    done
done
