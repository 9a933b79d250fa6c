#include "cli/dump/class_prefix.h"

#include <gtest/gtest.h>

#include <string>

#include "cli/command.h"

namespace fabscan {
namespace {

TEST(ClassPrefixTest, TakesIdentifiers) {
  for (const char* prefix : {"MyDev", "a", "Z9", "my_dev", "my_dev_", "Class", "classes", "Int"}) {
    EXPECT_EQ(FaultOfClassPrefix(prefix), "") << prefix;
  }
}

TEST(ClassPrefixTest, SaysWhatIsWrong) {
  EXPECT_EQ(FaultOfClassPrefix(""), "is empty");
  EXPECT_EQ(FaultOfClassPrefix("9a"), "begins with a digit");
  for (const char* prefix : {"My Dev", "My-Dev", "a::b", "../a", "a/b", "M\xC3\xB6", "a\n", "a$"}) {
    EXPECT_EQ(FaultOfClassPrefix(prefix),
              "contains characters other than ASCII letters, digits and underscores")
        << prefix;
  }
  EXPECT_EQ(FaultOfClassPrefix("_a"), "is reserved, because it begins with an underscore");
  EXPECT_EQ(FaultOfClassPrefix("_A"), "is reserved, because it begins with an underscore");
  EXPECT_EQ(FaultOfClassPrefix("a__b"),
            "is reserved, because it contains two consecutive underscores");
  // The first and the last of the list, and some that differ by what follows.
  for (const char* prefix : {"alignas", "xor_eq", "class", "char", "char8_t", "char16_t",
                             "static_assert", "static_cast", "co_await", "const", "constexpr"}) {
    EXPECT_EQ(FaultOfClassPrefix(prefix), "is a C++ keyword") << prefix;
  }
}

TEST(ClassPrefixTest, AFaultIsWrongUsage) {
  EXPECT_NO_THROW(CheckClassPrefix("MyDev"));
  try {
    CheckClassPrefix("class");
    FAIL();
  } catch (const CommandError& error) {
    EXPECT_EQ(error.status(), kWrongUsage);
    EXPECT_STREQ(error.what(),
                 "--prefix: 'class' is a C++ keyword; it names a C++ class, such as MyDev");
  }
}

TEST(ClassPrefixTest, TheFileIsNamedInLowerCase) {
  EXPECT_EQ(GeneratedFileName("MyDev_9"), "mydev_9_generated.cpp");
  EXPECT_EQ(LowerCasePrefix("ABC"), "abc");
}

}  // namespace
}  // namespace fabscan
