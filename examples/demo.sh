#!/usr/bin/env bash
# From the bundled snapshot to simulated devices: dump, scaffold, compile, run, verify.
# Usage: demo.sh FABSCAN DIRECTORY; DIRECTORY is replaced if it exists.
set -euo pipefail

here=$(dirname "$(realpath "${BASH_SOURCE[0]}")")
source "$here/steps.sh"
PATH=$(dirname "$(realpath "$1")"):$PATH
rm -rf "$2"
mkdir -p "$2"
cp "$here/demo.fabscan.jsonl" "$2/fabric.jsonl"
cd "$2"
command -v make >/dev/null || export CMAKE_GENERATOR=Ninja

say "The device models of a saved fabric"
show fabscan models fabric.jsonl

say "The generated source of one adapter, and an excerpt: values that it reported"
show fabscan dump fabric.jsonl --prefix MyDev --guid 0x5a1e0c0000000600
show sed -n '/MyDev::HCA::setNodeInfo/,/^}/p' mydev_generated.cpp

say "One simulated device for each device model, as a project that builds"
show fabscan scaffold fabric.jsonl --prefix MyDev --output-dir sim
show_quietly cmake -S sim -B sim/build
show_quietly cmake --build sim/build
printf '$ sim/build/simulated_devices | head -n 6\n'
sim/build/simulated_devices >devices.txt
head -n 6 devices.txt

say "Compile and run each device, and compare every value with what the real one reported"
printf '$ fabscan verify fabric.jsonl --buildable | tail -n 2\n'
fabscan verify fabric.jsonl --buildable >verify.txt
tail -n 2 verify.txt

say "All values agree. The files are in $2"
