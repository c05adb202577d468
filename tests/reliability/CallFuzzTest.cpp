#include "reliability/CallFuzz.h"

namespace zyl::test {
namespace {

using CallFuzzTest = ModuleTest;

TEST_F(CallFuzzTest, EveryMethodKeepsItsWordInEveryState) {
  CallFuzz fuzz(1, CallFuzz::MakeFolder(), 400);
  for (int world = 0; world < 30 * CallFuzz::kStates; ++world) {
    ASSERT_TRUE(fuzz.RunWorld()) << fuzz.Fault();
  }
  // A fuzzer whose calls all end at the first argument would find nothing.
  for (size_t m = 0; m < fuzz.Counts().size(); ++m) {
    const char* name = fuzz.MethodAt(m).name;
    const auto& count = fuzz.Counts()[m];
    uint64_t done = 0;
    for (int state = 0; state < CallFuzz::kStates; ++state) {
      EXPECT_GE(count.calls[state], 30u) << name;
      done += count.done[state];
    }
    EXPECT_GE(done, 1u) << name << " never got through";
  }
  EXPECT_GT(fuzz.FailedCount(), fuzz.CallCount() / 10);
}

}  // namespace
}  // namespace zyl::test
