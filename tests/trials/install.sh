#!/bin/sh
# Installs a build tree into a folder of its own, uses it as a newcomer would, moves
# it, uses it again, and removes it.
#   tests/trials/install.sh BUILD SOURCE
set -eu
build=$1
source=$2
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
compilers=g++
command -v clang++-14 >/dev/null && compilers="g++ clang++-14"

cmake --install "$build" --prefix "$place/first" >"$place/log"
"$source/tests/trials/first_program.sh" "$source/README.md" "$place/first" "g++"
mv "$place/first" "$place/moved"
# shellcheck disable=SC2086
"$source/tests/trials/first_program.sh" "$source/README.md" "$place/moved" $compilers
