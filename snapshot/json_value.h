#ifndef FABSCAN_SNAPSHOT_JSON_VALUE_H
#define FABSCAN_SNAPSHOT_JSON_VALUE_H

#include <simdjson.h>

#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "model/suggestion.h"
#include "model/words.h"
#include "snapshot/number_text.h"

namespace fabscan {

namespace json = simdjson::ondemand;

/// An error in a line of a snapshot, with the remedy; code that knows the position adds it.
class Malformed : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The position of the decoder in a line. An error does not change the path, so that the position
/// can be reported.
class KeyPath {
 public:
  /// `key` must outlive the path.
  void Enter(std::string_view key) { steps_[depth_++] = {key, 0}; }
  void EnterElement(std::size_t index) { steps_[depth_++] = {{}, index}; }
  void Leave() { --depth_; }
  void Clear() { depth_ = 0; }

  /// `ports[3].attributes.SMP_PortInfo.LMC`; empty for the object of the line.
  std::string text() const {
    std::string text;
    for (std::size_t i = 0; i < depth_; ++i) {
      if (steps_[i].key.empty()) {
        text += '[' + std::to_string(steps_[i].index) + ']';
      } else {
        if (!text.empty()) text += '.';
        text += steps_[i].key;
      }
    }
    return text;
  }

 private:
  struct Step {
    std::string_view key;  // empty for an element of a list
    std::size_t index;
  };
  static constexpr std::size_t kDeepest = 16;  // more levels than the format has

  std::array<Step, kDeepest> steps_{};
  std::size_t depth_ = 0;
};

/// The value of a result. Throws simdjson::simdjson_error for text that is not JSON.
template <class T>
T Take(simdjson::simdjson_result<T> result) {
  T value;
  if (const simdjson::error_code error = std::move(result).get(value)) {
    throw simdjson::simdjson_error(error);
  }
  return value;
}

/// The value of a JSON text, with escapes resolved. Throws simdjson::simdjson_error for an escape
/// that does not exist.
///
/// All texts are decoded here, not by simdjson's getters: those unescape into a buffer without
/// checking that it could be allocated.
std::string Unescaped(json::raw_json_string text);

// Values of the type that the key asks for. All throw Malformed for another type, or where the
// value is not one that the key can have, and simdjson::simdjson_error for text that is not JSON.

json::object TakeObject(json::value value);
json::array TakeArray(json::value value);
bool TakeBool(json::value value);
std::string TakeText(json::value value);
/// A name as reported by the device: text, or `{"escaped": text}`, in which %XX is a byte.
std::string TakeName(json::value value);

/// An object of any content, as text without blanks.
std::string TakeExtra(json::value value);

/// Throws Malformed for a `value` that is not a number of `bits` bits. Does not return.
[[noreturn]] void RefuseNumber(json::value value, unsigned bits);
/// The digits of the token `"0x..."`; empty for any other token.
inline std::string_view HexDigitsOf(std::string_view token) {
  while (!token.empty() && static_cast<unsigned char>(token.back()) <= ' ') token.remove_suffix(1);
  const bool hex = token.size() > 4 && token[1] == '0' && (token[2] | 0x20) == 'x';
  return hex ? token.substr(3, token.size() - 4) : std::string_view();
}

/// A number from 0 to what `bits` bits hold, as a JSON number or as a "0x..." string.
inline u_int64_t TakeNumber(json::value value, unsigned bits) {
  const u_int64_t largest = ~u_int64_t{0} >> (64 - bits);
  u_int64_t number = 0;
  const std::string_view token = value.raw_json_token();
  const bool taken = token.front() == '"' ? ReadHexDigits(HexDigitsOf(token), number) &&
                                                !value.get_raw_json_string().error()
                                          : !value.get_uint64().get(number);
  if (!taken || number > largest) RefuseNumber(value, bits);
  return number;
}

[[noreturn]] void RefuseWord(std::string_view given, const std::vector<std::string_view>& words);

template <class Value, std::size_t N>
Value TakeWord(json::value value, const Word<Value> (&words)[N]) {
  const std::string given = TakeText(value);
  std::vector<std::string_view> texts;
  for (const Word<Value>& word : words) {
    if (word.text == given) return word.value;
  }
  for (const Word<Value>& word : words) texts.push_back(word.text);
  RefuseWord(given, texts);
}

}  // namespace fabscan

#endif
