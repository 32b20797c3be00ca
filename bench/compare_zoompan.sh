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
# Prints milliseconds per frame, frames per second and the ratios, for the whole run and for the
# frames after the first ("steady": the run less a run of its first frame alone, which holds
# each side's start-up: reading the picture, and for zoompan 2x the prescale). Run after a
# release build.
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
for name, last in (('pan', 120), ('first', 1)):
    keys = [key(0, x=2000.0, y=2000.0, width=3840.0, ease=4001.0),
            key(last, x=2000.0 + 0.5 * last, y=2000.0, width=3840.0)]
    data = bytearray(show([picture((folder + '/big.png').encode(), keys)]))
    struct.pack_into('<iiihH', data, len(data) - 20, 0, 0, 0, 0, 12850)  # matte, border, blur
    open(folder + '/' + name + '.plx', 'wb').write(bytes(data))
EOF

# The best wall time of `repeat` runs of the command, in seconds. The file it writes (in the
# scratch folder) is removed before each run, outside the time: freeing a large file of the run
# before is no part of the work.
best() { # file command...
  local file=$1 fastest="" start end took
  shift
  for ((run = 0; run < repeat; ++run)); do
    rm -f "$out/$file"
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

ours() { # codec quality file [show]: the show's frames (pan.plx unless named)
  "$program" --render "$out/${4:-pan}.plx" -o "$out/$3" --size 1920x1080 --codec "$1" \
    --quality "$2" --quiet
}
zoompan() { # filter file encoder options...: $limit frames (all of them unless set)
  local filter=$1 file=$2
  shift 2
  ffmpeg -y -i "$out/big.png" -vf "$filter" -frames:v "${limit:-$frames}" "$@" "$out/$file"
}

# Milliseconds a frame after the first: the whole run less its first frame alone.
steady() { # seconds first-frame-seconds
  echo "($1 - $2) * 1000 / ($frames - 1)" | bc -l
}

report() { # label seconds first-frame-seconds [ours seconds, ours first-frame seconds]
  local each
  each=$(steady "$2" "$3")
  printf '  %-30s %7.2f s %7.1f ms/frame %6.1f frames/s | steady %6.1f ms/frame' "$1" "$2" \
    "$(echo "$2 * 1000 / $frames" | bc -l)" "$(echo "$frames / $2" | bc -l)" "$each"
  if [[ $# -gt 3 ]]; then
    printf ' | ours %.2fx as fast, steady %.2fx' "$(echo "$2 / $4" | bc -l)" \
      "$(echo "$each / $(steady "$4" "$5")" | bc -l)"
  fi
  echo
}

compare() { # label codec quality ffmpeg options...
  local label=$1 codec=$2 quality=$3
  shift 3
  local mine mineFirst plainTime plainFirst smoothTime smoothFirst
  mine=$(best ours.mov ours "$codec" "$quality" ours.mov)
  mineFirst=$(best first.mov ours "$codec" "$quality" first.mov first)
  plainTime=$(best plain.mov zoompan "$plain" plain.mov "$@")
  smoothTime=$(best smooth.mov zoompan "$prescaled" smooth.mov "$@")
  echo "== $label (frames: ours $(count "$out/ours.mov"), zoompan $(count "$out/plain.mov")," \
    "zoompan 2x $(count "$out/smooth.mov")); best of $repeat"
  plainFirst=$(limit=1 best plain1.mov zoompan "$plain" plain1.mov "$@")
  smoothFirst=$(limit=1 best smooth1.mov zoompan "$prescaled" smooth1.mov "$@")
  report "ours" "$mine" "$mineFirst"
  report "zoompan" "$plainTime" "$plainFirst" "$mine" "$mineFirst"
  report "zoompan, 2x prescale (smooth)" "$smoothTime" "$smoothFirst" "$mine" "$mineFirst"
}

compare "raw frames (the move alone)" raw 100 -c:v rawvideo -pix_fmt rgb24
compare "PNG, compression level 6" png 50 -c:v png -compression_level 6 -pix_fmt rgb24
compare "H.264, rate factor 23" avc1 50 -c:v libx264 -crf 23 -pix_fmt yuv420p -x264-params "$x264"

# Rendering hidden behind encoding: the same frames encoded alone, from our raw frames in memory.
# The render also reads the picture first, which no encoder can hide; the second ratio leaves
# that out (the render less its first frame alone, against the encoder's share of as many frames).
ours raw 100 raw.mov
alone=$(best alone.mov ffmpeg -y -i "$out/raw.mov" -c:v libx264 -crf 23 -pix_fmt yuv420p \
  -x264-params "$x264" "$out/alone.mov")
render=$(best ours.mov ours avc1 50 ours.mov)
renderFirst=$(best first.mov ours avc1 50 first.mov first)
echo "== H.264 render against encoding the same frames alone; best of $repeat"
printf '  render (ours, H.264)     %7.2f s, its first frame alone %.2f s\n' "$render" "$renderFirst"
printf '  encode alone (libx264)   %7.2f s\n' "$alone"
printf '  render / encode alone: %.2f; frames after the first: %.2f\n' \
  "$(echo "$render / $alone" | bc -l)" \
  "$(echo "($render - $renderFirst) / ($alone * ($frames - 1) / $frames)" | bc -l)"

# Peak memory (largest resident set) of our renders: the 72 MB picture, the frames on their way
# out and the encoder's own.
peak() { # codec quality
  rm -f "$out/peak.mov"
  /usr/bin/time -f %M -o "$out/peak.txt" "$program" --render "$out/pan.plx" -o "$out/peak.mov" \
    --size 1920x1080 --codec "$1" --quality "$2" --quiet > /dev/null 2>&1
  echo "$(($(tail -1 "$out/peak.txt") / 1024)) MB"
}
echo "== peak memory"
echo "  raw frames: $(peak raw 100); H.264: $(peak avc1 50)"
