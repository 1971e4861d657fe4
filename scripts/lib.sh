# shellcheck shell=bash
# SPDX-FileCopyrightText: 2026 The Quillon developers
# SPDX-License-Identifier: GPL-3.0-or-later
# What the scripts share. Sourced, never run.

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
readonly root

# Debian packages that the program needs to be built and to run.
# shellcheck disable=SC2034
readonly packages_run=(
  ca-certificates cmake ninja-build g++ pkg-config ccache mold
  libvips-dev libjpeg62-turbo-dev libtiff-dev libpng-dev zlib1g-dev libexiv2-dev libmediainfo-dev libsqlite3-dev
  libgif-dev libseccomp-dev liblcms2-dev libqpdf-dev libpoppler-cpp-dev libcgif-dev
  ffmpeg tesseract-ocr tesseract-ocr-chi-sim poppler-data icc-profiles-free libgs-common
  nlohmann-json3-dev libcli11-dev libfmt-dev qt6-base-dev qt6-svg-dev fonts-noto-cjk
)
# What the tests need on top, the check of the formatting included.
# shellcheck disable=SC2034
readonly packages_test=(libgtest-dev libgmock-dev libbenchmark-dev clang-format xvfb xauth imagemagick)
# shellcheck disable=SC2034
readonly packages_lint=(clang-tidy shellcheck)

# say TEXT...: what begins now, with the time of day, from which a log shows how long each stage took.
say() { printf '\n== %(%T)T %s\n' -1 "$*"; }

die() {
  printf '%s\n' "$*" >&2
  exit 1
}

as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  else
    command -v sudo >/dev/null || die "These packages must be installed by root: $*"
    sudo "$@"
  fi
}

installed() { [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]; }

# need PACKAGE...: installs those that are missing.
need() {
  local missing=() package
  command -v dpkg-query >/dev/null || die "Please install what Debian calls: $*"
  for package in "$@"; do
    installed "$package" || missing+=("$package")
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  say "Installing ${missing[*]}"
  local install=(env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${missing[@]}")
  # The package lists may be absent or old; they are only fetched when the installation fails without.
  as_root "${install[@]}" </dev/null && return 0
  as_root apt-get update -q </dev/null
  as_root "${install[@]}" </dev/null
}

# build PRESET [TARGET...]: configures and builds build/PRESET.
build() {
  local preset=$1
  shift
  say "Building $preset"
  (cd -- "$root" && cmake --preset "$preset" --log-level=WARNING && cmake --build --preset "$preset" ${1:+--target "$@"})
}

# run_tests PRESET [OPTION...]: every test of a built preset; a run without any test is a failure. The options are ctest's.
run_tests() {
  local preset=$1
  shift
  say "Testing $preset"
  (cd -- "$root" && QT_QPA_PLATFORM=offscreen ctest --preset "$preset" --no-tests=error "$@")
}
