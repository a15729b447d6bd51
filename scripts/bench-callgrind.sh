#!/usr/bin/env bash
# Counts under callgrind the instructions that velur's MPEG decoder and libmpg123 (float output, with the core
# it picks itself and with its portable C core) spend per output sample on the two Layer III streams of vlk_bench, one decode each. An output
# sample is one channel's sample: a stereo frame holds two. Only the decode functions are counted, not the
# making of the streams or the benchmark's own work.
#
#     scripts/bench-callgrind.sh [BUILD_DIR]
#
# BUILD_DIR defaults to build/release and must hold a built vlk_bench, best a Release one.
set -euo pipefail

root="$(cd "$(dirname "$0")/.." && pwd)"
build="${1:-$root/build/release}"
bench="$build/bench/vlk_bench"
[ -x "$bench" ] || { echo "no $bench: build the target vlk_bench first" >&2; exit 2; }
work="$(mktemp -d /tmp/velur-callgrind-XXXXXX)"
trap 'rm -rf "$work"' EXIT

# Prints the benchmark's line of the table from its JSON result and callgrind's total.
report() {
    python3 - "$1" "$2" "$3" <<'EOF'
import json, sys
name, instructions, path = sys.argv[1], int(sys.argv[2]), sys.argv[3]
run = json.load(open(path))["benchmarks"][0]
if run.get("error_occurred"):
    print(f"{name:<50} skipped: {run.get('error_message', '')}")
else:
    samples = run["iterations"] * run["samples"]
    print(f"{name:<50} {instructions:>15,} {int(samples):>12,} {instructions / samples:>10.1f}  {run.get('label', '')}")
EOF
}

printf '%-50s %15s %12s %10s\n' benchmark instructions samples "per sample"
for stream in layer3_44k1_stereo_128k layer3_mpeg2_22k05_stereo_64k; do
    for pair in MpegVelurReadSamples:decodeWithVelur MpegMpg123ReadFloat:decodeWithMpg123 \
        MpegMpg123GenericReadFloat:decodeWithMpg123Generic; do
        name="${pair%%:*}/$stream"
        # One iteration: any decode of the stream under callgrind takes longer than the least time.
        valgrind --tool=callgrind --callgrind-out-file="$work/callgrind.out" --toggle-collect="*${pair#*:}(*" \
            "$bench" --benchmark_filter="^$name\$" --benchmark_min_time=0.01 --benchmark_format=json \
            --benchmark_out="$work/result.json" >/dev/null 2>"$work/valgrind.log" ||
            { cat "$work/valgrind.log" >&2; exit 1; }
        report "$name" "$(awk '/^totals:/ { print $2 }' "$work/callgrind.out")" "$work/result.json"
    done
done
