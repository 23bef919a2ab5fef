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
ARP entries of FAP 0: 1200
/16: 3
/24: 700"

own_names="own core/Ptr.h, own schema/Status.h, own text/Text.h, 3 VRFs"

by_cmake() {  # by_cmake SOURCE BUILD OPTION...
  cmake -S "$1" -B "$2" -G Ninja -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_PREFIX_PATH="$prefix" "${@:3}"
  cmake --build "$2"
}

echo "By CMake:"
by_cmake "$source/examples" "$work/examples"
expect "$reacted" "$work/examples/react"
expect "in step with 3 VRFs
VRFs: 4
ARP entries of FAP 0: 1200" "$work/examples/replicate"
expect "sensor 1: 40 degrees
fan left: 12000 rpm" "$work/examples/ownTypes"
socket=$work/agent.sock
"$work/examples/agent" "unix:$socket" >"$work/agentSaid" &
agent=$!
for _ in {1..100}; do [[ ! -S $socket ]] || break; sleep 0.1; done
expect "the agent has it" "$work/examples/reader" "unix:$socket"
wait "$agent"
expect "listens at unix:$socket
asked 3 times" cat "$work/agentSaid"
by_cmake "$source/tests/install/ownNames" "$work/ownNames" -DEXAMPLES="$source/examples"
expect "$own_names" "$work/ownNames/ownNames"

echo "By pkg-config:"
libdir=$(dirname "$(find "$prefix" -name libvek.so)")
read -ra flags < <(PKG_CONFIG_PATH=$libdir/pkgconfig pkg-config --cflags --libs dornl3unicasttypes)
[[ ${flags[*]} != *-std=* ]] || { echo "pkg-config sets the language: ${flags[*]}" >&2; exit 1; }
"$compiler" -std=c++20 "$source/examples/react.cpp" -o "$work/react" "${flags[@]}"
expect "$reacted" "$work/react"
own=$source/tests/install/ownNames
"$compiler" -std=c++20 -I"$own" "$own/main.cpp" -o "$work/own" "${flags[@]}"
expect "$own_names" "$work/own"

echo "The programs:"
"$prefix/bin/schemac" --help >/dev/null
cp "$source/examples/Fan.toml" "$work/old.toml"
expect "" "$prefix/bin/schemac" check "$source/examples/Fan.toml" "$source/examples/Fan.toml"
expect "" "$prefix/bin/schemac" diff "$work/old.toml" "$source/examples/Fan.toml"
[[ $("$prefix/bin/schemac" chek 2>&1) == *"did you mean 'check'"* ]] || { echo "schemac tells no near command" >&2; exit 1; }
"$prefix/bin/dornl3" show --local >/dev/null
