#include "snapshot/reader.h"

#include <simdjson.h>

#include "model/links.h"
#include "snapshot/line_decoder.h"

namespace fabscan {

namespace {

static_assert(LineReader::kPadding >= simdjson::SIMDJSON_PADDING);

std::string Complaint(simdjson::error_code error) {
  switch (error) {
    case simdjson::UTF8_ERROR:
      return "the line is not UTF-8 text; save it as UTF-8";
    case simdjson::STRING_ERROR:
      return "not JSON: text with an escape that does not exist; correct it";
    case simdjson::UNCLOSED_STRING:
      return "not JSON: text without its closing quote; correct it";
    case simdjson::UNESCAPED_CHARS:
      return "not JSON: a control character within text; write it as \\u00XX";
    case simdjson::NUMBER_ERROR:
      return "not JSON: a malformed number; correct it";
    default:
      return "not JSON: brackets, commas or colons are missing or too many; correct them";
  }
}

bool IsBlank(std::string_view line) {
  return line.find_first_not_of(" \t\r") == std::string_view::npos;
}

/// Reads line by line; every error leaves with the file's name and the line's number.
class SnapshotReader {
 public:
  SnapshotReader(ByteSource& source, const std::string& name, Fabscan& fabscan,
                 const SnapshotReadOptions& options, std::size_t chunk)
      : lines_(source, options.max_line_bytes, chunk),
        name_(name),
        fabric_(fabscan.discovered_fabric),
        guids_(options.guids),
        decoder_(fabscan, options) {}

  SnapshotHeader Read() {
    const std::optional<Line> first = Next();
    if (!first) Fail(kNoSnapshot);
    SnapshotHeader header;
    Parse(*first, [&](json::document& line) { header = decoder_.DecodeHeader(line); });
    bool ended = false;
    while (const std::optional<Line> line = Next()) {
      if (ended) Fail("text follows the last line, {\"end\": true, ...}; remove it");
      Parse(*line, [&](json::document& parsed) { ended = decoder_.DecodeNodeOrEnd(parsed); });
    }
    if (!ended) {
      Fail(
          "the file is truncated: its last line, {\"end\": true, \"nodes\": N}, is missing; use "
          "the complete file");
    }
    CheckLinks();
    return header;
  }

 private:
  std::optional<Line> Next() {
    try {
      return lines_.Next();
    } catch (const SourceError& error) {
      Fail(error.what());
    }
  }

  void CheckLinks() const {
    const auto fault = FindLinkContradiction(fabric_, [this](const IBNode& node) {
      return guids_ == nullptr || guids_->count(node.guid) != 0;
    });
    if (!fault) return;
    // Each node has a line; the first line is the header.
    FailInLine(fault->node->createIndex + std::size_t{2},
               "port " + std::to_string(fault->port->num) + ": peer: " + fault->text);
  }

  template <class Decode>
  void Parse(const Line& line, const Decode& decode) {
    if (IsBlank(line.text)) Fail("the line is empty; remove it");
    try {
      json::document document;
      const simdjson::padded_string_view text(line.text.data(), line.text.size(), line.readable);
      if (const simdjson::error_code error = parser_.iterate(text).get(document)) {
        throw simdjson::simdjson_error(error);
      }
      decode(document);
    } catch (const Malformed& malformed) {
      FailAtKey(malformed.what());
    } catch (const simdjson::simdjson_error& error) {
      if (error.error() == simdjson::MEMALLOC) throw std::bad_alloc();
      if (lines_.number() == 1) Fail(kNoSnapshot);
      if (!line.ended) Fail("unexpected end of file in this line; use the complete file");
      FailAtKey(Complaint(error.error()));
    }
  }

  [[noreturn]] void FailAtKey(const std::string& problem) const {
    const std::string path = decoder_.path().text();
    Fail(path.empty() ? problem : path + ": " + problem);
  }

  [[noreturn]] void Fail(const std::string& problem) const { FailInLine(lines_.number(), problem); }
  [[noreturn]] void FailInLine(std::size_t line, const std::string& problem) const {
    throw SnapshotError(name_ + ":" + std::to_string(line) + ": " + problem);
  }

  LineReader lines_;
  const std::string& name_;
  const IBFabric& fabric_;
  const std::set<u_int64_t>* const guids_;
  LineDecoder decoder_;
  simdjson::ondemand::parser parser_;
};

}  // namespace

SnapshotHeader ReadSnapshotFrom(ByteSource& source, const std::string& name, Fabscan& fabscan,
                                const SnapshotReadOptions& options, std::size_t chunk) {
  return SnapshotReader(source, name, fabscan, options, chunk).Read();
}

SnapshotHeader ReadSnapshot(const std::string& path, Fabscan& fabscan,
                            const SnapshotReadOptions& options) {
  const std::string name = path == "-" ? "standard input" : path;
  std::unique_ptr<ByteSource> source;
  try {
    source = OpenFileSource(path);
    if (options.progress) source = Watched(std::move(source), options.progress);
    source = Decompressed(std::move(source));
  } catch (const SourceError& error) {
    throw SnapshotError(name + ": " + error.what());
  }
  return ReadSnapshotFrom(*source, name, fabscan, options);
}

}  // namespace fabscan
