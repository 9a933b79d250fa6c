#include "snapshot/json_value.h"

#include <cstdint>
#include <new>

#include "model/harmless_name.h"

namespace fabscan {

namespace {

std::string_view TypeName(json::value& value) {
  switch (Take(value.type())) {
    case json::json_type::array:
      return "a list";
    case json::json_type::object:
      return "an object";
    case json::json_type::number:
      return "a number";
    case json::json_type::string:
      return "text";
    case json::json_type::boolean:
      return "true or false";
    case json::json_type::null:
      break;
  }
  return "null";
}

[[noreturn]] void RefuseType(json::value& value, const std::string& wanted) {
  throw Malformed("must be " + wanted + ", not " + std::string(TypeName(value)));
}

/// The value; throws Malformed if it has another type.
template <class T>
T TakeTyped(simdjson::simdjson_result<T>&& result, json::value& value, const std::string& wanted) {
  T taken;
  const simdjson::error_code error = std::move(result).get(taken);
  if (error == simdjson::INCORRECT_TYPE) RefuseType(value, wanted);
  if (error != simdjson::SUCCESS) throw simdjson::simdjson_error(error);
  return taken;
}

bool IsHexText(std::string_view text) {
  return text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X') &&
         text.find_first_not_of("0123456789abcdefABCDEF", 2) == std::string_view::npos;
}

std::string_view Token(json::value& value) {
  std::string_view token = value.raw_json_token();
  const std::size_t blank = token.find_first_of(" \t\r\n");
  return token.substr(0, blank);
}

[[noreturn]] void RefuseWidth(std::string_view given, unsigned bits) {
  const u_int64_t largest = ~u_int64_t{0} >> (64 - bits);
  throw Malformed(std::string(given) + " does not fit the field's " + std::to_string(bits) +
                  " bits; give 0 to " + std::to_string(largest));
}

/// simdjson chooses its kernel at first use, in functions that may not throw and yet allocate.
/// Chosen here, before the program begins, that cannot end it half-way.
// NOLINTNEXTLINE(cert-err58-cpp)
[[maybe_unused]] const std::string kKernel = simdjson::get_active_implementation()->name();

/// Unescaping needs a parser, and does not change it.
const json::parser& Unescaper() {
  static const json::parser kParser = [] {
    json::parser parser;
    if (parser.allocate(simdjson::SIMDJSON_PADDING) != simdjson::SUCCESS) throw std::bad_alloc();
    return parser;
  }();
  return kParser;
}

std::string ResolveEscapes(json::raw_json_string raw, std::size_t raw_size) {
  std::string text(raw_size + simdjson::SIMDJSON_PADDING, '\0');
  auto* to = reinterpret_cast<std::uint8_t*>(text.data());
  std::string_view resolved;
  if (const simdjson::error_code error = Unescaper().unescape(raw, to).get(resolved)) {
    throw simdjson::simdjson_error(error);
  }
  text.resize(resolved.size());
  return text;
}

void AppendText(json::raw_json_string raw, std::string& text) {
  static_cast<void>(Unescaped(raw));  // throws for an escape that does not exist
  const char* end = raw.raw();
  while (*end != '"') end += *end == '\\' ? 2 : 1;
  text.append(1, '"').append(raw.raw(), end).append(1, '"');
}

void AppendJson(json::value value, std::string& text);

void AppendMembers(json::object object, std::string& text) {
  text += '{';
  for (auto item : object) {
    json::field field = Take(std::move(item));
    if (text.back() != '{') text += ',';
    AppendText(field.key(), text);
    text += ':';
    AppendJson(field.value(), text);
  }
  text += '}';
}

void AppendElements(json::array array, std::string& text) {
  text += '[';
  for (auto item : array) {
    if (text.back() != '[') text += ',';
    AppendJson(Take(item), text);
  }
  text += ']';
}

/// Without blanks. Reads all of the value, because simdjson checks only what is read.
void AppendJson(json::value value, std::string& text) {
  switch (Take(value.type())) {
    case json::json_type::object:
      return AppendMembers(Take(value.get_object()), text);
    case json::json_type::array:
      return AppendElements(Take(value.get_array()), text);
    case json::json_type::string:
      return AppendText(Take(value.get_raw_json_string()), text);
    case json::json_type::number:
      text += Token(value);
      static_cast<void>(Take(value.get_double()));
      return;
    case json::json_type::boolean:
      text += Take(value.get_bool()) ? "true" : "false";
      return;
    case json::json_type::null:
      if (!value.is_null()) throw simdjson::simdjson_error(simdjson::N_ATOM_ERROR);
      text += "null";
  }
}

}  // namespace

std::string TakeExtra(json::value value) {
  std::string text;
  AppendMembers(TakeObject(value), text);
  return text;
}

std::string Unescaped(json::raw_json_string raw) {
  // The parser has seen the closing quote already.
  const char* const begin = raw.raw();
  const char* end = begin;
  bool escapes = false;
  while (*end != '"') {
    const bool escape = *end == '\\';
    escapes |= escape;
    end += escape ? 2 : 1;
  }
  const auto size = static_cast<std::size_t>(end - begin);
  return escapes ? ResolveEscapes(raw, size) : std::string(begin, size);
}

json::object TakeObject(json::value value) {
  return TakeTyped(value.get_object(), value, "an object, {...}");
}

json::array TakeArray(json::value value) {
  return TakeTyped(value.get_array(), value, "a list, [...]");
}

bool TakeBool(json::value value) { return TakeTyped(value.get_bool(), value, "true or false"); }

std::string TakeText(json::value value) {
  return Unescaped(TakeTyped(value.get_raw_json_string(), value, "text"));
}

std::string TakeName(json::value value) {
  const std::string_view token = value.raw_json_token();
  if (token.empty() || token.front() != '{') return TakeText(value);
  std::string name;
  std::size_t keys = 0;
  for (auto item : TakeObject(value)) {
    json::field field = Take(std::move(item));
    if (Unescaped(field.key()) != "escaped" || ++keys > 1) {
      throw Malformed("must be text, or one object {\"escaped\": text}");
    }
    name = OriginalName(TakeText(field.value()));
  }
  if (keys == 0) throw Malformed("must be text, or one object {\"escaped\": text}");
  return name;
}

void RefuseNumber(json::value value, unsigned bits) {
  const std::string wanted = "a whole number, or \"0x...\" in hexadecimal digits";
  const json::json_type type = Take(value.type());
  if (type == json::json_type::string) {
    if (Token(value).find('\\') != std::string_view::npos) {
      throw Malformed("must be " + wanted + ", without escapes");
    }
    const std::string text = TakeText(value);
    if (IsHexText(text)) RefuseWidth(Quoted(text), bits);
    throw Malformed("must be " + wanted + ", not the text " + Quoted(text));
  }
  if (type != json::json_type::number) RefuseType(value, wanted);
  const std::string_view token = Token(value);
  if (token.find_first_not_of("0123456789+-.eE") != std::string_view::npos) {
    throw simdjson::simdjson_error(simdjson::NUMBER_ERROR);
  }
  const std::string given = token.size() <= 40 ? std::string(token) : "the number";
  if (token.front() == '-') throw Malformed(given + " is negative; give 0 or more");
  if (token.find_first_of(".eE") != std::string_view::npos) {
    throw Malformed(given + " is not a whole number; omit the fraction and exponent");
  }
  const bool leading_zero = token.size() > 1 && token.front() == '0';
  if (token.front() == '+' || leading_zero) throw simdjson::simdjson_error(simdjson::NUMBER_ERROR);
  RefuseWidth(given, bits);
}

void RefuseWord(std::string_view given, const std::vector<std::string_view>& words) {
  throw Malformed(Quoted(given) + " is not one of " + Alternatives(words));
}

}  // namespace fabscan
