#include <array>
#include <cstdio>
#include <set>

#include "support/ScriptSurface.h"

namespace zyl::test {
namespace {

using Dispatch = ModuleTest;

TEST_F(Dispatch, AMethodIsFoundByNameAndAnswersTheValueBefore) {
  const Program program;
  program.Make();
  EXPECT_EQ(program("PRGpoly", 20).Int(), 15);
  EXPECT_EQ(program("PRGpoly").Int(), 20);
  EXPECT_EQ(program("NoSuchMethod").status, ZylDispatch::kNoSuchMethod);
}

TEST_F(Dispatch, AllObjectsShareOneHashTableThatCanBeRebuilt) {
  const Program first;
  const Program second;
  ZylDispatch* one = first.Algo()->GetDispatch(true);
  ZylDispatch* two = second.Algo()->GetDispatch(true);
  EXPECT_EQ(one->GetHashTable(), two->GetHashTable());
  const hashEntry* rebuilt = one->RebuildHashTable();
  EXPECT_EQ(rebuilt, two->GetHashTable());
  two->RebuildHashTable();
  EXPECT_TRUE(first("IsValid").Ok());
  for (const ZylFuncInfo* row = one->GetFuncTable(); row->name != nullptr; ++row) {
    EXPECT_EQ(one->GetHashTable()->Find(row->name), row) << row->name;
  }
}

}  // namespace
}  // namespace zyl::test
