// How methods read their arguments.
#include "support/ScriptSurface.h"

namespace zyl::test {
namespace {

using Arguments = ModuleTest;

TEST_F(Arguments, AbsentArgumentsDoNotHideLaterOnes) {
  const Program program;
  EXPECT_EQ(CallList(program.Algo(), "MaxIndyOut", nullptr).Int(), 0);
  ExpectError(CallList(program.Algo(), "Read", nullptr), "ArgType");
  program.Make();
  const std::string message = program("GetSFPresetArray", "x").Message();
  EXPECT_NE(message.find(" an array"), std::string::npos) << message;
  ASSERT_TRUE(program("Write", Path("p.zprg")).Bool());
  EXPECT_TRUE(program("Read", Path("p.zprg"), NullEntry{}, 7).Bool());
  EXPECT_EQ(program("PRGmidiChannel").Int(), 7);
}

TEST_F(Arguments, ARefusedCallChangesNothing) {
  const Program program;
  program.Make();
  ExpectArgValue(program("Register", NullObject{}), "RegisterModule", 1);
  const std::unique_ptr<RIOObject> brush(ZylNewPlainObject("SolidColor"));
  ExpectError(program("Create", brush.get()), "ArgPType");
  EXPECT_TRUE(program("IsValid").Bool()) << "the program was detached";
}

TEST_F(Arguments, AreReadBeforeCallbacksCanChangeThem) {
  const Program program;
  program.Make(2);
  program("MaxIndyOut", 8);
  const ROCParamPtr number(newROCParam(3));
  Listener listener;
  listener["OnProgramParameterChanged"] = [&](ROCParams&, ROCParam**) { *number = ROCParam("x"); };
  program("Register", &listener);
  EXPECT_TRUE(program("ZoneIntValue", -1, 1, 230, number.get()).Ok());
  EXPECT_EQ(number->Type(), kTypeString) << "the callback was called";
  for (const int k : {0, 1}) EXPECT_EQ(program("ZoneIntValue", k, 1, 230).Int(), 3);
}

}  // namespace
}  // namespace zyl::test
