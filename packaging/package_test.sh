#!/usr/bin/env bash
# package_test.sh PACKAGE FOLDER: installs the package into a clean root below FOLDER, and uses it
# there. Needs root, and a network that reaches the packages which apt here is set up for; where a
# clean root cannot be made, it says so and is done.
set -euo pipefail
package=$(realpath "$1")
root=$(realpath -m "$2")/root
examples=$(realpath "$(dirname "${BASH_SOURCE[0]}")/../examples")

fail() {
  echo "package_test: $*" >&2
  exit 1
}

skip() {
  echo "package_test: skipped: $*"
  exit 0
}

[ "$(id -u)" -eq 0 ] || skip "a clean root is made by root only"
command -v debootstrap >/dev/null || skip "there is no debootstrap"
rm -rf "$root"
mkdir -p "$root"
mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' | head -n 1)
[ -n "$mirror" ] || skip "apt knows no repository; run apt-get update"
debootstrap --variant=minbase bookworm "$root" "$mirror" >"$root.log" 2>&1 ||
  skip "no clean root can be made here: $(tail -n 1 "$root.log")"

inside() { chroot "$root" "$@"; }

cp -r /etc/apt/sources.list* /etc/apt/apt.conf.d "$root/etc/apt/"
cp "$package" "$root/fabscan.deb"
cp "$examples/demo.fabscan.jsonl" "$root/"
inside apt-get update -q >>"$root.log" 2>&1 ||
  skip "the clean root does not reach the packages: $(tail -n 1 "$root.log")"
inside env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends \
  /fabscan.deb >>"$root.log" 2>&1 || fail "it does not install: $(tail -n 3 "$root.log")"

[ "$(inside fabscan --version)" = "fabscan $(dpkg-deb --field "$package" Version)" ] ||
  fail "the package is of another version than the command in it"
inside fabscan show /demo.fabscan.jsonl >/dev/null
inside fabscan dump /demo.fabscan.jsonl --prefix MyDev --guid 0x5a1e0c0000000600
[ "$(grep -c '^void MyDev::HCA::' "$root/mydev_generated.cpp")" -eq 22 ] || fail "not 22 functions"
# The package manager of a minimal root leaves manual pages away, so they are looked for in the
# package itself.
contents=$(dpkg-deb --contents "$package")
for file in man1/fabscan-dump.1.gz bash-completion/completions/fabscan \
  zsh/vendor-completions/_fabscan fish/vendor_completions.d/fabscan.fish \
  doc/fabscan/copyright doc/fabscan/changelog.gz; do
  grep -q "$file" <<<"$contents" || fail "$file is missing"
done
inside apt-get remove -q -y fabscan >>"$root.log" 2>&1
[ ! -e "$root/usr/bin/fabscan" ] || fail "the command stays when the package is removed"
rm -rf "$root"
echo "package_test: installed, used and removed in a clean root"
