#ifndef FABSCAN_SNAPSHOT_AGGREGATE_SIZE_H
#define FABSCAN_SNAPSHOT_AGGREGATE_SIZE_H

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
struct TakesNumbers : std::false_type {};

template <class Aggregate, std::size_t... I>
struct TakesNumbers<Aggregate, std::index_sequence<I...>,
                    std::void_t<decltype(Aggregate{(static_cast<void>(I), AnyNumber{})...})>>
    : std::true_type {};

template <class Aggregate, std::size_t N>
constexpr std::size_t CountOfNumbers() {
  if constexpr (TakesNumbers<Aggregate, std::make_index_sequence<N + 1>>::value) {
    return CountOfNumbers<Aggregate, N + 1>();
  } else {
    return N;
  }
}

/// How many numbers a plain structure holds, those of its arrays and nested structures included.
template <class Aggregate>
inline constexpr std::size_t kNumbersIn = CountOfNumbers<Aggregate, 1>();

}  // namespace fabscan

#endif
