#!/usr/bin/env bash
# Installs a build into a temporary prefix and checks the installation: every file in its
# place and nothing else, a valid desktop entry, no path of the build or the sources left in
# the program or the codec module, and the installed program, moved to another folder,
# starting headless, copying its shipped files into a new program folder and opening a PCX
# picture through the codec module of the installation.
#
# install_test.sh <build dir> <source dir> <bindir> <libdir> <datadir> <check strings: 1|0>
set -uo pipefail
build=$1 src=$2 bindir=$3 libdir=$4 datadir=$5 check_strings=$6

fails=0
fail() { echo "FAIL: $*"; fails=$((fails + 1)); }
note() { echo "-- $*"; }

tmp=$(mktemp -d /tmp/twinstallXXXXXX)
pid=
cleanup() {
  [ -n "$pid" ] && kill "$pid" 2>/dev/null && wait "$pid" 2>/dev/null
  rm -rf "$tmp"
}
trap cleanup EXIT

# ---------------------------------------------------------------- the installation
prefix=$tmp/prefix
if ! cmake --install "$build" --prefix "$prefix" >"$tmp/install.log" 2>&1; then
  cat "$tmp/install.log"
  echo "FAIL: cmake --install failed"
  exit 1
fi

expect_file() { [ -f "$prefix/$1" ] || fail "not installed: $1"; }
[ -x "$prefix/$bindir/tarnwick" ] || fail "not installed or not executable: $bindir/tarnwick"
expect_file "$libdir/tarnwick/libtw_codecs.so"
expect_file "$libdir/tarnwick/libtw_help.so"
expect_file "$libdir/tarnwick/libtw_mediaengine.so"
[ -x "$prefix/$libdir/tarnwick/tarnwick-decoder" ] || fail "not installed or not executable: $libdir/tarnwick/tarnwick-decoder"
expect_file "$libdir/tarnwick/libtw_webengine.so"
expect_file "$libdir/tarnwick/libtw_print.so"
expect_file "$libdir/tarnwick/libtw_fetch.so"
expect_file "$datadir/tarnwick/TIPHELP.TXT"
expect_file "$datadir/tarnwick/Help/Ostrel.qhc"
expect_file "$datadir/tarnwick/Help/Ostrel.qch"
expect_file "$datadir/applications/tarnwick.desktop"
shipped=$(ls "$src/resources/BMPS" | wc -l)
installed=$(ls "$prefix/$datadir/tarnwick/BMPS" 2>/dev/null | wc -l)
[ "$shipped" -gt 0 ] && [ "$installed" -eq "$shipped" ] ||
  fail "BMPS: $installed of $shipped tool images installed"
cmp -s "$src/resources/TIPHELP.TXT" "$prefix/$datadir/tarnwick/TIPHELP.TXT" ||
  fail "TIPHELP.TXT differs from the shipped one"

# The icons: a PNG of the folder's size in each size folder of the hicolor theme.
icons=0
for f in "$prefix/$datadir"/icons/hicolor/*/apps/tarnwick.png; do
  [ -f "$f" ] || continue
  size=$(basename "$(dirname "$(dirname "$f")")")
  # PNG signature, then the IHDR chunk: width and height as 32-bit big-endian numbers.
  sig=$(od -An -tx1 -N8 "$f" | tr -d ' \n')
  w=$(od -An -tu1 -j16 -N4 "$f" | awk '{print $1*16777216 + $2*65536 + $3*256 + $4}')
  h=$(od -An -tu1 -j20 -N4 "$f" | awk '{print $1*16777216 + $2*65536 + $3*256 + $4}')
  [ "$sig" = 89504e470d0a1a0a ] && [ "${w}x${h}" = "$size" ] ||
    fail "icon $size/apps/tarnwick.png is not a ${size} PNG (${w}x${h})"
  icons=$((icons + 1))
done
[ "$icons" -ge 4 ] || fail "only $icons icon sizes installed"
[ -f "$prefix/$datadir/icons/hicolor/48x48/apps/tarnwick.png" ] || fail "no 48x48 icon"

# Nothing else: no test programs, benchmarks or build files in the installation.
while IFS= read -r f; do
  rel=${f#"$prefix"/}
  case "$rel" in
    "$bindir/tarnwick" | "$libdir/tarnwick/libtw_codecs.so" | "$libdir/tarnwick/libtw_help.so" | "$libdir/tarnwick/libtw_mediaengine.so" | \
    "$libdir/tarnwick/libtw_webengine.so" | "$libdir/tarnwick/libtw_print.so" | "$libdir/tarnwick/libtw_fetch.so" | \
    "$libdir/tarnwick/tarnwick-decoder" | "$datadir/tarnwick/"* | \
    "$datadir/applications/tarnwick.desktop" | "$datadir/icons/hicolor/"*/apps/tarnwick.png) ;;
    *) fail "installed but not part of the program: $rel" ;;
  esac
done < <(find "$prefix" -type f -o -type l)

# ---------------------------------------------------------------- the desktop entry
desktop=$prefix/$datadir/applications/tarnwick.desktop
if command -v desktop-file-validate >/dev/null 2>&1; then
  out=$(desktop-file-validate "$desktop" 2>&1) || fail "desktop-file-validate: $out"
  [ -z "$out" ] || fail "desktop-file-validate has remarks: $out"
else
  note "desktop-file-validate is not installed (package desktop-file-utils): not validated"
fi
grep -qx 'Name=Tarnwick 2.0' "$desktop" || fail "desktop entry: Name is not 'Tarnwick 2.0'"
grep -qx 'Exec=tarnwick %f' "$desktop" || fail "desktop entry: Exec is not 'tarnwick %f'"
grep -qx 'Icon=tarnwick' "$desktop" || fail "desktop entry: Icon is not 'tarnwick'"
grep -Eq '^MimeType=(image/jpeg;).*(audio/mpeg;).*(application/pdf;)' "$desktop" ||
  fail "desktop entry: MimeType does not list pictures, music and documents"

# ---------------------------------------------------------------- no build path inside
elf_files=("$prefix/$bindir/tarnwick" "$prefix/$libdir/tarnwick/libtw_codecs.so" "$prefix/$libdir/tarnwick/libtw_help.so"
  "$prefix/$libdir/tarnwick/libtw_mediaengine.so" "$prefix/$libdir/tarnwick/tarnwick-decoder"
  "$prefix/$libdir/tarnwick/libtw_webengine.so" "$prefix/$libdir/tarnwick/libtw_print.so"
  "$prefix/$libdir/tarnwick/libtw_fetch.so")
for f in "${elf_files[@]}"; do
  [ -f "$f" ] || continue
  rp=$(readelf -d "$f" | grep -E 'R(UN)?PATH' || true)
  case "$rp" in *"$build"* | *"$src"*) fail "$(basename "$f") keeps a search path into the build: $rp" ;; esac
  if [ "$check_strings" = 1 ]; then
    # What the program carries when it runs; the debug sections record, as always, the
    # folder each file was compiled in, and are not looked at.
    objcopy --strip-debug "$f" "$tmp/stripped" || { fail "objcopy on $f"; continue; }
    for dir in "$build" "$src"; do
      hits=$(strings -a "$tmp/stripped" | grep -F "$dir" | head -3)
      [ -z "$hits" ] || fail "$(basename "$f") holds the path $dir: $hits"
    done
  fi
done
[ "$check_strings" = 1 ] || note "sanitizer build: the strings of the binaries are not checked"

# ---------------------------------------------------------------- the installed program
# Moved after installing, so it can only find its module and files relative to itself.
moved=$tmp/moved
mv "$prefix" "$moved"
home=$tmp/home
data=$home/share/tarnwick
mkdir -p "$data" "$home/run"
chmod 700 "$home/run"
# Settings files as a set-up machine has them, so no first-start boxes wait for an answer.
printf '0 100 8000 10500 0 2 0 115 115 2 40 0 5000 500 9\r\nPC\r\n%s\r\n0 1 0 0 0 0 1 1 1 0 0 1\r\n' \
  "$home" >"$data/Options.INI"
printf '8421504 0 -2147483644 12582912 -2147483644 8388608 -2147483625 8388608 14737632 4210752 32768 16777215 16744576 8388608 12640511 16512 32768 8421631 16744576 0 12648384 0 12632319 0 4210752 16777215 12583104 16777152 12632256 0\r\n' \
  >"$data/Colors.INI"
convert=$(command -v convert-im6.q16 || command -v convert)
"$convert" -size 64x48 gradient:red-blue "PCX:$home/pic.pcx" || fail "could not make the PCX picture"

(
  cd "$home" || exit 1
  export HOME="$home" XDG_DATA_HOME="$home/share" XDG_CACHE_HOME="$home/cache" \
    XDG_CONFIG_HOME="$home/config" XDG_RUNTIME_DIR="$home/run" QT_QPA_PLATFORM=offscreen \
    LD_DEBUG=files LD_DEBUG_OUTPUT="$tmp/ld"
  exec "$moved/$bindir/tarnwick" "$home/pic.pcx"
) >"$tmp/out.log" 2>&1 &
pid=$!

module=$moved/$libdir/tarnwick/libtw_codecs.so
# ImageMagick as Debian builds it loads each coder from a module of its own: the PCX coder
# coming in shows that the picture was handed to ImageMagick inside the codec module.
pcx_coder=$(ls /usr/lib/*/ImageMagick-*/modules-*/coders/pcx.so /usr/lib*/ImageMagick-*/modules-*/coders/pcx.so 2>/dev/null | head -1)
loaded=0 decoded=0
for _ in $(seq 1 600); do
  kill -0 "$pid" 2>/dev/null || break
  grep -qF "calling init: $module" "$tmp"/ld.* 2>/dev/null && loaded=1
  if [ "$loaded" = 1 ]; then
    if [ -z "$pcx_coder" ] || grep -qF "calling init: $pcx_coder" "$tmp"/ld.* 2>/dev/null; then
      decoded=1
      break
    fi
  fi
  sleep 0.1
done
# A moment for the picture to be shown: the program must still be running after it.
sleep 1
# The picture was decoded by a decoder helper of the installation, not in the program.
if [ -n "$pcx_coder" ] && grep -qF "calling init: $pcx_coder" "$tmp/ld.$pid" 2>/dev/null; then
  fail "the program decoded the PCX picture itself instead of in tarnwick-decoder"
fi
grep -qF "$moved/$libdir/tarnwick/tarnwick-decoder" "$tmp"/ld.* 2>/dev/null ||
  fail "no decoder helper of the installation was started"
if kill -0 "$pid" 2>/dev/null; then
  kill "$pid" 2>/dev/null
  wait "$pid" 2>/dev/null
else
  wait "$pid"
  fail "the installed program ended by itself (status $?): $(tail -5 "$tmp/out.log")"
fi
pid=
[ "$loaded" = 1 ] || fail "the installed program did not load its codec module $module"
[ "$decoded" = 1 ] || fail "ImageMagick's PCX coder ($pcx_coder) was not loaded for the picture"
hits=$(grep -hF -e "$build" -e "$src" "$tmp"/ld.* 2>/dev/null | head -3)
[ -z "$hits" ] || fail "the installed program loaded files from the build: $hits"

# First start: the shipped files of the moved installation copied into the program folder.
for f in TIPHELP.TXT BMPS/Check.BMP Help/Ostrel.qhc Help/Ostrel.qch; do
  cmp -s "$moved/$datadir/tarnwick/$f" "$data/$f" || fail "not copied into the program folder: $f"
done

if [ "$fails" -gt 0 ]; then
  echo "$fails check(s) failed"
  exit 1
fi
echo "installation checked: $prefix (moved to $moved)"
