#!/bin/sh
# The file that registers the classes for everybody, made from what the component
# registers for one user:
#   cmake/classes.sh BIN write    writes frame/orvix.classes
#   cmake/classes.sh BIN check    fails when it is stale
# BIN is the folder of orvixctl.
set -eu
kept=$(dirname "$0")/../frame/orvix.classes
store=$(mktemp -d)
trap 'rm -rf "$store"' EXIT
export ORVIX_REGISTRY="$store/registry"
"$1/orvixctl" register >"$store/said"
"$1/orvixctl" registry export | sed 's#"/.*/liborvix\.so"#"./liborvix.so"#' >"$store/orvix.classes"
grep -q '"./liborvix.so"' "$store/orvix.classes"
case $2 in
  write) cp "$store/orvix.classes" "$kept" ;;
  check) diff "$kept" "$store/orvix.classes" ;;
  *) sed -n '2,6s/^# \{0,1\}//p' "$0" >&2 && exit 2 ;;
esac
