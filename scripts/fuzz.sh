#!/usr/bin/env bash
# Builds the libFuzzer targets of fuzz/ with clang under AddressSanitizer and UndefinedBehaviorSanitizer and
# runs each for SECONDS (60 unless given), as many at once as the machine has cores. Seeds are written by
# code; what a run finds is kept in build/fuzz/corpus, and a crash leaves its input in build/fuzz/crashes.
#
#     scripts/fuzz.sh [SECONDS]
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
seconds=${1:-60}
"$root/scripts/install-dependencies.sh" fuzz

build="$root/build/fuzz"
CC=clang-16 CXX=clang++-16 cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -g" -DVELUR_SANITIZERS="address;undefined" \
    -DVELUR_BUILD_FUZZERS=ON -DVELUR_BUILD_TESTS=OFF -DVELUR_BUILD_BENCHMARKS=OFF >/dev/null
cmake --build "$build" -j"$(nproc)"

seeds="$build/seeds"
rm -rf "$seeds"
"$build/fuzz/velur_fuzz_seeds" "$seeds"
# Short files of the formats that FFmpeg reads for the platform's services, for their target and, behind the
# byte that picks an extension no native reader has, for the factory's.
mkdir -p "$seeds/audio_toolbox"
for format in "flac:-c:a flac" "ogg:-c:a libvorbis" "opus:-c:a libopus" "m4a:-c:a aac" "caf:-c:a alac" \
    "w64:-c:a pcm_s16le" "mp2:-c:a mp2"; do
    extension=${format%%:*}
    seed="$seeds/audio_toolbox/seed.$extension"
    # shellcheck disable=SC2086
    ffmpeg -nostdin -loglevel error -y -f lavfi -i "sine=frequency=440:duration=0.05:sample_rate=48000" -ac 2 \
        ${format#*:} "$seed"
    { printf '\x03'; cat "$seed"; } >"$seeds/reader_factory/platform-$extension"
done
mkdir -p "$build/crashes"

# A small quarantine: the targets free what they allocate at every execution, and a large one costs page
# faults instead of finding more.
export ASAN_OPTIONS="quarantine_size_mb=8:detect_leaks=1"
export UBSAN_OPTIONS="print_stacktrace=1"

run_target() {
    local name=$1
    local corpus="$build/corpus/$name"
    mkdir -p "$corpus"
    # Inputs that once found a fault, run first at every start.
    local regressions=()
    [ -d "$root/fuzz/regressions/$name" ] && regressions=("$root/fuzz/regressions/$name")
    # A hang is an input still running after 30 s: a unit of a few milliseconds has been seen to stall for
    # ten seconds on this two-core machine when other builds run beside it. 512 MB in all: a file that takes
    # more is a finding. A stream of frames needs no more than 4 KB to reach every state of the decoder, and
    # shorter inputs run more often.
    local status=0
    local length=16384
    [ "$name" = mpeg_decoder ] && length=4096
    "$build/fuzz/fuzz_$name" -max_total_time="$seconds" -timeout=30 -rss_limit_mb=512 -malloc_limit_mb=256 \
        -max_len="$length" -print_final_stats=1 -artifact_prefix="$build/crashes/$name-" \
        "$corpus" "$seeds/$name" "${regressions[@]}" >"$build/$name.log" 2>&1 || status=$?
    echo "$status" >"$build/$name.status"
}

targets=(reader_factory audio_toolbox mpeg_decoder aiff_marker_chunk wav_chna_parser wav_bext_record aiff_sample_rate)
running=0
for name in "${targets[@]}"; do
    if [ "$running" -ge "$(nproc)" ]; then
        wait -n
        running=$((running - 1))
    fi
    run_target "$name" &
    running=$((running + 1))
done
wait

failed=0
for name in "${targets[@]}"; do
    runs=$(grep -o 'stat::number_of_executed_units: *[0-9]*' "$build/$name.log" | grep -o '[0-9]*$' || echo 0)
    if [ "$(cat "$build/$name.status")" = 0 ]; then
        echo "fuzz_$name: passed, $runs executions in $seconds s"
    else
        echo "fuzz_$name: FAILED after $runs executions"
        tail -n 40 "$build/$name.log"
        failed=1
    fi
done
exit $failed
