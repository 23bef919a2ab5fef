#!/usr/bin/env bash
# Usage: quotesTest.sh DOCUMENT...
# Each block of C++ or TOML in a document stands word for word in a file of examples/, which the install test compiles
# and runs: what readers copy is what works. The block as a whole may be indented there.
set -euo pipefail
source=$(cd "$(dirname "$0")/../.." && pwd)
examples=$(cat "$source"/examples/*.cpp "$source"/examples/*.toml)

stands_in_examples() {  # stands_in_examples BLOCK
  local indent
  for indent in '' '  ' '    '; do
    [[ $examples == *"$(sed "s/^./$indent&/" <<<"$1")"* ]] && return
  done
  return 1
}

failures=0 blocks=0
for document in "$@"; do
  number=0 block='' begin=0
  while IFS= read -r line; do
    number=$((number + 1))
    if [[ $line == '```cpp' || $line == '```toml' ]]; then
      begin=$number block=''
    elif [[ $line == '```' && $begin -gt 0 ]]; then
      blocks=$((blocks + 1))
      stands_in_examples "${block%$'\n'}" || {
        echo "$document:$begin: no file of examples/ has this block; change both together" >&2
        failures=$((failures + 1))
      }
      begin=0
    else
      block+=$line$'\n'
    fi
  done <"$document"
done
[[ $blocks -gt 0 ]] || { echo "no block of C++ or TOML in $*" >&2; exit 1; }
[[ $failures -eq 0 ]]
