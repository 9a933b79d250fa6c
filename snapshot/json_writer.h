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

/// Writes JSON text through a buffer of its own: commas by itself, no blanks, no locale.
class JsonWriter {
 public:
  /// What the stream is given at a time: whole pages, at places that are a multiple of it.
  static constexpr std::size_t kPieceBytes = std::size_t{1} << 20U;
  /// What `AtOnce` has room for.
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
  /// Text that is not UTF-8 has its bad bytes replaced by U+FFFD.
  void String(std::string_view text);
  void EndLine() {
    AtOnce([](JsonPiece& to) { to.EndLine(); });
  }

  /// Writes several of these at once: `compose` puts at most `kMostAtOnce` bytes into the piece
  /// that it is given.
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
  std::size_t size_ = 0;  // of what is in the buffer
  bool fresh_ = true;     // nothing stands before the next value that a comma would follow
};

}  // namespace fabscan

#endif
