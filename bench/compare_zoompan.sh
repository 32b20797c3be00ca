#!/usr/bin/env bash
# The same camera move over the same picture made at 1920 x 1080 by our renderer (the demo
# show's opening pan over the lake, frames 0..279) and by FFmpeg's zoompan filter with the camera
# of the show's two keys laid out linearly, twice:
#   H.264      both through libx264 at its default rate factor 23 (our quality 50), so the
#              encoder, which takes most of the time, does the same work for both;
#   raw        the move alone: uncompressed frames written to memory (/dev/shm), so what is
#              timed is the resampling.
# Prints the time and frames per second of each and how many times faster ours is. Run after a
# release build (tools/bench builds one).
set -euo pipefail
cd "$(dirname "$0")/.."

frames=280
demo=resources/demo
program=build/release/app/parallaxotron
scratch=/dev/shm
[[ -d "$scratch" && -w "$scratch" ]] || scratch=${TMPDIR:-/tmp}
out=$(mktemp -d "$scratch/px-zoompan.XXXXXX")
trap 'rm -rf "$out"' EXIT

if [[ ! -x "$program" ]]; then
  echo "build the release tree first: cmake --build build/release --target parallaxotron" >&2
  exit 1
fi

seconds() {
  local start end
  start=$(date +%s.%N)
  "$@" > /dev/null 2>&1
  end=$(date +%s.%N)
  echo "$end - $start" | bc -l
}

count() {
  ffprobe -v error -count_frames -select_streams v:0 -show_entries stream=nb_read_frames \
    -of csv=p=0 "$1"
}

# Timecodes end in frames: at 30 frames a second, frame 280 is 9 seconds and 10 frames.
end="$((frames / 30)):$((frames % 30))"

# Keys of the lake: centre (300, 400), width 560 at frame 0; centre (880, 360), width 620 at 279.
width="(560+60*on/$frames)"
zoompan="zoompan=z='1200/$width':x='300+580*on/$frames-$width/2'"
zoompan+=":y='400-40*on/$frames-$width*9/32':d=$frames:s=1920x1080:fps=29.97"

compare() {
  local label=$1 codec=$2 quality=$3
  shift 3
  local ours theirs
  rm -f "$out"/*.mov
  ours=$(seconds "$program" --render "$demo/demo.plx" -o "$out/ours.mov" --size 1920x1080 \
    --end "$end" --codec "$codec" --quality "$quality")
  theirs=$(seconds ffmpeg -y -i "$demo/lake.png" -vf "$zoompan" -frames:v "$frames" "$@" \
    "$out/zoompan.mov")
  echo "== $label (frames: ours $(count "$out/ours.mov"), zoompan $(count "$out/zoompan.mov"))"
  printf 'ours:    %6.2f s  %6.1f frames/s\n' "$ours" "$(echo "$frames / $ours" | bc -l)"
  printf 'zoompan: %6.2f s  %6.1f frames/s\n' "$theirs" "$(echo "$frames / $theirs" | bc -l)"
  printf 'ours is %.1f times as fast\n' "$(echo "$theirs / $ours" | bc -l)"
}

compare "H.264, rate factor 23" avc1 50 -c:v libx264 -crf 23 -pix_fmt yuv420p
compare "raw frames (the move alone)" raw 100 -c:v rawvideo -pix_fmt bgra
