#ifndef FABSCAN_SNAPSHOT_JSON_PIECE_H
#define FABSCAN_SNAPSHOT_JSON_PIECE_H

#include <sys/types.h>

#include <cstddef>
#include <cstring>
#include <string_view>

#include "snapshot/number_text.h"

namespace fabscan {

/// A piece of JSON text, put at a place where there is room for all of it: commas by itself, no
/// blanks, nothing checked. Inlined, all of its constant text is a few moves.
class JsonPiece {
 public:
  /// `fresh` where nothing stands before the piece that a comma would follow.
  JsonPiece(char* at, bool fresh) : at_(at), fresh_(fresh) {}

  /// Where the piece ends so far, and whether the next value needs no comma.
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
  /// `"0x..."`, with at least `digits` digits, of which there are 1 to 16.
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

  /// Begins a value that the caller puts at the returned place, up to the end that it then gives.
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
