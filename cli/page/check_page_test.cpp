#include "cli/page/check_page.h"

#include <gtest/gtest.h>

#include <sstream>

namespace fabscan {
namespace {

std::string PutTogether(const TextParts& parts, const std::string& name) {
  std::istringstream values(parts.values);
  std::string text;
  for (const char c : parts.frame) {
    std::string value;
    if (c == TextParts::kValueHole) values >> value;
    text += c == TextParts::kNameHole    ? name
            : c == TextParts::kValueHole ? value
                                         : std::string(1, c);
  }
  return text;
}

TEST(CheckPageTest, TextsThatDifferInValuesShareTheRest) {
  const TextParts one = TakeApart("    a.LID = 0x1f;\n    b = 0x0;\n", "S");
  const TextParts other = TakeApart("    a.LID = 0xffff;\n    b = 0x1;\n", "S");
  EXPECT_EQ(one.frame, other.frame);
  EXPECT_EQ(one.values, "1f 0");
  EXPECT_EQ(other.values, "ffff 1");
}

TEST(CheckPageTest, NamesAreTakenOut) {
  const TextParts parts = TakeApart("// no mad for node=leaf-01, leaf-01\n", "leaf-01");
  EXPECT_EQ(parts.frame, "// no mad for node=\x02, \x02\n");
}

TEST(CheckPageTest, EveryTextComesTogetherAgain) {
  for (const std::string text : {"", "0x", "0x0x55aa1f", "x1f", "0X1f", "0x1F", "0x1g", "0x12 0x",
                                 "name0x1name", "a\n\nb"}) {
    for (const std::string name : {"", "name", "0x1", "x"}) {
      EXPECT_EQ(PutTogether(TakeApart(text, name), name), text) << name;
    }
  }
}

/// The page of one node of this name.
std::string PageOf(const std::string& name, const std::string& body) {
  Fabscan fabscan;
  const IBNode& node = fabscan.discovered_fabric.makeNode(name, 1, IB_SW_NODE, 1);
  const auto* function = generator::FindGeneratedFunction("setNodeInfo");
  CheckResult result(fabscan);
  result.Add(node, {"SW", {{function, Mark::kComment, "why"}}});
  CheckPage page;
  page.Add(node, {body});
  std::ostringstream out;
  page.Write(out, CheckReport(result, "f.jsonl"));
  return out.str();
}

std::size_t Count(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

TEST(CheckPageTest, NothingInTheDataEndsItsElement) {
  const std::string plain = PageOf("S", "// why\n");
  const std::string hostile =
      PageOf("</script><!--<script>{{DATA}}", "// </SCRIPT><!-- \xE2\x80\xA8 \xFF \x01 \n");
  for (const char* part : {"<", "</script", "<!--", "<script", "\xE2\x80\xA8", "\xFF"}) {
    EXPECT_EQ(Count(hostile, part), Count(plain, part)) << part;
  }
  EXPECT_EQ(Count(hostile, "{{DATA}}"), 1U);  // of the name; what fills a place is not filled
}

TEST(CheckPageTest, NothingIsAskedOfTheNetwork) {
  const std::string page = PageOf("S", "// why\n");
  EXPECT_EQ(Count(page, "default-src 'none'"), 1U);
  EXPECT_EQ(Count(page, "http:"), 0U);
  EXPECT_EQ(Count(page, "https:"), 0U);
  EXPECT_EQ(Count(page, "unsafe"), 0U);
  EXPECT_EQ(Count(page, "'sha256-"), 2U);
  EXPECT_EQ(Count(page, "{{"), 0U);
}

}  // namespace
}  // namespace fabscan
