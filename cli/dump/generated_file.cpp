#include "cli/dump/generated_file.h"

#include <fmt/format.h>

#include <charconv>

#include "simulator/buildable/buildable_source.h"

namespace fabscan {

namespace {

constexpr std::string_view kOpensNode = "// Node Type: ";
constexpr std::string_view kBeforeGuid = ", Node GUID: 0x";
constexpr std::string_view kOpensFunction = "void ";
constexpr std::string_view kClosesHead = "() {";
constexpr std::string_view kClosesFunction = "}";
constexpr std::string_view kErrorMark = "#error ";
constexpr std::string_view kCommentMark = "//";

bool StartsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

bool EndsWith(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

/// Takes the first line off `rest` and returns it without its line end.
std::string_view TakeLine(std::string_view& rest) {
  const std::size_t end = rest.find('\n');
  const std::string_view line = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  return line;
}

/// The GUID in the line that opens a node.
std::optional<u_int64_t> GuidIn(std::string_view line) {
  const std::size_t place = line.find(kBeforeGuid);
  if (place == std::string_view::npos) return std::nullopt;
  line.remove_prefix(place + kBeforeGuid.size());
  u_int64_t guid = 0;
  const bool read = std::from_chars(line.begin(), line.end(), guid, 16).ec == std::errc{};
  return read ? std::optional(guid) : std::nullopt;
}

std::string_view WithoutIndent(std::string_view line) {
  const std::size_t first = line.find_first_not_of(' ');
  return first == std::string_view::npos ? std::string_view{} : line.substr(first);
}

}  // namespace

bool GeneratedFileReader::readLine() {
  if (!std::getline(text_, line_)) return false;
  ++number_;
  return true;
}

void GeneratedFileReader::refuse(const char* expected) const {
  throw GeneratedFileError(fmt::format("line {}: {} expected", number_, expected));
}

bool GeneratedFileReader::Next(GeneratedNode& node) {
  while (!at_node_ && readLine()) at_node_ = StartsWith(line_, kOpensNode);
  if (!at_node_) return false;
  at_node_ = false;

  node = GeneratedNode();
  const std::optional<u_int64_t> guid = GuidIn(line_);
  if (!guid) refuse("a node's GUID");
  node.guid = *guid;
  if (!readLine()) refuse("a node's name");
  while (readLine()) {
    at_node_ = StartsWith(line_, kOpensNode);
    if (at_node_) break;
    if (StartsWith(line_, kOpensFunction)) {
      readFunction(node);
    } else if (!line_.empty()) {
      refuse("a function");
    }
  }
  return true;
}

void GeneratedFileReader::readFunction(GeneratedNode& node) {
  // void PREFIX::CLASS::NAME() {
  const std::string_view head(line_);
  const std::size_t class_place = head.find("::");
  const std::size_t name_place = head.rfind("::");
  if (name_place == std::string_view::npos || name_place == class_place ||
      !EndsWith(head, kClosesHead)) {
    refuse("'void PREFIX::CLASS::NAME() {'");
  }
  node.class_word = head.substr(class_place + 2, name_place - class_place - 2);
  GeneratedFunction& function = node.functions.emplace_back();
  function.name = head.substr(name_place + 2, head.size() - kClosesHead.size() - name_place - 2);
  function.line = number_;
  for (;;) {
    if (!readLine()) refuse("the function's closing brace");
    if (line_ == kClosesFunction) break;
    function.body += line_;
    function.body += '\n';
  }
  function.kind = KindOfBody(function.body);
}

std::optional<u_int64_t> GuidOfLastNode(std::string_view text) {
  const std::size_t place = text.rfind('\n' + std::string(kOpensNode));
  if (place == std::string_view::npos) return std::nullopt;
  text.remove_prefix(place + 1);
  const std::size_t end = text.find('\n');
  // The line may be written in part.
  return end == std::string_view::npos ? std::nullopt : GuidIn(text.substr(0, end));
}

BodyKind KindOfBody(std::string_view body) {
  bool has_statement = false;
  while (!body.empty()) {
    const std::string_view line = WithoutIndent(TakeLine(body));
    if (StartsWith(line, kErrorMark)) return BodyKind::kError;
    has_statement = has_statement || (!line.empty() && !StartsWith(line, kCommentMark));
  }
  return has_statement ? BodyKind::kBlock : BodyKind::kComment;
}

std::string_view HandReason(const GeneratedFunction& function) {
  return ReasonForEdit(function.name, function.body);
}

bool NeedsHand(const GeneratedFunction& function) { return !HandReason(function).empty(); }

std::string WithoutName(std::string_view diagnostic, const std::string& name) {
  std::string reason(diagnostic);
  const std::string named = "node=" + name;
  const std::size_t place = reason.find(named);
  if (place != std::string::npos) reason.erase(place + 4, named.size() - 4);
  return reason;
}

std::string_view ReasonOfBody(std::string_view body) {
  const BodyKind kind = KindOfBody(body);
  if (kind == BodyKind::kBlock) return {};
  const std::string_view mark = kind == BodyKind::kError ? kErrorMark : kCommentMark;
  while (!body.empty()) {
    std::string_view line = WithoutIndent(TakeLine(body));
    if (!StartsWith(line, mark)) continue;
    line.remove_prefix(mark.size());
    line = WithoutIndent(line);
    // Some messages close their quote and some do not.
    if (kind == BodyKind::kError && StartsWith(line, "\"")) line.remove_prefix(1);
    if (kind == BodyKind::kError && EndsWith(line, "\"")) line.remove_suffix(1);
    return line;
  }
  return {};
}

}  // namespace fabscan
