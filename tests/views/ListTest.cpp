// The editor's lists: what each kind of column shows.
#include "views/EditorTools.h"

namespace zyl::test {
namespace {

constexpr uint32_t kFixed = ListColumn::kFixedWidth;

class Lists : public ModuleTest {
 protected:
  Lists() { program.Make(3); }
  // What a keygroup column shows for a value of the tune, an integer of 16 bits.
  Outcome ShowTune(Editor& editor, int value, bool keyAsValue = false) const {
    editor.list->Clear();
    program("KGtune", 0, value);
    return program("ListFillKeygroups", editor.Module(), keyAsValue);
  }
  Program program;
};

TEST_F(Lists, TextsShowTheValue) {
  const struct {
    int type, minimum, maximum, value;
    bool keyAsValue;
    const char* text;
  } rows[] = {
      {4, 0, 0, -7, false, "-7"},    {9, 0, 0, 200, false, "200"},  {4, 0, 127, 200, false, "127"},
      {4, 5, 127, -9, false, "5"},   {5, 0, 127, 60, false, "C3"},  {5, 0, 127, 60, true, "60"},
      {5, 0, 127, 61, false, "C#3"}, {5, 0, 0, 0, false, "C-2"},    {5, 0, 0, 127, false, "G8"},
      {5, 0, 0, -1, false, "B-3"},   {5, 0, 0, -11, false, "C#-3"}, {5, 0, 0, -12, false, "C-3"},
      {5, 0, 0, -13, false, "B-4"},  {6, 0, 0, 384, false, "1.50"}, {6, 0, 0, -1, false, "-0.00"},
      {7, 0, 0, 5, false, ""},       {8, 0, 0, 5, false, ""},       {77, 0, 0, 5, false, ""},
  };
  for (const auto& row : rows) {
    Editor editor({{30, 0, {102, row.type, row.minimum, row.maximum}, ""}});
    EXPECT_EQ(ShowTune(editor, row.value, row.keyAsValue).result, nullptr);
    EXPECT_EQ(editor.Text(0, 0), row.text) << row.type << " " << row.value;
    EXPECT_EQ(editor.Cell(0, 0).Object()->TemplateName(), "TextTemplate");
    EXPECT_EQ(Place(*editor.Cell(1, 0).Object()), (std::vector<int>{0, 20, 30, 10}));
  }
}

TEST_F(Lists, BarsAndMarkersShowThePart) {
  const struct {
    int width, minimum, maximum, value, bar, marker;
  } rows[] = {
      {64, 0, 100, 50, 30, 30},   {64, 0, 100, 99, 59, 59},
      {64, 0, 100, 400, 60, 60},  {64, -50, 50, -50, 0, 0},
      {64, 7, 7, 90, 0, 0},       {52, 0, 49, 1, 0, 0},
      {53, 0, 49, 1, 1, 1},       {3, 0, 100, 100, 0, -1},
      {64, 100, 0, 5000, 60, 60}, {64, INT32_MIN, INT32_MAX, 0, 30, 30},
  };
  for (const auto& row : rows) {
    Editor editor({{10, 0, {199, 4, 0, 0}, ""},
                   {row.width, 0, {102, 1, row.minimum, row.maximum}, ""},
                   {row.width, 0, {102, 2, row.minimum, row.maximum}, ""}});
    ShowTune(editor, row.value);
    using Places = std::vector<int>;
    const int left = 10;
    EXPECT_EQ(Place(*editor.Cell(0, 1).Object()), (Places{left, 0, row.width, 18}));
    EXPECT_EQ(Place(editor.Inner(0, 1)), (Places{left + 2, 2, row.bar, 14})) << row.value;
    EXPECT_EQ(Place(editor.Inner(0, 2)), (Places{left + row.width + 2 + row.marker, 2, 2, 14}))
        << row.value;
  }
}

TEST_F(Lists, SwitchesAndKeyboardsHaveTheirTemplates) {
  Editor editor(
      {{20, 0, {102, 3, 0, 0}, ""}, {378, 0, {199, 10, 0, 0}, ""}, {378, 0, {102, 10, 0, 0}, ""}});
  program("KGlowKey", 1, 64);
  program("KGhighKey", 1, 65);
  const std::pair<int, const char*> switches[] = {{0, "BtOff"}, {-3, "BtOn"}};
  for (const auto& [value, name] : switches) {
    ShowTune(editor, value);
    EXPECT_EQ(editor.Cell(0, 0).Object()->TemplateName(), name);
    EXPECT_EQ(Place(*editor.Cell(2, 0).Object()), (std::vector<int>{0, 40, 0, 0}));
  }
  // The marker is relative to the cell; a value that is not a keygroup marks nothing.
  EXPECT_EQ(Place(editor.Inner(1, 1)), (std::vector<int>{20 + 184, 20, 10, 18}));
  EXPECT_EQ(Place(editor.Inner(0, 2))[2], 0);
  EXPECT_EQ(editor.Cell(0, 2).Object()->Refreshes(), 0);
}

TEST_F(Lists, KeygroupsAreAppendedWithTheirIndexInTheFirstCell) {
  Editor editor(3, {{30, 0, {142, 4, 0, 0}, ""}, {30, kFixed, {100, 4, 0, 0}, ""}});
  program("ListFillKeygroups", editor.Module());
  program("ListFillKeygroups", editor.Module());
  ASSERT_EQ(editor.list->RowCount(), 6);
  for (int row = 0; row < 6; ++row) {
    EXPECT_EQ(editor.Cell(row, 0).value, row % 3);
    EXPECT_EQ(editor.Text(row, 0), std::to_string(row % 3 + 1));
    EXPECT_EQ(editor.list->Row(row)->CellCount(), 3);
    EXPECT_EQ(editor.Cell(row, 2).Object(), nullptr) << "a column that nobody defined";
  }
  Editor negative({{-50, kFixed, {142, 4, 0, 0}, ""}, {30, kFixed, {100, 4, 0, 0}, ""}});
  program("ListFillKeygroups", negative.Module());
  EXPECT_EQ(Place(*negative.Cell(0, 1).Object())[0], 0) << "a negative width moves nothing";
  Editor undefined(1, {});
  program("ListFillKeygroups", undefined.Module());
  EXPECT_EQ(undefined.Cell(2, 0).value, 2);
}

TEST_F(Lists, ZonesRefillTheSameFourRows) {
  WriteWave(Path("one.wav"), {{1, 2, 3}});
  program("ZoneSampleSet", 1, 2, Path("one.wav"));
  program("ZonelowVel", 1, 0, 33);
  Editor editor({{50, kFixed, {204, 4, 0, 127}, ""},
                 {50, 0, {307, 7, 0, 0}, ""},
                 {50, kFixed, {210, 7, 0, 0}, ""},
                 {50, kFixed, {313, 4, 0, 0}, ""}});
  EXPECT_TRUE(program("ListFillZones", -1, editor.Module()).Ok());
  EXPECT_EQ(editor.list->RowCount(), 0);
  program("ListFillZones", 0, editor.Module());
  EXPECT_EQ(editor.Cell(2, 0).objectValue->Object(), nullptr);
  for (int fill = 0; fill < 2; ++fill) {
    EXPECT_EQ(program("ListFillZones", 1, editor.Module()).result, nullptr);
    ASSERT_EQ(editor.list->RowCount(), 4);
    for (int zone = 0; zone < 4; ++zone) EXPECT_EQ(editor.Cell(zone, 0).value, zone);
    EXPECT_EQ(editor.Text(0, 0), "33");
    EXPECT_EQ(editor.Text(2, 1), "one.wav");
    EXPECT_EQ(editor.Text(2, 3), "16");
    EXPECT_EQ(editor.Text(2, 2), program("ZoneStringValue", 1, 2, 210).Text());
    RIOObject* sample = editor.Cell(2, 0).objectValue->Object();
    EXPECT_EQ(sample, program("SampleGet", 1, 2).Object());
    EXPECT_EQ(editor.Cell(1, 0).objectValue->Object(), nullptr);
  }
  EXPECT_EQ(Place(*editor.Cell(2, 2).Object())[2], 50);
  EXPECT_EQ(Place(*editor.Cell(2, 1).Object())[2], 7 * GOText::kAdvance);
  // A list that shows a sample does not keep it alive.
  program.Delete();
  EXPECT_EQ(editor.Cell(2, 0).objectValue->Object(), nullptr);
}

TEST_F(Lists, AModuleWithoutAListFillsNothing) {
  Editor editor({{30, 0, {100, 4, 0, 0}, ""}});
  Listener bare;
  EXPECT_TRUE(program("ListFillKeygroups", static_cast<RIOObject*>(&bare)).Ok());
  RIOObject* other = program.Algo();
  const std::function<ROCParam*()> answers[] = {
      [] { return static_cast<ROCParam*>(nullptr); }, [] { return newROCParam(5); },
      [&] { return newROCParam(other); },
      [] { return newROCParam(static_cast<RIOObject*>(nullptr)); }};
  for (const auto& answer : answers) {
    editor["GetList"] = [&](ROCParams&, ROCParam** result) { *result = answer(); };
    EXPECT_TRUE(program("ListFillKeygroups", editor.Module()).Ok());
    EXPECT_TRUE(program("ListFillZones", 0, editor.Module()).Ok());
    EXPECT_TRUE(program("UpdateKeyboardSelection", 1, 1.0, 1.0, 1.0, 1.0, editor.Module()).Ok());
  }
  EXPECT_EQ(editor.list->RowCount(), 0);
}

TEST_F(Lists, GetListMayChangeTheProgram) {
  Editor editor({{30, 0, {142, 4, 0, 0}, ""}});
  const auto give = editor["GetList"];
  editor["GetList"] = [&](ROCParams& arguments, ROCParam** result) {
    program("Create", NullObject{});  // one keygroup
    give(arguments, result);
  };
  program("ListFillZones", 2, editor.Module());
  EXPECT_EQ(editor.list->RowCount(), 0);
  program.Make(3);
  program("ListFillKeygroups", editor.Module());
  EXPECT_EQ(editor.list->RowCount(), 1);
}

}  // namespace
}  // namespace zyl::test
