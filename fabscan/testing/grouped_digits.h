#ifndef FABSCAN_TESTING_GROUPED_DIGITS_H
#define FABSCAN_TESTING_GROUPED_DIGITS_H

#include <locale>
#include <string>

namespace fabscan {

/// Groups digits in threes.
class Grouping : public std::numpunct<char> {
 protected:
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

inline std::locale GroupedDigits() { return {std::locale::classic(), new Grouping}; }

/// The global locale groups digits as long as this lives.
class WithGroupedDigits {
 public:
  WithGroupedDigits() : before_(std::locale::global(GroupedDigits())) {}
  ~WithGroupedDigits() { std::locale::global(before_); }
  WithGroupedDigits(const WithGroupedDigits&) = delete;
  WithGroupedDigits& operator=(const WithGroupedDigits&) = delete;

 private:
  std::locale before_;
};

}  // namespace fabscan

#endif
