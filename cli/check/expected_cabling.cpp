#include "cli/check/expected_cabling.h"

#include <fmt/format.h>

#include <iostream>
#include <string_view>
#include <vector>

#include "cli/files/read_snapshot.h"
#include "cli/files/standard_streams.h"
#include "cli/output/counted.h"
#include "cli/output/json_result.h"
#include "cli/output/link_text.h"
#include "fabrics/cabling.h"
#include "snapshot/byte_source.h"

namespace fabscan {

namespace {

constexpr std::size_t kMostPlanBytes = std::size_t{64} << 20U;

std::string Text(const LinkRate& rate) {
  return fmt::format("{} {}", rate.width_text(), rate.speed_text());
}

std::string ReadAll(const std::string& path) {
  std::string text;
  try {
    const auto source = Decompressed(OpenFileSource(path));
    std::vector<char> chunk(std::size_t{1} << 16U);
    while (const std::size_t got = source->Read(chunk.data(), chunk.size())) {
      text.append(chunk.data(), got);
      if (text.size() > kMostPlanBytes) throw SourceError("is larger than 64 MiB; split the plan");
    }
  } catch (const SourceError& error) {
    throw CommandError(fmt::format("{}: {}", InputName(path), error.what()));
  }
  return text;
}

bool IsSnapshot(const std::string& path) {
  try {
    const auto source = Decompressed(OpenFileSource(path));
    char first = 0;
    return source->Read(&first, 1) == 1 && first == '{';
  } catch (const SourceError& error) {
    throw CommandError(fmt::format("{}: {}", InputName(path), error.what()));
  }
}

void ReadPlan(const std::string& path, const SnapshotReadOptions& reading, const Fabscan& actual,
              Fabscan& plan) {
  if (IsSnapshot(path)) {
    ReadSnapshotWithProgress(path, plan, reading);
    return;
  }
  try {
    ReadLinkTable(ReadAll(path), actual, plan);
  } catch (const PlanError& error) {
    throw CommandError(fmt::format("{}: {}", InputName(path), error.what()));
  }
}

void PrintText(const CablingDifferences& differences) {
  for (const LinkDifference& link : differences.links) {
    switch (link.change) {
      case LinkDifference::Change::kMoved:
        std::cout << fmt::format("miswired: {} is linked to {}, planned {}\n", EndText(link.end),
                                 EndText(link.after), EndText(link.before));
        break;
      case LinkDifference::Change::kLost:
        std::cout << fmt::format("missing: {} to {}\n", EndText(link.end), EndText(link.before));
        break;
      case LinkDifference::Change::kAdded:
        std::cout << fmt::format("unexpected: {} to {}\n", EndText(link.end), EndText(link.after));
    }
  }
  for (const SlowLink& link : differences.slow) {
    std::cout << fmt::format("slow: {} to {} uses {}, planned {}\n", EndText(link.end),
                             EndText(link.other), Text(link.actual), Text(link.planned));
  }
  for (const auto& [one, other] : differences.swaps) {
    std::cout << fmt::format("crossed: exchange the cables in {} and {}\n", EndText(one),
                             EndText(other));
  }
  const std::size_t count = differences.links.size() + differences.slow.size();
  if (count == 0) {
    std::cout << "all links are as planned\n";
  } else {
    std::cout << fmt::format("\n{} from the plan\n", Counted(count, "difference"));
  }
}

class CablingJson {
 public:
  void Print(const std::string& snapshot, const std::string& plan,
             const CablingDifferences& differences) {
    json_.Text("snapshot", snapshot);
    json_.Text("plan", plan);
    json_.BeginObjects("links");
    for (const LinkDifference& link : differences.links) {
      json_.BeginObject();
      json_.Text("is", link.change == LinkDifference::Change::kMoved  ? "miswired"
                       : link.change == LinkDifference::Change::kLost ? "missing"
                                                                      : "unexpected");
      WriteEnd(json_, "end", link.end);
      if (link.change != LinkDifference::Change::kAdded) WriteEnd(json_, "planned", link.before);
      if (link.change != LinkDifference::Change::kLost) WriteEnd(json_, "actual", link.after);
      json_.EndObject();
    }
    json_.EndArray();
    json_.BeginObjects("slow");
    for (const SlowLink& link : differences.slow) {
      json_.BeginObject();
      WriteEnd(json_, "end", link.end);
      WriteEnd(json_, "other", link.other);
      json_.Text("planned", Text(link.planned));
      json_.Text("actual", Text(link.actual));
      json_.EndObject();
    }
    json_.EndArray();
    json_.BeginObjects("crossed");
    for (const auto& [one, other] : differences.swaps) {
      json_.BeginObject();
      WriteEnd(json_, "one", one);
      WriteEnd(json_, "other", other);
      json_.EndObject();
    }
    json_.EndArray();
    json_.Truth("asPlanned", differences.none());
  }

 private:
  JsonResult json_;
};

}  // namespace

ExitStatus CheckCabling(const std::string& snapshot, const std::string& plan, bool json,
                        const SnapshotReadOptions& reading) {
  Fabscan actual;
  ReadSnapshotWithProgress(snapshot, actual, reading);
  RequireLinks(snapshot, actual);
  Fabscan planned;
  ReadPlan(plan, reading, actual, planned);
  RequireLinks(plan, planned);
  const CablingDifferences differences = CompareCabling(planned, actual);
  if (json) {
    CablingJson().Print(snapshot, plan, differences);
  } else {
    PrintText(differences);
  }
  return differences.none() ? kDone : kIncomplete;
}

}  // namespace fabscan
