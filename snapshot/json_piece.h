#ifndef FABSCAN_SNAPSHOT_JSON_PIECE_H
#define FABSCAN_SNAPSHOT_JSON_PIECE_H

#include <sys/types.h>

#include <cstddef>
#include <cstring>
#include <string_view>

#include "snapshot/number_text.h"

namespace fabscan {

/// Writes JSON text into a buffer with enough space for all of it: adds commas, no blanks, checks
/// nothing. When inlined, constant text becomes a few moves.
class JsonPiece {
 public:
  /// `fresh`: the first value needs no comma.
  JsonPiece(char* at, bool fresh) : at_(at), fresh_(fresh) {}

  /// The current end of the text, and whether the next value needs no comma.
  char* end() const { return at_; }
  bool fresh() const { return fresh_; }

  JsonPiece& BeginObject() { return Open('{'); }
  JsonPiece& EndObject() { return Close('}'); }
  JsonPiece& BeginArray() { return Open('['); }
  JsonPiece& EndArray() { return Close(']'); }
  /// Names the next value of an object. `key` needs no escapes.
  JsonPiece& Key(std::string_view key) {
    Word(key);
    *at_++ = ':';
    fresh_ = true;
    return *this;
  }

  JsonPiece& Number(u_int32_t value) { return Value(PutDecimal(Begin(), value)); }
  /// `"0x..."`, with at least `digits` digits, 1 to 16.
  JsonPiece& Hex(u_int64_t value, unsigned digits = 1) {
    return Value(PutHex(Begin(), value, digits));
  }
  JsonPiece& Bool(bool value) {
    Begin();
    return value ? Put("true") : Put("false");
  }
  /// Text that needs no escapes.
  JsonPiece& Word(std::string_view text) {
    *Begin() = '"';
    ++at_;
    Put(text);
    *at_++ = '"';
    return *this;
  }

  /// Begins a value that the caller writes to the returned address, and ends with its end address.
  char* Begin() {
    if (!fresh_) *at_++ = ',';
    fresh_ = false;
    return at_;
  }
  JsonPiece& Value(char* end) {
    at_ = end;
    return *this;
  }

  JsonPiece& EndLine() {
    *at_++ = '\n';
    fresh_ = true;
    return *this;
  }

 private:
  JsonPiece& Open(char bracket) {
    *Begin() = bracket;
    ++at_;
    fresh_ = true;
    return *this;
  }
  JsonPiece& Close(char bracket) {
    *at_++ = bracket;
    fresh_ = false;
    return *this;
  }
  JsonPiece& Put(std::string_view text) {
    if (!text.empty()) std::memcpy(at_, text.data(), text.size());
    at_ += text.size();
    return *this;
  }

  char* at_;
  bool fresh_;
};

}  // namespace fabscan

#endif
