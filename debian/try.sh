#!/usr/bin/env bash
# Installs the packages into a minimal Debian root, builds and runs the README's first
# program there, and removes them again: debian/try.sh FOLDER
# The root is made once and kept at ORVIX_ROOT, else in the temporary folder. Where it
# cannot be made (not root, no mirror) it says so and ends with 0.
set -eu
cd "$(dirname "$0")/.."
packages=$(cd "$1" && pwd)
root=${ORVIX_ROOT:-${TMPDIR:-/tmp}/orvix-package-root}
skip() {
  echo "the packages were not tried: $*"
  exit 0
}
inside() {
  env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LANG=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
    ${http_proxy:+http_proxy="$http_proxy"} ${https_proxy:+https_proxy="$https_proxy"} chroot "$root" "$@"
}
files() { (cd "$root" && find . -xdev \( -path ./proc -o -path ./dev -o -path ./tmp -o -path ./var/lib -o -path ./var/cache \
  -o -path ./var/log -o -path ./root \) -prune -o ! -name '*.pyc' ! -name __pycache__ -print | sort); }

[ "$(id -u)" = 0 ] || skip "only root can make a root of its own"
command -v debootstrap >/dev/null || apt-get install -y -q debootstrap >/dev/null 2>&1 || skip "no debootstrap"
if [ ! -e "$root/.ready" ]; then
  echo "./dev: making a minimal root; this takes some minutes"
  rm -rf "$root"
  mirror=$(grep -rhE '^(deb |URIs:)' /etc/apt/sources.list /etc/apt/sources.list.d/ 2>/dev/null |
    grep -oE 'https?://[^ ]*/debian/?( |$)' | head -n 1 | tr -d ' ')
  debootstrap --variant=minbase bookworm "$root" ${mirror:+"$mirror"} >"$packages/root.log" 2>&1 ||
    skip "no minimal root: $(tail -n 1 "$packages/root.log")"
  cp /etc/resolv.conf "$root/etc/" 2>/dev/null || true
  cp -r /etc/apt/sources.list* /etc/apt/apt.conf.d "$root/etc/apt/" 2>/dev/null || true
  cp -r /etc/apt/trusted.gpg.d /etc/apt/keyrings "$root/etc/apt/" 2>/dev/null || true
  [ ! -e "$root/etc/apt/sources.list.d/debian.sources" ] || rm -f "$root/etc/apt/sources.list"
  # Pages and manuals are looked for below.
  rm -f "$root/etc/dpkg/dpkg.cfg.d/docker"
  touch "$root/.ready"
fi
mountpoint -q "$root/proc" || mount -t proc proc "$root/proc" || skip "nothing may be mounted here"
mountpoint -q "$root/dev" || mount --bind /dev "$root/dev" || skip "nothing may be mounted here"
trap 'umount "$root/proc" "$root/dev" 2>/dev/null || true' EXIT
rm -rf "$root/tmp/orvix" && mkdir "$root/tmp/orvix"
cp "$packages"/*.deb README.md tests/trials/first_program.sh "$root/tmp/orvix"
rm -f "$root"/tmp/orvix/*dbgsym*
inside sh -c 'apt-get update -q && apt-get install -y -q --no-install-recommends g++ clang-14 cmake make pkg-config python3 &&
  apt-get install -y -q --no-install-recommends --download-only /tmp/orvix/*.deb' >"$packages/root.log" 2>&1 ||
  skip "no packages from the mirror: $(tail -n 1 "$packages/root.log")"
# An earlier trial may have ended halfway.
inside apt-get purge -y -q liborvixrt1 orvix-doc >"$packages/root.log" 2>&1 || true
# What they need stays behind as what was there before.
inside sh -c 'apt-get install -y -q --no-install-recommends libsqlite3-0 libedit2 libxcb1 libxcb-ewmh2 libxcb-icccm4 libxcb-cursor0' \
  >"$packages/root.log" 2>&1 || skip "no packages from the mirror"

files >"$packages/before"
echo "== installed"
inside sh -c 'apt-get install -y -q --no-install-recommends /tmp/orvix/*.deb' >"$packages/root.log" 2>&1 ||
  { tail -n 20 "$packages/root.log"; exit 1; }
inside sh /tmp/orvix/first_program.sh /tmp/orvix/README.md /usr g++ clang++-14
for page in man1/orvixctl.1.gz man3/orvix.3.gz man7/orvix.7.gz; do test -e "$root/usr/share/man/$page"; done
test -e "$root/usr/share/doc/orvix-doc/reference/classString.md"
echo "== removed"
inside sh -c 'apt-get purge -y -q liborvixrt1 orvix-doc' >"$packages/root.log" 2>&1 || { tail -n 20 "$packages/root.log"; exit 1; }
files >"$packages/after"
diff "$packages/before" "$packages/after"
echo "the packages install, work and go without a trace"
