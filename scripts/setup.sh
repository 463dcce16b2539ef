#!/usr/bin/env bash
# Installs the Debian packages the build and the tests need. Idempotent; run
# as root (or with sudo available) on Debian 12.
set -euo pipefail
packages=(cmake make g++ pkg-config libgtest-dev libgmock-dev libbenchmark-dev libicu-dev libcairo2-dev
          libpango1.0-dev libfontconfig-dev libpng-dev libspng-dev libdeflate-dev libplist-dev
          nlohmann-json3-dev fonts-dejavu-core procps libsdl2-dev libx11-dev xvfb xdotool x11-utils
          qt6-base-dev qtbase5-dev qtbase5-examples ccache libexpat1-dev chromium libgtk-4-dev libxtst-dev)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  export DEBIAN_FRONTEND=noninteractive
  $sudo apt-get update -qq
  $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
