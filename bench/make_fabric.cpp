// fabscan-make-fabric: a snapshot, or a discovery cache, of a made fabric, for measuring and for
// trying things out.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <fstream>
#include <iostream>
#include <string>

#include "bench/cache_maker.h"
#include "snapshot/snapshot.h"

int main(int argc, char** argv) {
  fabscan::FabricShape shape;
  std::string output = "-";
  bool cache = false;
  CLI::App app("Writes a snapshot of a made fabric: a fat tree with records of every kind.",
               "fabscan-make-fabric");
  app.add_option("--switches", shape.switches, "Switches")->capture_default_str();
  app.add_option("--ports", shape.ports, "Ports of a switch")
      ->capture_default_str()
      ->check(CLI::Range(4, 254));
  app.add_option("--adapters", shape.adapters, "Adapters of two ports each")->capture_default_str();
  app.add_option("--seed", shape.seed, "The same seed gives the same bytes")->capture_default_str();
  app.add_flag("--cache", cache, "Write a discovery cache instead; its adapters have one port");
  app.add_option("--output", output, "The snapshot; - is standard output")->capture_default_str();
  CLI11_PARSE(app, argc, argv);

  const std::string source = fmt::format("made: {} switches of {} ports, {} adapters, seed {}",
                                         shape.switches, shape.ports, shape.adapters, shape.seed);
  std::ofstream file;
  if (output != "-") file.open(output, std::ios::binary | std::ios::trunc);
  std::ostream& out = output == "-" ? std::cout : file;
  if (cache) {
    out << fabscan::MakeCache(shape);
  } else {
    Fabscan fabscan;
    fabscan::MakeFabric(shape, fabscan);
    fabscan::WriteSnapshot(out, fabscan, {source, "", ""});
  }
  out.flush();
  if (out) return 0;
  fmt::print(stderr,
             "fabscan-make-fabric: error: {}: cannot write; free some space, or write "
             "elsewhere\n",
             output);
  return 1;
}
