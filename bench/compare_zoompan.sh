#!/usr/bin/env bash
# Equal work for our renderer and FFmpeg's zoompan filter: 1920 x 1080 frames of a slow pan over a
# 6000 x 4000 picture (the demo's lake scaled up, with grain), a 3840 x 2160 window moving 60
# picture pixels in 120 frames. Both sides get the same window and the same 16:9 aspect (zoompan
# crops to its input's shape, so its input is first cut to a 16:9 band holding the pan), and the
# same encoder settings:
#   raw        uncompressed RGB frames written to memory (/dev/shm): the move alone;
#   PNG        compression level 6 on both sides (our quality 50);
#   H.264      libx264, rate factor 23 (our quality 50), yuv420p.
# zoompan runs twice: plain (whole-pixel window positions, so a slow pan stalls and jumps) and
# with the 2x prescale that smooth output needs, the fair competitor. "encode alone" is libx264
# encoding our raw frames with our settings: what a render costs when rendering hides behind
# encoding. Every figure is the best of REPEAT runs (default 3): the machine may be shared.
# Prints milliseconds per frame, frames per second and the ratios. Run after a release build.
set -euo pipefail
cd "$(dirname "$0")/.."

frames=120
repeat=${REPEAT:-3}
program=build/release/app/parallaxotron
scratch=/dev/shm
[[ -d "$scratch" && -w "$scratch" ]] || scratch=${TMPDIR:-/tmp}
out=$(mktemp -d "$scratch/px-zoompan.XXXXXX")
trap 'rm -rf "$out"' EXIT

if [[ ! -x "$program" ]]; then
  echo "build the release tree first: cmake --build build/release --target parallaxotron" >&2
  exit 1
fi

# The picture and the show: two keys, plain linear motion (ease 4001: no slow-in, no curves), no
# border, no blur.
ffmpeg -v error -y -i resources/demo/lake.png -vf "scale=6000:4000:flags=lanczos,noise=alls=16" \
  "$out/big.png"
python3 - "$out" <<'EOF'
import struct, sys
sys.path.insert(0, 'tools')
from make_show_seeds import show, picture, key
folder = sys.argv[1]
keys = [key(0, x=2000.0, y=2000.0, width=3840.0, ease=4001.0),
        key(120, x=2060.0, y=2000.0, width=3840.0)]
data = bytearray(show([picture((folder + '/big.png').encode(), keys)]))
struct.pack_into('<iiihH', data, len(data) - 20, 0, 0, 0, 0, 12850)  # matte, border, blur
open(folder + '/pan.plx', 'wb').write(bytes(data))
EOF

# The best wall time of `repeat` runs of the command, in seconds.
best() {
  local fastest="" start end took
  for ((run = 0; run < repeat; ++run)); do
    start=$(date +%s.%N)
    "$@" > /dev/null 2>&1
    end=$(date +%s.%N)
    took=$(echo "$end - $start" | bc -l)
    if [[ -z "$fastest" ]] || (($(echo "$took < $fastest" | bc -l))); then fastest=$took; fi
  done
  echo "$fastest"
}

count() {
  ffprobe -v error -count_frames -select_streams v:0 -show_entries stream=nb_read_frames \
    -of csv=p=0 "$1"
}

# The window on the picture: left 80 + 0.5 per frame, top 920, 3840 x 2160. zoompan sees the band
# of rows 312 .. 3686 (3375 rows, 16:9 at 6000 wide), so the window's top is row 608 of it and
# zoom 6000 / 3840 makes its window 3840 x 2160.
band="crop=6000:3375:0:312"
plain="$band,zoompan=z=1.5625:x='80+0.5*on':y=608:d=$frames:s=1920x1080:fps=29.97"
prescaled="$band,scale=12000:6750,zoompan=z=1.5625:x='2*(80+0.5*on)':y=1216"
prescaled+=":d=$frames:s=1920x1080:fps=29.97"
x264="threads=$(nproc):sync-lookahead=0"

ours() { # codec quality file
  "$program" --render "$out/pan.plx" -o "$out/$3" --size 1920x1080 --codec "$1" --quality "$2" \
    --quiet
}
zoompan() { # filter file encoder options...
  local filter=$1 file=$2
  shift 2
  ffmpeg -y -i "$out/big.png" -vf "$filter" -frames:v "$frames" "$@" "$out/$file"
}

report() { # label seconds [our seconds]: with ours given, how many times ours is as fast
  printf '  %-30s %8.2f s %9.1f ms/frame %7.1f frames/s' "$1" "$2" \
    "$(echo "$2 * 1000 / $frames" | bc -l)" "$(echo "$frames / $2" | bc -l)"
  if [[ $# -gt 2 ]]; then printf '   ours %.2fx as fast' "$(echo "$2 / $3" | bc -l)"; fi
  echo
}

compare() { # label codec quality ffmpeg options...
  local label=$1 codec=$2 quality=$3
  shift 3
  local mine plainTime smoothTime
  mine=$(best ours "$codec" "$quality" ours.mov)
  plainTime=$(best zoompan "$plain" plain.mov "$@")
  smoothTime=$(best zoompan "$prescaled" smooth.mov "$@")
  echo "== $label (frames: ours $(count "$out/ours.mov"), zoompan $(count "$out/plain.mov")," \
    "zoompan 2x $(count "$out/smooth.mov")); best of $repeat"
  report "ours" "$mine"
  report "zoompan" "$plainTime" "$mine"
  report "zoompan, 2x prescale (smooth)" "$smoothTime" "$mine"
}

compare "raw frames (the move alone)" raw 100 -c:v rawvideo -pix_fmt rgb24
compare "PNG, compression level 6" png 50 -c:v png -compression_level 6 -pix_fmt rgb24
compare "H.264, rate factor 23" avc1 50 -c:v libx264 -crf 23 -pix_fmt yuv420p -x264-params "$x264"

# Rendering hidden behind encoding: the same frames encoded alone, from our raw frames in memory.
ours raw 100 raw.mov
alone=$(best ffmpeg -y -i "$out/raw.mov" -c:v libx264 -crf 23 -pix_fmt yuv420p -x264-params "$x264" \
  "$out/alone.mov")
render=$(best ours avc1 50 ours.mov)
echo "== H.264 render against encoding the same frames alone; best of $repeat"
report "render (ours, H.264)" "$render"
report "encode alone (libx264)" "$alone"
printf '  render / encode alone: %.2f\n' "$(echo "$render / $alone" | bc -l)"
