#!/usr/bin/env bash
# Installs the build into a fresh prefix and checks it as a desktop would find it: every file in
# its place (and nothing else), the menu entry and the software-centre entry valid, show files
# recognised after the MIME database is rebuilt (by extension, and by the header's first two
# bytes in either byte order), the manual page carrying every option of --help.
#   install_check.sh <cmake> <build folder> <scratch folder> <a show file>
# Exits 77 (skipped) with a reason when a desktop tool it needs is missing.
set -euo pipefail
cmake=$1 build=$2 scratch=$3 show=$4
prefix=$scratch/prefix
id=com.hollerbank.Parallaxotron

fail() { echo "FAILED: $*" >&2; exit 1; }

rm -rf "$scratch"
mkdir -p "$scratch"
"$cmake" --install "$build" --prefix "$prefix" > "$scratch/install.log" || fail "cmake --install"

# ---- Every file where the desktop looks, and nothing else --------------------------------------
expected=(
  bin/parallaxotron
  share/applications/$id.desktop
  share/metainfo/$id.metainfo.xml
  share/mime/packages/parallaxotron-show.xml
  share/man/man1/parallaxotron.1
  share/icons/hicolor/scalable/apps/$id.svg
)
for size in 16 32 48 64 128 256 512; do
  expected+=("share/icons/hicolor/${size}x${size}/apps/$id.png")
done
for file in "${expected[@]}"; do
  [ -f "$prefix/$file" ] || fail "$file is not installed"
done
[ -x "$prefix/bin/parallaxotron" ] || fail "bin/parallaxotron is not executable"
installed=$(cd "$prefix" && find . -type f | sed 's|^\./||' | sort)
wanted=$(printf '%s\n' "${expected[@]}" | sort)
[ "$installed" = "$wanted" ] || fail "installed files differ from the list:
$(diff <(echo "$wanted") <(echo "$installed"))"

# Each PNG is as large as the folder it sits in says (width and height from its header).
for size in 16 32 48 64 128 256 512; do
  png=$prefix/share/icons/hicolor/${size}x${size}/apps/$id.png
  read -r w1 w2 w3 w4 h1 h2 h3 h4 < <(od -An -tu1 -j16 -N8 "$png")
  width=$(( (w1 << 24) | (w2 << 16) | (w3 << 8) | w4 ))
  height=$(( (h1 << 24) | (h2 << 16) | (h3 << 8) | h4 ))
  [ "$width" = "$size" ] && [ "$height" = "$size" ] || fail "$png is ${width}x${height}"
done

# The entries name one another: the program, the icon, the show type.
desktop=$prefix/share/applications/$id.desktop
grep -qx 'Exec=parallaxotron %f' "$desktop" || fail "the menu entry does not run parallaxotron %f"
grep -qx "Icon=$id" "$desktop" || fail "the menu entry's icon is not $id"
grep -qx 'MimeType=application/x-parallaxotron-show;' "$desktop" || fail "the menu entry takes no shows"
grep -q "<launchable type=\"desktop-id\">$id.desktop</launchable>" \
  "$prefix/share/metainfo/$id.metainfo.xml" || fail "the metainfo does not launch $id.desktop"

# The manual page is --help: every option the program lists is on the page.
options=$("$prefix/bin/parallaxotron" --help | grep -o -- '--[a-z]*' | sort -u)
[ -n "$options" ] || fail "parallaxotron --help lists no options"
page=$(sed 's/\\-/-/g' "$prefix/share/man/man1/parallaxotron.1")
for option in $options; do
  grep -q -- "$option" <<< "$page" || fail "the manual page lacks $option"
done
grep -q "$("$prefix/bin/parallaxotron" --version)" <<< "$page" || fail "the manual page has another version"

# ---- The desktop's own tools ----------------------------------------------------------------
missing=()
for tool in desktop-file-validate appstreamcli update-mime-database xdg-mime; do
  command -v "$tool" > /dev/null || missing+=("$tool")
done
# xdg-mime answers from the MIME database through gio (asked for with a GNOME desktop) or
# File::MimeInfo's mimetype; with neither it asks file(1), which knows no installed types.
if command -v gio > /dev/null; then
  desktop_name=GNOME
elif command -v mimetype > /dev/null; then
  desktop_name=generic
else
  missing+=("gio or mimetype")
fi
if [ ${#missing[@]} -gt 0 ]; then
  echo "skipped: the files are in place, but checking them needs ${missing[*]}" \
       "(Debian: desktop-file-utils appstream shared-mime-info xdg-utils libglib2.0-bin)"
  exit 77
fi

desktop-file-validate "$desktop" || fail "desktop-file-validate"
appstreamcli validate --no-net "$prefix/share/metainfo/$id.metainfo.xml" || fail "appstreamcli validate"

XDG_DATA_HOME="$prefix/share" update-mime-database "$prefix/share/mime" || fail "update-mime-database"
[ -f "$prefix/share/mime/application/x-parallaxotron-show.xml" ] ||
  fail "update-mime-database made no entry for the show type"

files=$scratch/files
mkdir -p "$files"
cp "$show" "$files/trip.plx"
cp "$show" "$files/no-extension"
# The same header written on a machine of the other byte order.
swapped=$files/other-order
{ printf "$(od -An -tx1 -j1 -N1 "$show" | tr -d ' ' | sed 's/^/\\x/')"
  printf "$(od -An -tx1 -j0 -N1 "$show" | tr -d ' ' | sed 's/^/\\x/')"
  tail -c +3 "$show"; } > "$swapped"
[ "$(od -An -tx1 -N2 "$swapped")" != "$(od -An -tx1 -N2 "$show")" ] || fail "byte swap"
printf 'Notes about the trip, not a show.\n' > "$files/notes.txt"

query() {
  env XDG_DATA_HOME="$prefix/share" XDG_DATA_DIRS="$prefix/share:/usr/share" \
      XDG_CURRENT_DESKTOP="$desktop_name" HOME="$scratch" xdg-mime query filetype "$1"
}
for file in trip.plx no-extension other-order; do
  type=$(query "$files/$file")
  [ "$type" = application/x-parallaxotron-show ] || fail "xdg-mime says $file is '$type'"
done
type=$(query "$files/notes.txt")
[ "$type" != application/x-parallaxotron-show ] || fail "a text file is taken for a show"
echo "installed and recognised: ${#expected[@]} files under $prefix"
