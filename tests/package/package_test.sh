#!/usr/bin/env bash
# Installs the library to an empty place, and builds and runs the example from there, by its CMake package and by
# pkg-config. Also compares what the library exports, and what it leaves to the host and takes from the system, with the
# lists beside this file, and what its headers declare with what a program can link.
#   package_test.sh BUILD-DIRECTORY SOURCE-DIRECTORY
set -euo pipefail
build=$1 source=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/prefix" >/dev/null
library=$(find "$work/prefix" -name 'libkroairsync-xscale-r.so.1')

echo "soname"
readelf --dynamic "$library" | grep -q 'soname: \[libkroairsync-xscale-r.so.1\]'

# Names without their parameters; private members of exported classes are not part of the promise.
names() { awk '{ $1 = ""; $2 = ""; sub(/^ +/, ""); sub(/\(.*/, ""); print }' | LC_ALL=C sort -u; }
echo "exports"
nm --dynamic --demangle --defined-only "$library" | names >"$work/exports"
diff "$source/tests/package/exports.txt" "$work/exports"
echo "porting functions"
nm --dynamic --demangle --undefined-only "$library" | awk '{ print $2 }' | grep '^AIRSYNC_STACK' |
  sed 's/(.*//' | LC_ALL=C sort -u >"$work/undefined"
diff "$source/tests/package/undefined.txt" "$work/undefined"

# Nothing else: no files, no environment, no clock, no memory but the host's. (C++ names are not C functions; which of
# those listed a compiler needs is its own affair.)
echo "C library"
nm --dynamic --undefined-only "$library" | awk '$1 == "U" { sub(/@.*/, "", $2); print $2 }' | grep -v '^_Z' |
  LC_ALL=C sort -u >"$work/system"
LC_ALL=C comm -23 "$work/system" "$source/tests/package/system.txt" >"$work/strangers"
if [[ -s $work/strangers ]]; then
  cat "$work/strangers"
  exit 1
fi

echo "CMake package"
cmake -G Ninja -S "$source/examples" -B "$work/example" -DCMAKE_PREFIX_PATH="$work/prefix" >"$work/log" 2>&1 &&
  cmake --build "$work/example" >>"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
"$work/example/minimal_host" | grep -q 'folder 5: Contacts, type 9'

echo "pkg-config"
export PKG_CONFIG_PATH
PKG_CONFIG_PATH=$(dirname "$(find "$work/prefix" -name kroairsync.pc)")
read -ra flags < <(pkg-config --cflags --libs kroairsync)
g++ -std=c++17 "$source/examples/minimal_host.cpp" "$source"/host/porting/{Blocks,Sml}.cpp "${flags[@]}" \
  -o "$work/by-pkg-config"
LD_LIBRARY_PATH=$(dirname "$library") "$work/by-pkg-config" | grep -q 'folder 5: Contacts, type 9'

echo "every installed header compiles by itself"
include=$work/prefix/include/kroairsync
(cd "$include" && find . -name '*.h') | while read -r header; do
  g++ -std=c++17 -Wall -Wextra -Wpedantic -Werror -fsyntax-only -x c++ -I"$include" "$include/$header"
done

# All that the headers show: each is included by the program, each public function and constant in them is named there,
# and the program links against the installed library alone. Inline functions are compiled whether they are called or not.
echo "everything that is declared links"
program=$source/tests/package/every_declaration.cpp
(cd "$include" && find . -name '*.h' -printf '#include "%P"\n') | LC_ALL=C sort >"$work/headers"
grep '^#include "' "$program" | LC_ALL=C sort >"$work/included"
diff "$work/headers" "$work/included"
# Public declarations, as a host's compiler sees them: without comments, private parts and the bodies of templates.
g++ -std=c++17 -E -I"$include" "$program" | awk -v own="$include" '
  /^# [0-9]+ "/ { ours = index($0, "\"" own); next }
  !ours { next }
  /^template/ { template = 1 }
  /^ (private|protected):/ { hidden = 1 }
  /^ public:/ { hidden = 0 }
  !hidden && !template
  /^};?/ { hidden = 0; template = 0 }' >"$work/declarations"
{
  grep -oE '[A-Za-z_][A-Za-z_0-9]*\(' "$work/declarations" | tr -d '('
  grep -oE 'const(expr)? [A-Za-z_][A-Za-z_0-9<>]* [A-Za-z_][A-Za-z_0-9]*(\[\])? =' "$work/declarations" |
    sed -E 's/.* ([A-Za-z_0-9]+)(\[\])? =/\1/'
} | LC_ALL=C sort -u | grep -vxE 'static_assert|sizeof|__builtin_offsetof|__attribute__|visibility|format|load|Appender' >"$work/declared"
grep -oE '&([A-Za-z]+::)?[A-Za-z_][A-Za-z_0-9]*' "$program" | sed -E 's/.*[&:]//' | LC_ALL=C sort -u >"$work/named"
LC_ALL=C comm -23 "$work/declared" "$work/named" >"$work/forgotten"
if [[ -s $work/forgotten ]]; then
  echo "not in every_declaration.cpp:"
  cat "$work/forgotten"
  exit 1
fi
g++ -std=c++17 -O0 -fkeep-inline-functions -Wall -Wextra -Wpedantic -Werror "$program" \
  "$source"/host/porting/{Blocks,Sml}.cpp "${flags[@]}" -o "$work/every-declaration"
LD_LIBRARY_PATH=$(dirname "$library") "$work/every-declaration"
