#!/usr/bin/env bash
# Whether every program and library of the build tree, and of a tree that is installed from it, names only directories
# in which nobody else can put a library: absolute ones, or by where the program itself lies, that others can't write to.
#   load_paths_test.sh BUILD-DIRECTORY
set -euo pipefail
build=$(cd "$1" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake --install "$build" --prefix "$work/prefix" >/dev/null

failed=0 binaries=0
complain() {
  echo "$1: $2" >&2
  failed=1
}

# Whether someone other than the owner may put a file there, or a directory in the place of one above it. In a directory
# with the sticky bit, such as /tmp, what exists is its owner's.
writable_by_others() {
  local directory mode
  directory=$(realpath --canonicalize-missing "$1")
  mode=$(stat --format=%a "$directory" 2>/dev/null) || mode=755
  (((0$mode & 02) != 0)) && return 0
  while [ "$directory" != / ]; do
    directory=$(dirname "$directory")
    mode=$(stat --format=%a "$directory" 2>/dev/null) || continue
    (((0$mode & 02) != 0 && (0$mode & 01000) == 0)) && return 0
  done
  return 1
}

# read_binary FILE TREE: TREE is where elements have to lie, if they have to lie anywhere.
read_binary() {
  local file=$1 tree=$2 paths element where
  binaries=$((binaries + 1))
  paths=$(readelf --dynamic "$file" | sed -nE 's/.*\((RPATH|RUNPATH)\).*\[(.*)\]$/\2/p')
  [ -n "$paths" ] || return 0
  # Each element ends with a colon, so that an empty last one counts.
  while IFS= read -r -d : element; do
    where=${element/#\$ORIGIN/$(dirname "$file")}
    case $where in
      '') complain "$file" "an empty element, which is the current directory: [$paths]" ;;
      /*) ! writable_by_others "$where" || complain "$file" "others can write to $element" ;;
      *) complain "$file" "an element by the current directory: $element" ;;
    esac
    [ -z "$tree" ] || [[ $(realpath --canonicalize-missing "$where") == "$tree"/* ]] ||
      complain "$file" "an element outside of the installed tree: $element"
  done <<<"$paths:"
}

is_elf() { [ "$(head --bytes=4 "$1" | od -An -c | tr -d ' ')" = '177ELF' ]; }
read_tree() {
  local file
  while IFS= read -r -d '' file; do
    ! is_elf "$file" || read_binary "$file" "$2"
  done < <(find "$1" -type f \( -perm -u+x -o -name '*.so*' \) -not -path '*/CMakeFiles/*' -not -name '*.o' -print0)
}

read_tree "$build" ''
[ "$binaries" -gt 0 ] || complain "$build" "there is no program to read"
built=$binaries
read_tree "$work/prefix" "$(realpath "$work/prefix")"
[ "$binaries" -gt "$built" ] || complain "the installed tree" "there is no program to read"

# An installed program finds the library by its own place, wherever that is.
for program in "$work"/prefix/bin/*; do
  (cd / && env -u LD_LIBRARY_PATH "$program" --help >/dev/null) || complain "$program" "it does not start"
done
echo "$built programs and libraries in the build tree, $((binaries - built)) installed"
exit "$failed"
