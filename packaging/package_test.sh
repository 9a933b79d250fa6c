#!/usr/bin/env bash
# package_test.sh PACKAGE DIRECTORY: installs the package into a bare root below DIRECTORY, and uses it
# there. Needs root, and network access to the apt sources of this machine.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/bare_root.sh"
package=$(realpath "$1")
root=$(realpath -m "$2")/package-test-root
examples=$(realpath "$(dirname "${BASH_SOURCE[0]}")/../examples")

fail() {
  echo "package_test: $*" >&2
  exit 1
}

inside() { in_bare_root "$root" "$@"; }

rm -rf --one-file-system "$root"
remove_bare_root_at_exit "$root"
make_bare_root "$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)" "$root" "$2"
cp "$package" "$root/fabscan.deb"
cp "$examples/demo.fabscan.jsonl" "$root/"
inside apt-get update -q >>"$root.log" 2>&1 ||
  fail "the bare root does not reach the packages: $(tail -n 1 "$root.log")"
inside env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends \
  /fabscan.deb >>"$root.log" 2>&1 || fail "it does not install: $(tail -n 3 "$root.log")"

[ "$(inside fabscan --version)" = "fabscan $(dpkg-deb --field "$package" Version)" ] ||
  fail "the package is of another version than the command in it"
inside fabscan show /demo.fabscan.jsonl >/dev/null
inside fabscan dump /demo.fabscan.jsonl --prefix MyDev --guid 0x5a1e0c0000000600
[ "$(grep -c '^void MyDev::HCA::' "$root/mydev_generated.cpp")" -eq 22 ] || fail "not 22 functions"
# A minimal root does not install manual pages, so check for them in the package itself.
contents=$(dpkg-deb --contents "$package")
for file in man1/fabscan-dump.1.gz bash-completion/completions/fabscan \
  zsh/vendor-completions/_fabscan fish/vendor_completions.d/fabscan.fish \
  doc/fabscan/copyright doc/fabscan/changelog.gz; do
  grep -q "$file" <<<"$contents" || fail "$file is missing"
done
inside apt-get remove -q -y fabscan >>"$root.log" 2>&1
[ ! -e "$root/usr/bin/fabscan" ] || fail "the command stays when the package is removed"
echo "package_test: installed, used and removed in a bare root"
