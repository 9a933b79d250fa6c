#include "cli/scaffold/project_template.h"

#include <gtest/gtest.h>

namespace fabscan {
namespace {

TEST(ProjectTemplate, RepeatsALineWithHolesForEachDevice) {
  const std::vector<ProjectDevice> devices = {{"P_SW", "p_sw", "SW", "leaf @class@", 36},
                                              {"P_HCA", "p_hca", "HCA", "host", 1}};
  EXPECT_EQ(FillTemplate("begin\n"
                         "add(@directory@)\n"
                         "  Print<@prefix@::@class@>(@ports@);  // @node@\n"
                         "end",
                         devices),
            "begin\n"
            "add(p_sw)\n"
            "add(p_hca)\n"
            "  Print<P_SW::SW>(36);  // leaf @class@\n"
            "  Print<P_HCA::HCA>(1);  // host\n"
            "end");
}

TEST(ProjectTemplate, OmitsALineWithoutDevices) {
  EXPECT_EQ(FillTemplate("a\n@node@\nb\n", {}), "a\nb\n");
}

}  // namespace
}  // namespace fabscan
