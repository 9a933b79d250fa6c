#!/usr/bin/env bash
# install_test.sh BUILD: installs into a scratch directory, moves it, and builds and runs programs
# against it, with the CMake package and with pkg-config.
set -euo pipefail
build=$1
here=$(cd "$(dirname "$0")" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

fail() {
  echo "install_test: $*" >&2
  exit 1
}

cmake --install "$build" --prefix "$scratch/first" >"$scratch/install.log"
mv "$scratch/first" "$scratch/prefix"
if grep -rl "$scratch/first" "$scratch/prefix" --include='*.cmake' --include='*.pc'; then
  fail "the files above name the original installation directory"
fi
fabscan=$scratch/prefix/bin/fabscan

# One adapter of the example, with its build file.
mkdir "$scratch/mydev"
guid=0x5a1e0c0000000600
"$fabscan" dump "$here/../examples/demo.fabscan.jsonl" --prefix MyDev --guid $guid \
  --output-dir "$scratch/mydev"
"$fabscan" scaffold --prefix MyDev --output-dir "$scratch/mydev"

cp -r "$here/installed" "$scratch/source"
cmake -S "$scratch/source" -B "$scratch/build" -DCMAKE_PREFIX_PATH="$scratch/prefix" \
  -DDEVICE_DIR="$scratch/mydev" -DCMAKE_CXX_FLAGS="-Wall -Werror" >"$scratch/cmake.log"
cmake --build "$scratch/build" >>"$scratch/cmake.log" || { cat "$scratch/cmake.log"; fail build; }

cd "$scratch"
"$scratch/build/generate"
grep -q '    mad_buffer.VendorID = 0x1234;' made_generated.cpp || fail "generate wrote no VendorID"
wanted=$(python3 - "$here/../examples/demo.fabscan.jsonl" $guid <<'PYTHON'
import json, sys
for line in open(sys.argv[1]):
    node = json.loads(line)
    if node.get("guid") == sys.argv[2]:
        info = node["attributes"]["SMP_NodeInfo"]
        print("VendorID 0x%x, DeviceID 0x%x" % (info["VendorID"], info["DeviceID"]))
PYTHON
)
[ -n "$wanted" ] || fail "the example has no such node"
[ "$("$scratch/build/simulate")" = "$wanted" ] || fail "simulate told something else than $wanted"

# Only the device, as a separate project.
cmake -S "$scratch/mydev" -B "$scratch/alone" -DCMAKE_PREFIX_PATH="$scratch/prefix" \
  >"$scratch/alone.log"
cmake --build "$scratch/alone" >>"$scratch/alone.log" || { cat "$scratch/alone.log"; fail alone; }

# The same with pkg-config.
export PKG_CONFIG_PATH=$scratch/prefix/lib/pkgconfig
for pc in "$scratch"/prefix/lib/*/pkgconfig; do PKG_CONFIG_PATH=$PKG_CONFIG_PATH:$pc; done
rm made_generated.cpp
# shellcheck disable=SC2046
c++ $(pkg-config --cflags fabscan) source/generate.cpp $(pkg-config --libs fabscan) -o by_pkg_config
./by_pkg_config
[ -s made_generated.cpp ] || fail "the program built with pkg-config wrote nothing"
# shellcheck disable=SC2046
c++ -std=c++17 $(pkg-config --variable=simulator_cflags fabscan) -I mydev source/simulate.cpp \
  mydev/mydev_generated.cpp -o simulate_by_pkg_config
[ "$(./simulate_by_pkg_config)" = "$wanted" ] || fail "simulate told something else than $wanted"
echo "installed, built and run"
