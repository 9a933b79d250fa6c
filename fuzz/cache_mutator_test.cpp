// The mutator of discovery caches is useful only if its results are read past the header.

#include "fuzz/cache_mutator.h"

#include <gtest/gtest.h>

#include <set>

#include "discovery/cache_reader.h"

namespace fabscan {
namespace {

void AddOne(u_int8_t* data, std::size_t size) { ++data[size / 2]; }

struct Outcomes {
  unsigned whole = 0;
  std::set<std::string> errors;  // without their position
};

Outcomes OutcomesFrom(std::string bytes) {
  Outcomes outcomes;
  for (unsigned seed = 1; seed <= 2000; ++seed) {
    bytes = CacheMutator(seed, AddOne).Mutated(bytes);
    try {
      const CacheFindings findings(bytes);
      ++outcomes.whole;
    } catch (const CacheError& error) {
      const std::string what = error.what();
      const std::size_t end = what.find_first_of("0123456789", what.find(':'));
      outcomes.errors.insert(what.substr(what.find(':'), end - what.find(':')));
    }
  }
  return outcomes;
}

TEST(CacheMutator, MakesReadableCaches) {
  const Outcomes outcomes = OutcomesFrom(CacheBuilder::Sample().Bytes());
  EXPECT_GT(outcomes.whole, 1000U);
}

TEST(CacheMutator, MakesInconsistentCaches) {
  const Outcomes outcomes = OutcomesFrom(CacheBuilder::Sample().Bytes());
  EXPECT_GE(outcomes.errors.size(), 5U);
  for (const std::string& error : outcomes.errors) {
    EXPECT_EQ(error.find("not a discovery cache"), std::string::npos);
    EXPECT_EQ(error.find("ends too early"), std::string::npos);
  }
}

TEST(CacheMutator, MakesACacheFromAnyBytes) {
  for (const char* bytes : {"", "x", "no cache at all, but longer than a header is"}) {
    EXPECT_EQ(CacheMutator(1, AddOne).Mutated(bytes).substr(0, 4), "\x2b\x83\xe7\x8f");
  }
}

TEST(CacheMutator, IsDeterministicForASeed) {
  const std::string bytes = CacheBuilder::Sample().Bytes();
  EXPECT_EQ(CacheMutator(7, AddOne).Mutated(bytes), CacheMutator(7, AddOne).Mutated(bytes));
  EXPECT_NE(CacheMutator(7, AddOne).Mutated(bytes), bytes);
}

}  // namespace
}  // namespace fabscan
