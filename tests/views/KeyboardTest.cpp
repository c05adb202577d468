// Keyboards: the place of the range marker, and the colours of the keyboards of a list.
#include <cmath>

#include "views/EditorTools.h"

namespace zyl::test {
namespace {

class Keyboard : public ModuleTest {
 protected:
  Keyboard() { board->MoveTo(10, 30); }
  void SetRange(int k, int low, int high) const {
    program("KGlowKey", k, low);
    program("KGhighKey", k, high);
  }
  RIOObject* Board() const { return board.get(); }
  const GOObject& Child(const char* name) const { return *board->GetChild(name, 1); }

  Program program;
  std::unique_ptr<GOContainer> board = MakeBoard("board", 378, 24);
};

TEST_F(Keyboard, MarksTheRange) {
  program.Make();
  const struct {
    int low, high, markerLeft, markerWidth, clipLeft, clipWidth;
  } rows[] = {
      {60, 60, 174, 5, 177, 0},  {61, 61, 179, 0, 177, 5},   {64, 65, 184, 10, 187, 5},
      {0, 127, -1, 375, 2, 370}, {127, 127, 369, 5, 372, 0}, {62, 66, 179, 15, 182, 15},
      {70, 58, 204, 0, 202, 0},  {255, 255, 744, 0, 742, 5},
  };
  int drawn = 0;
  for (const auto& row : rows) {
    SetRange(0, row.low, row.high);
    EXPECT_EQ(program("DrawKeyGroupKB", 0, Board(), NullObject{}).result, nullptr);
    using Places = std::vector<int>;
    EXPECT_EQ(Place(Child("KBSelector")), (Places{10 + row.markerLeft, 30, row.markerWidth, 24}))
        << row.low << " " << row.high;
    EXPECT_EQ(Place(Child("KBBKSelClip")), (Places{10 + row.clipLeft, 30, row.clipWidth, 24}))
        << row.low << " " << row.high;
    EXPECT_EQ(Place(Child("KBBKSel")), (Places{10, 30, 378, 22}));
    EXPECT_EQ(board->Refreshes(), ++drawn);
  }
}

TEST_F(Keyboard, DrawsNothingWithoutAKeygroupOrAKeyboard) {
  program.Make();
  EXPECT_TRUE(program("DrawKeyGroupKB", -1, Board(), NullObject{}).Ok());
  EXPECT_TRUE(program("DrawKeyGroupKB", 0, NullObject{}, NullObject{}).Ok());
  EXPECT_EQ(board->Refreshes(), 0);
  GOContainer bare("no children");
  EXPECT_TRUE(program("DrawKeyGroupKB", 0, static_cast<RIOObject*>(&bare), NullObject{}).Ok());
}

class Selection : public ModuleTest {
 protected:
  Selection()
      : editor({{10, 0, {199, 4, 0, 0}, ""},
                {10, 0, {100, 4, 0, 0}, ""},
                {10, 0, {101, 4, 0, 0}, ""},
                {10, 0, {199, 10, 0, 0}, ""}}) {
    program.Make(3);
    const std::pair<int, int> ranges[] = {{10, 20}, {21, 30}, {20, 40}};
    for (int k = 0; k < 3; ++k) {
      program("KGlowKey", k, ranges[k].first);
      program("KGhighKey", k, ranges[k].second);
    }
    program("ListFillKeygroups", editor.Module());
  }
  const GOObject& Child(int row, const char* name) const {
    return *dynamic_cast<const GOContainer&>(*editor.Cell(row, 3).Object()).GetChild(name, 1);
  }
  static int Color(const GOObject& object) {
    return static_cast<const GOSolidFill*>(object.Fill())->color;
  }
  Outcome Select(int key) {
    return program("UpdateKeyboardSelection", key, 255.9, 2.0, 3.0, 4.0, editor.Module());
  }
  // The markers' and backgrounds' colours and how often they changed, row by row.
  std::string State() const {
    std::string state;
    for (int row = 0; row < editor.list->RowCount(); ++row) {
      for (const char* name : {"KBSelector", "KBBKSel"}) {
        const GOObject& child = Child(row, name);
        EXPECT_EQ(child.FillChanges(), child.Refreshes());
        state += std::to_string(Color(child)) + "x" + std::to_string(child.FillChanges()) + " ";
      }
    }
    return state;
  }
  Program program;
  Editor editor;
};

TEST_F(Selection, ChangesOnlyDifferentColours) {
  EXPECT_EQ(State(), "1x0 1x0 1x0 1x0 1x0 1x0 ");
  EXPECT_EQ(Select(20).result, nullptr);
  EXPECT_EQ(State(), "3x1 4x1 255x1 2x1 3x1 4x1 ");
  Select(20);
  EXPECT_EQ(State(), "3x1 4x1 255x1 2x1 3x1 4x1 ");
  Select(21);
  EXPECT_EQ(State(), "255x2 2x2 3x2 4x2 3x1 4x1 ");
  Select(-5);
  EXPECT_EQ(State(), "255x2 2x2 255x3 2x3 255x2 2x2 ");
}

TEST_F(Selection, SkipsRowsWithoutAKeyboard) {
  editor.Cell(0, 0).value = -1;
  editor.Cell(1, 0).value = 3;
  const_cast<GOObject&>(Child(2, "KBBKSel")).SetFill(nullptr);
  editor.list->AddTail(new ListItem(3));  // too few cells
  editor.Cell(3, 0).value = 0;
  program("ListFillKeygroups", editor.Module());
  editor.Cell(5, 3).CreateGO(nullptr, 1);
  editor.list->AddTail(new ListItem(0));  // ends the walk
  program("ListFillKeygroups", editor.Module());
  EXPECT_TRUE(Select(20).Ok());
  for (const int row : {0, 1, 2, 8, 9, 10}) EXPECT_EQ(Color(Child(row, "KBSelector")), 1) << row;
  EXPECT_EQ(Color(Child(4, "KBSelector")), 3);
  EXPECT_EQ(Color(Child(6, "KBSelector")), 3);
}

TEST_F(Selection, ColoursAreTruncatedTo32Bits) {
  const std::pair<double, int> rows[] = {
      {-1.9, -1}, {4294967295.0, -1}, {2147483648.0, INT32_MIN}, {1e300, 0}, {NAN, 0}};
  for (const auto& [given, stored] : rows) {
    program("UpdateKeyboardSelection", 20, 1.0, 1.0, given, 7.0, editor.Module());
    EXPECT_EQ(Color(Child(0, "KBSelector")), stored) << given;
    Select(99);
  }
}

}  // namespace
}  // namespace zyl::test
