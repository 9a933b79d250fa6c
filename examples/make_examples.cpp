// Writes the bundled snapshots: `make-examples DIRECTORY`.

#include <fstream>
#include <iostream>
#include <stdexcept>

#include "examples/bundled_fabrics.h"
#include "snapshot/snapshot.h"

namespace fabscan {

namespace {

void Write(const std::string& path, ExampleFabric& fabric, const char* source) {
  std::ofstream out(path, std::ios::binary);
  WriteSnapshot(out, fabric.fabscan(), {source, "", ""});
  if (!out.flush()) throw std::runtime_error("cannot write " + path);
}

}  // namespace

void MakeExamples(const std::string& directory) {
  ExampleFabric demo(kManagerLid);
  MakeDemo(demo);
  Write(directory + "/demo.fabscan.jsonl", demo,
        "an invented fabric with every kind of node and every attribute");

  ExampleFabric partial(1);
  MakePartial(partial);
  Write(directory + "/partial.fabscan.jsonl", partial,
        "an invented fabric of which some records were not collected");

  ExampleFabric extra(kManagerLid);
  MakeExtra(extra);
  Write(directory + "/extra.jsonl", extra, "an invented collector of vendor attributes");
}

}  // namespace fabscan

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: make-examples DIRECTORY\n";
    return 2;
  }
  try {
    fabscan::MakeExamples(argv[1]);
  } catch (const std::exception& error) {
    std::cerr << "make-examples: " << error.what() << '\n';
    return 1;
  }
}
