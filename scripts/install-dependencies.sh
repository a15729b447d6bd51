#!/usr/bin/env bash
# Installs what velur builds and tests with, from Debian's packages, when anything is missing; with the
# argument fuzz, what the fuzz targets build with too.
set -euo pipefail

packages=(cmake g++ make pkg-config libgtest-dev libgmock-dev libbenchmark-dev libsndfile1-dev libmpg123-dev python3-scipy python3-numpy locales)
# FFmpeg's libraries read the formats that no native reader takes.
packages+=(libavformat-dev libavcodec-dev libswresample-dev libavutil-dev)
# The MP3 tests encode their streams with lame, the other formats' tests with ffmpeg; scripts/bench-callgrind.sh
# counts instructions with valgrind.
packages+=(lame ffmpeg valgrind)
# The fuzz targets: clang with libFuzzer and the sanitizers' runtimes.
if [ "${1:-}" = fuzz ]; then
    packages+=(clang-16 libclang-rt-16-dev)
fi

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" || missing+=("$package")
done

if [ ${#missing[@]} -gt 0 ]; then
    sudo_prefix=""
    [ "$(id -u)" -eq 0 ] || sudo_prefix="sudo"
    echo "Installing: ${missing[*]}"
    $sudo_prefix apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo_prefix apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

# Number text must not depend on the locale: the tests prove it under a German locale.
if ! locale -a 2>/dev/null | grep -qi '^de_DE\.utf-\?8$'; then
    sudo_prefix=""
    [ "$(id -u)" -eq 0 ] || sudo_prefix="sudo"
    $sudo_prefix localedef -i de_DE -f UTF-8 de_DE.UTF-8
fi
