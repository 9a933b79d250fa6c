// A record whose table is wrong in the way that the macro names. Without one, the table is right.

#include "records/record_table.h"

struct Example {
  u_int8_t first;
  u_int16_t second;
  u_int8_t words[2];
  u_int64_t guid;
};

namespace fabscan {

#define AT(member, ...) FABSCAN_ROW(member, true, __VA_ARGS__)

FABSCAN_RECORD_ROWS(Example, 16) = {
#if defined(REORDERED)
    AT(second, 8, 16),
    AT(first, 0, 8),
#elif defined(TWICE)
    AT(first, 0, 8),  AT(first, 0, 8), AT(second, 8, 16),
#elif defined(RENAMED)
    AT(first, 0, 8),
    AT(seconds, 8, 16),
#elif defined(TOO_WIDE)
    AT(first, 0, 9),
    AT(second, 9, 16),
#elif defined(OVERLAPPING)
    AT(first, 0, 8),
    AT(second, 15, 16),  // its last bit is the first of the words
#elif defined(WITHOUT_A_PLACE)
    AT(first, 0, 8),
    AT(second, 0, 0),
#else
    AT(first, 0, 8),
    AT(second, 8, 16),
#endif
    AT(words, 30, 5),
#if defined(FORGOTTEN)
#elif defined(ACROSS_BYTES)
    AT(guid, 60, 64),
#elif defined(OUTSIDE)
    AT(guid, 72, 64),
#elif defined(HALF_A_GUID)
    AT(guid, 64, 64),
};
};
struct Half {
  u_int32_t upper;
};
FABSCAN_RECORD_ROWS(Half, 16) = {
    AT(upper, 0, 32, Identity::kGuid),
#else
    AT(guid, 64, 64, Identity::kGuid),
#endif
};
};

#if defined(HALF_A_GUID)
static_assert(TableOf<Half>::value.numbers == 1);
#endif
static_assert(TableOf<Example>::value.numbers == 5);

}  // namespace fabscan
