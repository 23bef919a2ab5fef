#!/usr/bin/env bash
# Usage: installTest.sh BUILD_DIR COMPILER
# Installs BUILD_DIR to a fresh place, moves it, builds the examples against it by CMake and by pkg-config, and runs
# them and the installed programs.
set -euo pipefail
source=$(cd "$(dirname "$0")/../.." && pwd)
build=$1 compiler=$2

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake --install "$build" --prefix "$work/first" >/dev/null
mv "$work/first" "$work/moved"
prefix=$work/moved

expect() {  # expect TEXT COMMAND...: the command prints exactly TEXT
  local wanted=$1 got
  shift
  got=$("$@")
  [[ $got == "$wanted" ]] || {
    printf '%s\nprinted:\n%s\nexpected:\n%s\n' "$*" "$got" "$wanted" >&2
    exit 1
  }
}

reacted="VRFs: 3
FECs of IP routes: Value('Hardware::DornL3Unicast::FecCountStats', ** {'numNonEcmpFecs': 7, 'numEcmpFecs': 2, 'numFecEntries': 9})"

echo "By CMake:"
cmake -S "$source/examples" -B "$work/examples" -G Ninja -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_PREFIX_PATH="$prefix"
cmake --build "$work/examples"
expect "$reacted" "$work/examples/react"
expect "left: 4200 rpm, 1 stall, Value('Chassis::SpeedRange', ** {'lowest': 800, 'highest': 9000})" \
  "$work/examples/ownTypes"

echo "By pkg-config:"
libdir=$(dirname "$(find "$prefix" -name libvek.so)")
read -ra flags < <(PKG_CONFIG_PATH=$libdir/pkgconfig pkg-config --cflags --libs dornl3unicasttypes)
"$compiler" "$source/examples/react.cpp" -o "$work/react" "${flags[@]}" "-Wl,-rpath,$libdir"
expect "$reacted" "$work/react"

echo "The programs:"
"$prefix/bin/schemac" --help >/dev/null
"$prefix/bin/dornl3" show --local >/dev/null
