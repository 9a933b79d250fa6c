#ifndef FABSCAN_CLI_FIELD_FORMS_H
#define FABSCAN_CLI_FIELD_FORMS_H

#include <sys/types.h>

#include <string>
#include <string_view>
#include <vector>

namespace fabscan {

/// How a field of a record is shown to people.
struct FieldForm {
  std::string_view record;
  std::string_view field;
  bool hexadecimal = false;  // numbers that identify a device are so without a row
  std::string (*meaning)(u_int64_t value) = nullptr;    // null: the number needs no explanation
  const std::vector<const char*>* bit_names = nullptr;  // for a mask with named bits
};

/// The form of a field; without a row: decimal, no meaning.
FieldForm FormOf(std::string_view record, std::string_view field);

/// Every row, for tests.
const std::vector<FieldForm>& AllFieldForms();

}  // namespace fabscan

#endif
