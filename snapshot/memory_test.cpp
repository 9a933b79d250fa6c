// What a fabric that was read takes in memory: every allocation of this program is counted.

#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdlib>
#include <fstream>
#include <new>
#include <string>

#include "bench/fabric_maker.h"
#include "records/record_kinds.h"
#include "snapshot/snapshot.h"

namespace {

std::size_t in_use = 0;

void* Count(void* memory) {
  in_use += ::malloc_usable_size(memory);
  return memory;
}

void* CountOrThrow(void* memory) {
  if (memory == nullptr) throw std::bad_alloc();
  return Count(memory);
}

void Free(void* memory) {
  in_use -= ::malloc_usable_size(memory);
  std::free(memory);
}

}  // namespace

void* operator new(std::size_t size) { return CountOrThrow(std::malloc(size)); }
void* operator new[](std::size_t size) { return CountOrThrow(std::malloc(size)); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return Count(std::malloc(size));
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return Count(std::malloc(size));
}
void operator delete(void* memory) noexcept { Free(memory); }
void operator delete[](void* memory) noexcept { Free(memory); }
void operator delete(void* memory, std::size_t) noexcept { Free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { Free(memory); }

namespace fabscan {

namespace {

/// The sizes of all records, and the names of the nodes.
std::size_t Contents(const Fabscan& fabscan) {
  std::size_t bytes = 0;
  const auto add = [&](const RecordTable& table) { bytes += table.size; };
  for (const auto& [name, node] : fabscan.discovered_fabric.NodeByName) {
    bytes += name.size() + node->getAlternativeName().size();
    ForEachRecord(fabscan.fabric_extended_info, *node,
                  [&](const RecordTable& table, const void*) { add(table); });
    for (unsigned number = 0; number <= node->numPorts; ++number) {
      const IBPort* port = node->getPort(static_cast<phys_port_t>(number));
      if (port == nullptr) continue;
      ForEachRecord(fabscan.fabric_extended_info, *port,
                    [&](const RecordTable& table, int, const void*) { add(table); });
    }
  }
  return bytes;
}

TEST(MemoryAfterReading, IsAtMostAQuarterMoreThanTheRecordsAndNames) {
  const std::string path = ::testing::TempDir() + "memory_test.jsonl";
  {
    Fabscan made;
    MakeFabric({60, 64, 540, 1}, made);
    std::ofstream out(path, std::ios::binary);
    WriteSnapshot(out, made, {});
  }
  const std::size_t before = in_use;
  Fabscan fabscan;
  ReadSnapshot(path, fabscan);
  const std::size_t taken = in_use - before;
  const std::size_t contents = Contents(fabscan);
  RecordProperty("bytes_for_each_byte_of_contents",
                 std::to_string(static_cast<double>(taken) / static_cast<double>(contents)));
  EXPECT_GT(contents, 6'000'000U);
  EXPECT_GE(taken, contents);
  EXPECT_LE(taken, contents + contents / 4);
  std::remove(path.c_str());
}

}  // namespace

}  // namespace fabscan
