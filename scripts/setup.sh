#!/usr/bin/env bash
# Installs every Debian package that building, running and testing Tarnwick needs.
# Idempotent: only missing packages are installed, and the package lists are
# refreshed once, only when something is missing.
set -euo pipefail
PKGS=(
  build-essential cmake ninja-build pkg-config ccache
  qt6-base-dev qt6-base-dev-tools qt6-tools-dev qt6-tools-dev-tools
  qt6-webengine-dev qt6-pdf-dev qt6-svg-dev qt6-image-formats-plugins
  libqt6opengl6-dev
  libmagick++-6.q16-dev libtiff-dev zlib1g-dev imagemagick ghostscript netpbm
  libmpv-dev mpv ffmpeg libfluidsynth-dev timgm6mb-soundfont libcdio-dev
  libsane-dev sane-utils
  libgtest-dev libgmock-dev libbenchmark-dev
  libjpeg-turbo-progs poppler-utils
  clang-14 libclang-rt-14-dev
  unrtf antiword catdoc
  adwaita-icon-theme hicolor-icon-theme desktop-file-utils
  xvfb xauth
)
missing=()
for p in "${PKGS[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  SUDO=""
  [ "$(id -u)" -ne 0 ] && SUDO="sudo"
  echo "setup: installing ${missing[*]}"
  $SUDO apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
