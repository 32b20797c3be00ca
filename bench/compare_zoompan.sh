#!/usr/bin/env bash
# The same camera move over the same picture made twice at 1920 x 1080 in H.264: by our renderer
# (the demo show's opening pan over the lake, frames 0..279) and by FFmpeg's zoompan filter with
# the camera of the show's two keys laid out linearly. Prints the time and frames per second of
# each and how many times faster ours is. Run after a release build (tools/bench builds one).
set -euo pipefail
cd "$(dirname "$0")/.."

frames=280
demo=resources/demo
program=build/release/app/parallaxotron
out=$(mktemp -d)
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

ours=$(seconds "$program" --render "$demo/demo.plx" -o "$out/ours.mov" --size 1920x1080 \
  --end "$frames" --codec avc1 --quality 60)

# Keys of the lake: centre (300, 400), width 560 at frame 0; centre (880, 360), width 620 at 279.
width="(560+60*on/$frames)"
zoompan="zoompan=z='1200/$width':x='300+580*on/$frames-$width/2'"
zoompan+=":y='400-40*on/$frames-$width*9/32':d=$frames:s=1920x1080:fps=29.97"
theirs=$(seconds ffmpeg -y -i "$demo/lake.png" -vf "$zoompan" -frames:v "$frames" \
  -c:v libx264 -pix_fmt yuv420p "$out/zoompan.mov")

for name in ours zoompan; do
  count=$(ffprobe -v error -count_frames -select_streams v:0 \
    -show_entries stream=nb_read_frames -of csv=p=0 "$out/$name.mov")
  echo "$name: $count frames"
done
printf 'ours:    %6.2f s  %6.1f frames/s\n' "$ours" "$(echo "$frames / $ours" | bc -l)"
printf 'zoompan: %6.2f s  %6.1f frames/s\n' "$theirs" "$(echo "$frames / $theirs" | bc -l)"
printf 'ours is %.1f times as fast\n' "$(echo "$theirs / $ours" | bc -l)"
