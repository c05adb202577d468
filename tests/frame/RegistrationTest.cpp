// What a host sees of the module: its one export, its class, its table, its load and unload.
#include <cstdio>
#include <set>

#include "support/ScriptSurface.h"

namespace zyl::test {
namespace {

using Registration = ModuleTest;

TEST_F(Registration, TheModuleExportsRegisterAllClassesAndNothingElse) {
  if (std::system("nm --version > /dev/null 2>&1") != 0) GTEST_SKIP() << "no nm here";
  FILE* pipe = ::popen(("nm -D --defined-only '" + std::string(ModulePath()) + "'").c_str(), "r");
  ASSERT_NE(pipe, nullptr);
  std::set<std::string> names;
  char name[512];
  while (std::fscanf(pipe, "%*s %*s %511s", name) == 1) names.insert(name);
  ASSERT_EQ(::pclose(pipe), 0);
  EXPECT_EQ(names, std::set<std::string>{"RegisterAllClasses"});
}

TEST_F(Registration, TheFactoryMakesObjectsThatShareOneTableWhichCanBeRebuilt) {
  const Program program;
  const Program other;
  ZylDispatch* dispatch = program.Algo()->GetDispatch(true);
  EXPECT_EQ(dispatch->owner, program.Algo());
  EXPECT_TRUE(ZylIsKindOf(dispatch, "ZylDisplayObject"));
  EXPECT_EQ(*dispatch->GetAuxTable(), 0u);
  EXPECT_EQ(ZylNewScriptObject("NoSuchClass"), nullptr);
  EXPECT_EQ(program("NoSuchMethod").status, ZylDispatch::kNoSuchMethod);
  const hashEntry* rebuilt = dispatch->RebuildHashTable();
  EXPECT_EQ(rebuilt, other.Algo()->GetDispatch(true)->GetHashTable());
  for (const ZylFuncInfo* row = dispatch->GetFuncTable(); row->name != nullptr; ++row) {
    EXPECT_EQ(rebuilt->Find(row->name), row) << row->name;
  }
}

TEST_F(Registration, TheTableHas295CallableRows) {
  const Program empty;
  int rows = 0, needProgram = 0;
  for (const ZylFuncInfo* row = ZylClassMethods("ZylSProgram"); row->name != nullptr; ++row) {
    ++rows;
    EXPECT_EQ(row->flag, 1) << row->name;
    const Outcome outcome = empty(row->name, "wrong", "wrong", 1.5);
    EXPECT_EQ(outcome.status != 0, outcome.error.has_value()) << row->name;
    if (!outcome.error || outcome.error->kind != ZylScriptError::kException) continue;
    ++needProgram;
    ExpectException(outcome, "ZylSProgram::" + std::string(row->name) +
                                 ": No program loaded. Method can not execute!");
  }
  EXPECT_EQ(rows, 295);
  EXPECT_EQ(needProgram, 220);
}

TEST_F(Registration, TheClassGoesWithTheModuleAndComesBackWithIt) {
  LoadedModule().reset();
  EXPECT_EQ(ZylNewScriptObject("ZylSProgram"), nullptr);
  LoadModule();
  EXPECT_TRUE(Program()("IsValid").Ok());
}

}  // namespace
}  // namespace zyl::test
