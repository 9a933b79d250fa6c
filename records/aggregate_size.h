#ifndef FABSCAN_RECORDS_AGGREGATE_SIZE_H
#define FABSCAN_RECORDS_AGGREGATE_SIZE_H

#include <cstddef>
#include <type_traits>
#include <utility>

namespace fabscan {

/// Initialises any number, and nothing else: where an initialiser list of these meets a nested
/// structure or an array, the compiler goes on to its elements.
struct AnyNumber {
  template <class Number, class = std::enable_if_t<std::is_integral_v<Number>>>
  operator Number() const;
};

template <class Aggregate, class Indices, class = void>
struct AcceptsNumbers : std::false_type {};

template <class Aggregate, std::size_t... I>
struct AcceptsNumbers<Aggregate, std::index_sequence<I...>,
                      std::void_t<decltype(Aggregate{(static_cast<void>(I), AnyNumber{})...})>>
    : std::true_type {};

/// Whether a plain structure holds exactly `kCount` numbers, those of its arrays and nested
/// structures included. A shorter initialiser list is valid too, so the count is tried once more
/// with one number added.
template <class Aggregate, std::size_t kCount>
inline constexpr bool kHasNumbers =
    AcceptsNumbers<Aggregate, std::make_index_sequence<kCount>>::value &&
    !AcceptsNumbers<Aggregate, std::make_index_sequence<kCount + 1>>::value;

}  // namespace fabscan

#endif
