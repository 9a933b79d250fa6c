#include "generated_text.h"

#include <sstream>
#include <string_view>

namespace fabscan {

namespace {

constexpr char kTakenOut[] = "// (taken out)";

bool BeginsWith(std::string_view text, std::string_view beginning) {
  return text.substr(0, beginning.size()) == beginning;
}

bool EndsWith(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

/// Goes through the file line by line; what must go is changed in place.
class Copyist {
 public:
  explicit Copyist(CompilableCopy& copy) : copy_(copy) {}

  void Take(std::string& line) {
    ++number_;
    if (BeginsWith(line, "void ")) return openFunction(line);
    if (BeginsWith(line, "}")) return function_.clear();
    if (function_.empty()) return;
    if (BeginsWith(line, "#error")) {
      copy_.refusals.push_back(at(line));
      line = kTakenOut;
    } else if (function_ == "setVSReductionManagerClassPortInfo") {
      takeAddress(line);
    } else if (function_ == "setWrenPushReductionCounters") {
      takePushCounters(line);
    }
  }

 private:
  GeneratedLine at(const std::string& line) const { return {number_, function_, line}; }

  void addHandPlace(const std::string& line, const char* what) {
    copy_.hand_places.push_back({at(line), what});
  }

  /// void PREFIX::KIND::FUNCTION() {
  void openFunction(std::string_view line) {
    constexpr std::string_view kEnd = "() {";
    const std::size_t name = line.rfind("::");
    const std::size_t kind =
        name == 0 || name == line.npos ? line.npos : line.rfind("::", name - 1);
    if (kind == line.npos || !EndsWith(line, kEnd)) return;
    copy_.kind = line.substr(kind + 2, name - kind - 2);
    function_ = line.substr(name + 2, line.size() - name - 2 - kEnd.size());
    copy_.functions.insert(function_);
    branch_named_ = false;
  }

  void takeAddress(std::string& line) {
    constexpr std::string_view kAddress = "    mad_buffer.RedirectGID = 0x0x";
    if (!BeginsWith(line, kAddress)) return;
    // Without the address, which is another one every time.
    addHandPlace(std::string(kAddress) + "...;",
                 "the redirect GID is written as an address; write the GID's two words instead, or "
                 "take the line out");
    line = kTakenOut;
  }

  void takePushCounters(std::string& line) {
    if (BeginsWith(line, "        SMP_TarnExtPortInfo_pack(&mad_buffer")) {
      addHandPlace(line, "packs a record that the loop does not declare; take the line out");
      line = kTakenOut;
    } else if (BeginsWith(line, "        case ") || line == "        default:") {
      if (!branch_named_) {
        addHandPlace(line, "the branches declare the same names; put each into braces");
      }
      branch_named_ = true;
      line += " {";
    } else if (line == "            break;") {
      line = "            } break;";
    } else if (line == "        }") {
      line = "        }}";
    }
  }

  CompilableCopy& copy_;
  std::size_t number_ = 0;
  std::string function_;
  bool branch_named_ = false;
};

}  // namespace

CompilableCopy MakeCompilable(const std::string& text) {
  CompilableCopy copy;
  Copyist copyist(copy);
  std::istringstream lines(text);
  std::string line;
  while (std::getline(lines, line)) {
    copyist.Take(line);
    copy.text += line + '\n';
  }
  return copy;
}

}  // namespace fabscan
