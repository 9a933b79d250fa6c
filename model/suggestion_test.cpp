#include "model/suggestion.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace fabscan {
namespace {

TEST(SuggestionTest, CountsChangesAndSwaps) {
  EXPECT_EQ(EditDistance("dump", "dump"), 0U);
  EXPECT_EQ(EditDistance("", "dump"), 4U);
  EXPECT_EQ(EditDistance("dump", ""), 4U);
  EXPECT_EQ(EditDistance("dmup", "dump"), 1U);
  EXPECT_EQ(EditDistance("dum", "dump"), 1U);
  EXPECT_EQ(EditDistance("bump", "dump"), 1U);
  EXPECT_EQ(EditDistance("kitten", "sitting"), 3U);
  EXPECT_EQ(EditDistance("FNM", "fnm"), 0U);
}

TEST(SuggestionTest, SuggestsTheNearestWordIfItIsNear) {
  const std::vector<std::string> names = {"dump", "discover", "diff"};
  EXPECT_EQ(NearestWord("dmup", names), "dump");
  EXPECT_EQ(NearestWord("discovr", names), "discover");
  EXPECT_EQ(NearestWord("dif", names), "diff");
  EXPECT_EQ(NearestWord("anonymise", names), "");
  EXPECT_EQ(NearestWord("", names), "");
  EXPECT_EQ(NearestWord(std::string(61, 'd'), std::vector<std::string>{std::string(61, 'd')}), "");
}

TEST(SuggestionTest, SaysWhatWasMeantOrWhatElseToDo) {
  EXPECT_EQ(DidYouMean("sauce", {"source", "created"}, "remove it"), "; did you mean \"source\"?");
  EXPECT_EQ(DidYouMean("xyzzy", {"source", "created"}, "remove it"), "; remove it");
}

}  // namespace
}  // namespace fabscan
