// How methods read their arguments.
#include "support/ScriptSurface.h"

namespace zyl::test {
namespace {

using Arguments = ModuleTest;

TEST_F(Arguments, AbsentArgumentsDoNotHideLaterOnes) {
  const Program program;
  EXPECT_EQ(CallList(program.Algo(), "MaxIndyOut", nullptr).Int(), 0);
  ExpectArgType(CallList(program.Algo(), "Read", nullptr), "PrgName", kTypeString, 1);
  program.Make();
  const std::string message = program("GetSFPresetArray", "x").Message();
  EXPECT_NE(message.find(" an array"), std::string::npos) << message;
  ASSERT_TRUE(program("Write", Path("p.zprg")).Bool());
  EXPECT_TRUE(program("Read", Path("p.zprg"), NullEntry{}, 7).Bool());
  EXPECT_EQ(program("PRGmidiChannel").Int(), 7);
}

TEST_F(Arguments, WrongClassesAndNullObjectsAreRefused) {
  const Program program;
  program.Make();
  const std::unique_ptr<RIOObject> brush(ZylNewPlainObject("SolidColor"));
  for (const char* method : {"Register", "Create"}) {
    ExpectArgPType(program(method, brush.get()), "SolidColor", "ROCAlgo", 1);
  }
  ExpectArgValue(program("Register", NullObject{}), "RegisterModule", 1);
  ExpectArgPType(program("KGCreate", 0, brush.get()), "SolidColor", "ROCAlgo", 2);
  EXPECT_TRUE(program("IsValid").Bool()) << "a refused call detached the program";
}

TEST_F(Arguments, AreReadBeforeCallbacksCanChangeThem) {
  WriteWave(Path("a.wav"), {{1, 2}});
  const Program p;
  p.Make(2);
  const ROCParamPtr path(newROCParam(""));
  const ROCParamPtr number(newROCParam(0));
  Listener listener;
  const auto change = [&](ROCParams&, ROCParam**) {
    *path = ROCParam(true);
    *number = ROCParam("a text in place of a number");
  };
  listener["OnDeletingSmpl"] = change;
  listener["OnProgramParameterChanged"] = change;
  p("Register", &listener);
  p("ZoneSampleSet", 0, 0, Path("a.wav"));
  ASSERT_NE(p("SampleGet", 0, 0).Object(), nullptr);
  *path = ROCParam(std::string_view(Path("a.wav")));
  EXPECT_TRUE(p("ZoneSampleSet", number.get(), 0, path.get()).Ok());
  EXPECT_EQ(path->Type(), kTypeBool) << "the callback was called";
  EXPECT_TRUE(p("ZoneSampleExists", 0, 0).Bool());
  // The new value is stored in both keygroups although the first notice changes the variable.
  *number = ROCParam(3);
  EXPECT_TRUE(p("MaxIndyOut", 8).Ok());
  EXPECT_TRUE(p("ZoneIntValue", -1, 1, 230, number.get()).Ok());
  EXPECT_EQ(number->Type(), kTypeString);
  for (const int k : {0, 1}) EXPECT_EQ(p("ZoneIntValue", k, 1, 230).Int(), 3);
}

}  // namespace
}  // namespace zyl::test
