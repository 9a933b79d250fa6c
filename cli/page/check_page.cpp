#include "cli/page/check_page.h"

#include <fmt/format.h>
#include <sodium.h>

#include <algorithm>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <tuple>

#include "cli/check/check_marks.h"
#include "cli/check/check_report.h"
#include "cli/files/standard_streams.h"
#include "cli/page/page_files.h"
#include "model/guid_text.h"
#include "snapshot/json_writer.h"

namespace fabscan {

namespace {

std::string_view FileText(std::string_view name) {
  for (const PageFile* file = kPageFiles; file->name != nullptr; ++file) {
    if (name == file->name) return file->text;
  }
  throw std::logic_error("no such file of the page");
}

/// The source expression by which a Content-Security-Policy allows an inline script or style.
std::string PolicyHash(std::string_view text) {
  unsigned char hash[crypto_hash_sha256_BYTES];
  crypto_hash_sha256(hash, reinterpret_cast<const unsigned char*>(text.data()), text.size());
  char base64[sodium_base64_ENCODED_LEN(sizeof hash, sodium_base64_VARIANT_ORIGINAL)];
  sodium_bin2base64(base64, sizeof base64, hash, sizeof hash, sodium_base64_VARIANT_ORIGINAL);
  return fmt::format("'sha256-{}'", base64);
}

/// JSON text that is safe in a script element: it contains no tag, comment or line end of a script.
std::string SafeInScript(const std::string& json) {
  constexpr std::string_view kSeparators = "\xE2\x80";  // start of U+2028 and U+2029
  std::string safe;
  safe.reserve(json.size());
  for (std::size_t i = 0; i < json.size(); ++i) {
    const bool is_separator = json.compare(i, 2, kSeparators) == 0 && i + 2 < json.size() &&
                              (json[i + 2] == '\xA8' || json[i + 2] == '\xA9');
    if (is_separator) {
      safe += json[i + 2] == '\xA8' ? "\\u2028" : "\\u2029";
      i += 2;
    } else if (json[i] == '<') {
      safe += "\\u003c";
    } else {
      safe += json[i];
    }
  }
  return safe;
}

/// The template with each `{{NAME}}` replaced; replacements are not scanned again.
void WriteFilled(std::ostream& out, std::string_view page,
                 const std::map<std::string_view, std::string_view>& values) {
  for (;;) {
    const std::size_t begin = page.find("{{");
    out << page.substr(0, begin);
    if (begin == std::string_view::npos) return;
    const std::size_t end = page.find("}}", begin);
    out << values.at(page.substr(begin + 2, end - begin - 2));
    page.remove_prefix(end + 2);
  }
}

bool IsHexDigit(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'); }

/// A JSON object in a string.
class Json : public JsonWriter {
 public:
  explicit Json(std::ostream& out) : JsonWriter(out) {}
  void Text(std::string_view key, std::string_view text) {
    Key(key);
    String(text);
  }
  template <class Texts>
  void List(std::string_view key, const Texts& texts) {
    Key(key);
    BeginArray();
    for (const auto& text : texts) String(text);
    EndArray();
  }
};

/// Every cause by its number, with the remedy; the first is empty.
void WriteCauses(Json& json, const CheckResult& result) {
  json.Key("causes");
  json.BeginArray();
  for (std::size_t number = 0; number <= result.CauseCount(); ++number) {
    const Cause* cause = result.cause(number);
    json.BeginObject();
    json.Text("text", cause == nullptr ? "" : cause->text);
    json.Text("remedy", cause == nullptr ? "" : RemedyText(*cause));
    json.EndObject();
  }
  json.EndArray();
}

/// A reason why the build fails: a cause with its functions, or a shared class.
void WriteStops(Json& json, const std::vector<CauseGroup>& groups) {
  json.Key("stops");
  json.BeginArray();
  for (const CauseGroup& group : groups) {
    if (!group.StopsBuild()) continue;
    json.BeginObject();
    json.Key("cause");
    json.Number(group.number);
    json.Key("mark");
    json.Number(static_cast<std::size_t>(&RowOf(group.mark) - kMarkRows));
    json.Text("text", group.cause.text);
    json.Text("remedy", RemedyText(group.cause));
    if (group.number == 0) json.Text("class", group.cause.key);
    json.Key("functions");
    json.BeginArray();
    for (const std::size_t function : group.functions) json.Number(function);
    json.EndArray();
    json.Key("nodes");
    json.Number(group.nodes.size());
    json.EndObject();
  }
  json.EndArray();
}

}  // namespace

std::size_t NumberedTexts::Number(std::string text) {
  const auto [found, is_new] = numbers_.emplace(std::move(text), all_.size());
  if (is_new) all_.push_back(&found->first);
  return found->second;
}

TextParts TakeApart(std::string_view text, std::string_view node_name) {
  TextParts parts;
  for (std::size_t i = 0; i < text.size();) {
    if (!node_name.empty() && text.compare(i, node_name.size(), node_name) == 0) {
      parts.frame += TextParts::kNameHole;
      i += node_name.size();
      continue;
    }
    const char c = text[i++];
    if (c == TextParts::kValueHole || c == TextParts::kNameHole) {
      parts.frame += "\xEF\xBF\xBD";  // cannot occur: names are harmless
      continue;
    }
    parts.frame += c;
    if (c != 'x' || i < 2 || text[i - 2] != '0') continue;
    std::size_t end = i;
    while (end < text.size() && IsHexDigit(text[end])) ++end;
    if (end == i) continue;
    if (!parts.values.empty()) parts.values += ' ';
    parts.values += text.substr(i, end - i);
    parts.frame += TextParts::kValueHole;
    i = end;
  }
  return parts;
}

void CheckPage::Add(const IBNode& node, const std::vector<std::string>& bodies) {
  std::vector<Text>& texts = texts_[&node];
  for (const std::string& body : bodies) {
    TextParts parts = TakeApart(body, node.name);
    texts.push_back({NumberOfFrame(parts.frame), values_.Number(std::move(parts.values))});
  }
}

/// Frames share most of their lines; they differ in the named capabilities.
std::size_t CheckPage::NumberOfFrame(std::string_view frame) {
  std::string numbers;
  for (std::size_t begin = 0; begin <= frame.size();) {
    const std::size_t end = std::min(frame.find('\n', begin), frame.size());
    const std::size_t line = lines_.Number(std::string(frame.substr(begin, end - begin)));
    numbers += (begin == 0 ? "" : " ") + std::to_string(line);
    begin = end + 1;
  }
  return frames_.Number(std::move(numbers));
}

std::string CheckPage::Data(const CheckReport& report) const {
  const CheckResult& result = report.result;
  std::ostringstream text;
  Json json(text);
  json.BeginObject();
  json.Text("snapshot", InputName(report.snapshot));
  json.Text("verdict", Verdict(result));
  json.Key("builds");
  json.Bool(result.Builds());
  json.Key("marks");
  json.BeginArray();
  for (const MarkRow& row : kMarkRows) {
    json.BeginObject();
    json.Text("sign", row.sign);
    json.Text("word", row.word);
    json.Text("meaning", row.meaning);
    json.EndObject();
  }
  json.EndArray();
  json.List("functions", result.functionNames());
  WriteCauses(json, result);
  WriteStops(json, report.groups);

  // Equal cells are written once.
  using CellNumbers = std::tuple<std::size_t, std::size_t, std::size_t, std::size_t, std::size_t>;
  std::map<CellNumbers, std::size_t> cells;
  NumberedTexts reasons;
  json.Key("nodes");
  json.BeginArray();
  for (const CheckedNode& node : result.nodes()) {
    const std::vector<Text>& texts = texts_.at(node.node);
    json.BeginArray();
    json.String(node.node->name);
    json.String(GuidText(node.node->guid));
    json.String(node.class_word);
    json.BeginArray();
    for (std::size_t f = 0; f < texts.size(); ++f) {
      const CheckedFunction& function = node.functions[f];
      const std::size_t reason = reasons.Number(std::string(result.reason(function.reason)));
      const auto mark = static_cast<std::size_t>(&RowOf(function.mark) - kMarkRows);
      const Text& written = texts[f];
      json.Number(
          cells
              .emplace(CellNumbers(mark, function.cause, reason, written.frame, written.values),
                       cells.size())
              .first->second);
    }
    json.EndArray();
    json.EndArray();
    json.Flush();
  }
  json.EndArray();

  std::vector<const CellNumbers*> ordered(cells.size());
  for (const auto& [cell, number] : cells) ordered[number] = &cell;
  json.Key("cells");
  json.BeginArray();
  for (const auto* cell : ordered) {
    json.BeginArray();
    std::apply([&json](auto... numbers) { (json.Number(numbers), ...); }, *cell);
    json.EndArray();
  }
  json.EndArray();
  const auto list = [&json](std::string_view key, const NumberedTexts& texts) {
    json.Key(key);
    json.BeginArray();
    for (const std::string* each : texts.all()) json.String(*each);
    json.EndArray();
  };
  list("reasons", reasons);
  list("lines", lines_);
  list("frames", frames_);
  list("values", values_);
  json.EndObject();
  json.Flush();
  return SafeInScript(text.str());
}

void CheckPage::Write(std::ostream& out, const CheckReport& report) const {
  const std::string_view style = FileText("page.css");
  const std::string_view script = FileText("page.js");
  const std::string style_hash = PolicyHash(style);
  const std::string script_hash = PolicyHash(script);
  const std::string data = Data(report);
  WriteFilled(out, FileText("page.html"),
              {{"STYLE_HASH", style_hash},
               {"SCRIPT_HASH", script_hash},
               {"STYLE", style},
               {"SCRIPT", script},
               {"DATA", data}});
}

}  // namespace fabscan
