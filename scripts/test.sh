#!/usr/bin/env bash
# Builds velur and runs every test: a Release build, a Debug build under AddressSanitizer and
# UndefinedBehaviorSanitizer, a Debug build under ThreadSanitizer, then every fuzz target for 20 seconds
# (seven targets on two cores keep the whole within half an hour).
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
"$root/scripts/install-dependencies.sh"

jobs=$(nproc)

run_suite() {
    local name=$1
    shift
    local build="$root/build/$name"
    echo "== $name =="
    cmake -S "$root" -B "$build" "$@" >/dev/null
    cmake --build "$build" -j"$jobs"
    ctest --test-dir "$build" --output-on-failure -j"$jobs"
}

run_suite release -DCMAKE_BUILD_TYPE=Release
run_suite asan-ubsan -DCMAKE_BUILD_TYPE=Debug -DVELUR_SANITIZERS="address;undefined" -DVELUR_BUILD_BENCHMARKS=OFF
TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1" \
    run_suite tsan -DCMAKE_BUILD_TYPE=Debug -DVELUR_SANITIZERS=thread -DVELUR_BUILD_BENCHMARKS=OFF
bash "$root/scripts/fuzz.sh" 20
