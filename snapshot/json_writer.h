#ifndef FABSCAN_SNAPSHOT_JSON_WRITER_H
#define FABSCAN_SNAPSHOT_JSON_WRITER_H

#include <sys/types.h>

#include <cassert>
#include <cstddef>
#include <ostream>
#include <string_view>
#include <vector>

#include "snapshot/json_piece.h"

namespace fabscan {

/// Writes buffered JSON text: adds commas, no blanks, independent of the locale.
class JsonWriter {
 public:
  /// The size of each write to the stream: whole pages, at aligned positions.
  static constexpr std::size_t kPieceBytes = std::size_t{1} << 20U;
  /// The maximum size for `AtOnce`.
  static constexpr std::size_t kMostAtOnce = std::size_t{1} << 17U;

  explicit JsonWriter(std::ostream& out) : out_(out), buffer_(kPieceBytes + kMostAtOnce) {}

  void BeginObject() {
    AtOnce([](JsonPiece& to) { to.BeginObject(); });
  }
  void EndObject() {
    AtOnce([](JsonPiece& to) { to.EndObject(); });
  }
  void BeginArray() {
    AtOnce([](JsonPiece& to) { to.BeginArray(); });
  }
  void EndArray() {
    AtOnce([](JsonPiece& to) { to.EndArray(); });
  }
  /// Names the next value of an object. `key` is short, and needs no escapes.
  void Key(std::string_view key) {
    AtOnce([&](JsonPiece& to) { to.Key(key); });
  }

  void Number(u_int64_t value);
  void Bool(bool value) {
    AtOnce([&](JsonPiece& to) { to.Bool(value); });
  }
  /// Bytes that are not UTF-8 are replaced by U+FFFD.
  void String(std::string_view text);
  /// A value that is JSON text already.
  void Raw(std::string_view json);
  void EndLine() {
    AtOnce([](JsonPiece& to) { to.EndLine(); });
  }

  /// Writes several values in one step: `compose` writes at most `kMostAtOnce` bytes to the piece
  /// that it gets.
  template <class Compose>
  void AtOnce(Compose&& compose) {
    if (size_ >= kPieceBytes) WritePiece();
    JsonPiece piece(buffer_.data() + size_, fresh_);
    compose(piece);
    assert(piece.end() <= buffer_.data() + size_ + kMostAtOnce);
    size_ = static_cast<std::size_t>(piece.end() - buffer_.data());
    fresh_ = piece.fresh();
  }
  /// Whether a text needs no escapes, and is a word for `AtOnce`, with room for more.
  static bool IsWord(std::string_view text);

  void Flush();

 private:
  void WritePiece();
  void Append(std::string_view text);
  void AppendEscaped(char c);

  std::ostream& out_;
  std::vector<char> buffer_;
  std::size_t size_ = 0;  // bytes in the buffer
  bool fresh_ = true;     // the next value needs no comma
};

}  // namespace fabscan

#endif
