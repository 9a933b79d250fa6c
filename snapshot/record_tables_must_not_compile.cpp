// A record whose table is wrong in the way that the macro names. Without one, the table is right.

#include "snapshot/record_table.h"

struct Example {
  u_int8_t first;
  u_int16_t second;
  u_int8_t words[2];
};

namespace fabscan {

#define ROW(type, field) \
  MakeRow<type, decltype(Example::field)>(#field, offsetof(Example, field), true)

template <>
struct FieldsOf<Example> {
  static constexpr std::string_view kName = "Example";
  static constexpr FieldRow kRows[] = {
#if defined(FORGOTTEN)
    ROW(u_int8_t, first),
    ROW(u_int16_t, second),
#elif defined(REORDERED)
    ROW(u_int16_t, second),
    ROW(u_int8_t, first),
    ROW(u_int8_t[2], words),
#elif defined(RETYPED)
    ROW(u_int8_t, first),
    ROW(u_int32_t, second),
    ROW(u_int8_t[2], words),
#elif defined(RESIZED)
    ROW(u_int8_t, first),
    ROW(u_int16_t, second),
    ROW(u_int8_t[3], words),
#elif defined(RENAMED)
    ROW(u_int8_t, first),
    ROW(u_int16_t, seconds),
    ROW(u_int8_t[2], words),
#elif defined(TWICE)
    ROW(u_int8_t, first),
    ROW(u_int8_t, first),
    ROW(u_int16_t, second),
    ROW(u_int8_t[2], words),
#else
    ROW(u_int8_t, first),
    ROW(u_int16_t, second),
    ROW(u_int8_t[2], words),
#endif
  };
};

static_assert(TableOf<Example>::value.numbers == 4);

}  // namespace fabscan
