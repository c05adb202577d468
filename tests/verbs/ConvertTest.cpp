// zyl convert; the script has the cases.
#include "verbs/VerbTools.h"

namespace zyl::test {
namespace {

TEST_F(Verbs, ConvertChangesSoundAndPositions) {
  const Finished run =
      Shell("cd " + Quoted("") +
                " && " ZYL_PROGRAM " run " ZYL_SOURCE "/tests/verbs/Convert.lua " ZYL_PROGRAM,
            true);
  EXPECT_EQ(run.status, 0) << run.out;
}

}  // namespace
}  // namespace zyl::test
