#!/bin/sh
# Builds the Debian packages of the tree that git has: debian/build.sh OUTPUT
set -eu
cd "$(dirname "$0")/.."
mkdir -p "$1"
output=$(cd "$1" && pwd)
rm -rf "$output/orvix" "$output"/*.deb
mkdir "$output/orvix"
git ls-files -z --cached --others --exclude-standard | xargs -0 cp -P --parents -t "$output/orvix"
cd "$output/orvix"
echo "./dev: building the packages; the steps are in $output/build.log"
dpkg-buildpackage -us -uc -b >"$output/build.log" 2>&1 || {
  tail -n 30 "$output/build.log" >&2
  exit 1
}
cd "$output"
rm -rf orvix
ls -1 "$output"/*.deb
if command -v lintian >/dev/null; then
  # The project has no public mail address yet; everything else counts.
  lintian --allow-root --fail-on error,warning \
    --suppress-tags bogus-mail-host,bogus-mail-host-in-debian-changelog "$output"/*.changes
fi
