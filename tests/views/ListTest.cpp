// Lists and keyboards with missing parts; Views.lua tests complete ones.
#include "views/EditorTools.h"

namespace zyl::test {
namespace {

using Lists = ProgramTest;

TEST_F(Lists, KeyboardsRowsAndColumnsMayBeIncomplete) {
  program.Make(3);
  GOContainer bare("no children");
  EXPECT_TRUE(program("DrawKeyGroupKB", 0, &bare, NullObject{}).Ok());
  Editor undefined(3, {{30, 0, {142, 4, 0, 0}, ""}});
  program("ListFillKeygroups", undefined.Module());
  EXPECT_EQ(undefined.list->Row(0)->CellCount(), 3);
  EXPECT_EQ(undefined.Cell(0, 2).Object(), nullptr) << "an undefined column";
  Editor empty(1, {});
  program("ListFillKeygroups", empty.Module());
  EXPECT_EQ(empty.Cell(2, 0).value, 2);

  Editor editor({{10, 0, {199, 4, 0, 0}, ""},
                 {10, 0, {100, 4, 0, 0}, ""},
                 {10, 0, {101, 4, 0, 0}, ""},
                 {10, 0, {199, 10, 0, 0}, ""}});
  const auto child = [&](int row, const char* name) {
    return dynamic_cast<GOContainer&>(*editor.Cell(row, 3).Object()).GetChild(name, 1);
  };
  program("ListFillKeygroups", editor.Module());
  child(2, "KBBKSel")->SetFill(nullptr);
  editor.list->AddTail(new ListItem(3));  // too few cells
  editor.Cell(3, 0).value = 0;
  program("ListFillKeygroups", editor.Module());
  editor.Cell(5, 3).CreateGO(nullptr, 1);
  editor.list->AddTail(new ListItem(0));  // ends the iteration
  program("ListFillKeygroups", editor.Module());
  EXPECT_TRUE(program("UpdateKeyboardSelection", 20, 255.9, 2.0, 3.0, 4.0, editor.Module()).Ok());
  std::string colors;
  for (const int row : {0, 1, 2, 4, 6, 8, 9, 10}) {
    const auto* fill = static_cast<const GOSolidFill*>(child(row, "KBSelector")->Fill());
    colors += std::to_string(fill->color) + " ";
  }
  EXPECT_EQ(colors, "3 3 1 3 3 1 1 1 ");
}

}  // namespace
}  // namespace zyl::test
