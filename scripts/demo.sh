#!/usr/bin/env bash
# Plays the demo: builds velur in Release, writes a stereo arpeggio with velurtone, and plays it through
# velur.sfplay~ in velurhost, which prints the object's dump outlet as it goes. The recording of the object's
# outlets lands in out/: demo.wav holds the two audio channels, demo-outlets.wav also the position outlet.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
"$root/scripts/install-dependencies.sh"

build="$root/build/demo"
out="$root/out"
cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=Release -DVELUR_BUILD_TESTS=OFF -DVELUR_BUILD_BENCHMARKS=OFF >/dev/null
cmake --build "$build" -j"$(nproc)" --target velurhost velur_sfplay_tilde velurtone

mkdir -p "$out"
"$build/apps/velurtone/velurtone" "$out/demo-tone.wav"
"$build/apps/velurhost/velurhost" --path "$out" --out "$out/demo-outlets.wav" "$root/scripts/demo-script.txt"

# The position outlet carries milliseconds, far beyond full scale: the file to listen to keeps the two audio
# channels, as 16-bit samples again, which gives back the sound file's own values.
python3 - "$out/demo-outlets.wav" "$out/demo.wav" <<'PYTHON'
import array, struct, sys, wave

def float_frames(path):
    data = open(path, "rb").read()
    position, channels, rate = 12, 0, 0
    while position + 8 <= len(data):
        tag, size = data[position:position + 4], struct.unpack("<I", data[position + 4:position + 8])[0]
        body = data[position + 8:position + 8 + size]
        if tag == b"fmt ":
            channels, rate = struct.unpack("<HI", body[2:8])
        elif tag == b"data":
            samples = array.array("f", body[:len(body) // 4 * 4])
            if sys.byteorder != "little":
                samples.byteswap()
            return channels, rate, samples
        position += 8 + size + (size & 1)
    sys.exit("no samples in " + path)

channels, rate, samples = float_frames(sys.argv[1])
stereo = array.array("h")
for frame in range(len(samples) // channels):
    for channel in range(2):
        value = round(samples[frame * channels + channel] * 32768)
        stereo.append(max(-32768, min(32767, value)))
if sys.byteorder != "little":
    stereo.byteswap()
with wave.open(sys.argv[2], "wb") as output:
    output.setnchannels(2)
    output.setsampwidth(2)
    output.setframerate(rate)
    output.writeframes(stereo.tobytes())
positions = samples[channels - 1::channels]
print(f"{sys.argv[2]}: {len(positions) / rate:.2f} s of stereo at {rate} Hz; "
      f"the position outlet went from {min(positions):.0f} to {max(positions):.0f} ms")
PYTHON
