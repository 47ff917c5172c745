#!/bin/sh
# Installs what is missing, then configures, builds and runs every test, and with Qt 6 those of the preset qt6.
set -eu
unset CDPATH
cd -- "$(dirname -- "$(readlink -f -- "$0")")"
. packaging/packages.sh

quvo_install_packages run test qt6
# Without them the tests of these engines are skipped.
quvo_install_packages scale || echo "The tests of folder scale are skipped where their engine is missing." >&2

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
trap 'exit 130' INT TERM HUP
mkdir -m 700 "$scratch/runtime" "$scratch/home"
export QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR="$scratch/runtime" HOME="$scratch/home"
cmake --workflow --preset dev
cmake --workflow --preset qt6
