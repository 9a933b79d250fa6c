#ifndef FABSCAN_SIMULATOR_VERIFICATION_GENERATED_TEXT_H
#define FABSCAN_SIMULATOR_VERIFICATION_GENERATED_TEXT_H

#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace fabscan {

/// A line of a generated file that no compiler takes.
struct GeneratedLine {
  std::size_t number = 0;  // counted from 1
  std::string function;
  std::string text;
};

/// A place that a generated file leaves to the hand of whoever compiles it.
struct HandPlace {
  GeneratedLine line;
  std::string what;  // what stands in the way, and what to do
};

/// A copy of a generated file, made so that it compiles. Lines keep their numbers.
struct CompilableCopy {
  std::string text;
  std::string kind;                     // class of the node: SW, RTR, HCA, AN or Unknown
  std::set<std::string> functions;      // those that the file defines
  std::vector<GeneratedLine> refusals;  // #error lines
  std::vector<HandPlace> hand_places;
};

/// Takes out what does not compile by design, and tells what it took out. `text` is a generated
/// file of one node.
CompilableCopy MakeCompilable(const std::string& text);

}  // namespace fabscan

#endif
