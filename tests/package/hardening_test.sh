#!/usr/bin/env bash
# Whether what is installed is hardened as cmake/AirSyncHardening.cmake says, read off the binaries.
#   hardening_test.sh BUILD-DIRECTORY PROCESSOR
set -euo pipefail
build=$1 processor=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake --install "$build" --prefix "$work" >/dev/null

failed=0
# expect FILE WHAT PATTERN: the standard input has a line with PATTERN.
expect() {
  grep -qE "$3" || { echo "$1: no $2" >&2; failed=1; }
}

binaries=("$work"/bin/* "$(find "$work" -type f -name 'libkroairsync-xscale-r.so*')")
for file in "${binaries[@]}"; do
  name=$(basename "$file")
  readelf --dynamic "$file" >"$work/dynamic"
  readelf --program-headers --wide "$file" >"$work/headers"
  nm --dynamic --undefined-only "$file" >"$work/imports"
  expect "$name" "position-independent code" 'Type:? +DYN' < <(readelf --file-header "$file")
  [[ $file != */bin/* ]] || expect "$name" "position-independent program" 'FLAGS_1.*PIE' <"$work/dynamic"
  expect "$name" "RELRO" 'GNU_RELRO' <"$work/headers"
  expect "$name" "binding at the start" 'FLAGS.*(BIND_NOW|NOW)' <"$work/dynamic"
  expect "$name" "stack that is not executable" 'GNU_STACK.* RW +0x' <"$work/headers"
  expect "$name" "stack protector" '__stack_chk_fail' <"$work/imports"
  expect "$name" "checked function of the C library" '_chk(@|$)' < <(grep -v __stack_chk_fail "$work/imports")
done

# How much FORTIFY checks, and that each unit has its stack protectors, is not in a binary: the commands tell. Nor is
# control-flow protection, where the C library's own start files come without it.
grep -E '"command".*CMakeFiles/(kroairsync|airsync[^/ ]*)\.dir/' "$build/compile_commands.json" | grep -v '/tests/' \
  >"$work/commands"
echo "$(wc -l <"$work/commands") units"
[ -s "$work/commands" ] || { echo "there is no unit in compile_commands.json" >&2; failed=1; }
flags=(-fstack-protector-strong -D_FORTIFY_SOURCE=3 '-fPI[EC] ')
[[ ! $processor =~ ^(x86_64|amd64|AMD64|i[3-6]86)$ ]] || flags+=(-fcf-protection=full)
for flag in "${flags[@]}"; do
  if grep -vE -e "$flag" "$work/commands" >"$work/without"; then
    sed -E "s/.* -c ([^ \"]+).*/\1: compiled without $flag/" "$work/without" >&2
    failed=1
  fi
done
exit "$failed"
