#!/usr/bin/env bash
# The whole workflow on a simulated fabric: start the simulator, discover, merge, dump, verify, stop
# the simulator. Usage: demo_live.sh FABSCAN [DIRECTORY]; the results stay in DIRECTORY, which is
# created if it is missing.
set -euo pipefail

fabscan=$(realpath "$1")
directory=$(realpath -m "${2:-demo-live}")
here=$(dirname "$(realpath "${BASH_SOURCE[0]}")")
extra=$(realpath "$here/../../examples/extra.jsonl")
host=H-5a1e0c0000100000
switch=0x5a1e0c0000200000

source "$here/../../examples/steps.sh"
command -v make >/dev/null || export CMAKE_GENERATOR=Ninja

preload=$(echo /usr/lib/*/umad2sim/libumad2sim.so)
[ -e "$preload" ] || {
  echo "demo-live: libumad2sim.so is missing; install ibsim-utils" >&2
  exit 1
}

work=$(mktemp -d)
export IBSIM_SOCKNAME=${work##*/}
simulator=
clean_up() {
  if [ -n "$simulator" ]; then
    kill "$simulator" 2>/dev/null || true
    wait "$simulator" 2>/dev/null || true
  fi
  rm -rf "$work"
}
trap clean_up EXIT

say "What to expect"
cat <<'TEXT'
A discovery reads the attributes that the InfiniBand architecture defines: nodes, ports, links and
switch tables. Other attributes are outside its reach: the capability masks of a device, adaptive
routing, private forwarding tables, congestion control, firmware. Without them some generated
functions hold an #error line instead of values, so that an incomplete device cannot be built
unnoticed. There are two ways on:

  - 'fabscan scaffold' writes devices that build: there, those functions set no values.
  - 'fabscan merge' adds what another collector read; docs/discovery.md explains how to write that.

This demonstration does both.
TEXT

say "A simulated fabric: two switches, two adapters, a router"
PYTHONPATH="$here" python3 -B -c 'import nets; print(nets.two_switches().text())' >"$work/fabric.net"
(cd "$work" && exec ibsim -s -n fabric.net </dev/null >ibsim.out 2>&1) &
simulator=$!
for _ in $(seq 300); do
  grep -q "Network simulator ready" "$work/ibsim.out" 2>/dev/null && break
  kill -0 "$simulator" || { cat "$work/ibsim.out" >&2; exit 1; }
  sleep 0.1
done
grep "Network simulator ready" "$work/ibsim.out"

mkdir -p "$directory"
cd "$work" # the simulator's clients keep a directory here while they run
say "Discover it, as on a host of a real fabric"
show env SIM_HOST="$host" LD_PRELOAD="$preload" \
  timeout 60 "$fabscan" discover --output "$directory/fabric.jsonl" --force

say "One simulated device for each device model, as a project that builds"
rm -rf "$directory/sim"
show timeout 60 "$fabscan" scaffold "$directory/fabric.jsonl" --prefix MyDev \
  --output-dir "$directory/sim"
show_quietly cmake -S "$directory/sim" -B "$directory/sim/build"
show_quietly cmake --build "$directory/sim/build"
show "$directory/sim/build/simulated_devices"

say "Complete one of its switches with what another collector read"
show timeout 60 "$fabscan" merge "$directory/fabric.jsonl" "$extra" \
  --output "$directory/whole.jsonl" --force

say "Write that switch as C++ source for a fabric simulator"
show timeout 60 "$fabscan" dump "$directory/whole.jsonl" --prefix MyDev --guid "$switch" \
  --output-dir "$directory" --force --strict

say "Compile that, run it, and compare each value with what the device reported"
show timeout 300 "$fabscan" verify "$directory/whole.jsonl" --guid "$switch"

say "Made in $directory"
ls -l "$directory"
