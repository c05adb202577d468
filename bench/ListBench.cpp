// Cost of refilling the keygroup list with 1000 keygroups and 12 columns, compared with reading the
// same values through the script method, in one run. A refill clears the list and fills it again.
#include <memory>
#include <vector>

#include "Measure.h"
#include "Script.h"
#include "host/lists.h"
#include "zyl/Editor.h"

namespace {

constexpr int kKeygroups = 1000;
constexpr int kRounds = 60;
constexpr uint32_t kFixed = ListColumn::kFixedWidth;

// Texts of every kind, bars, markers, switches, and the keyboard in column 3.
const std::vector<ListColumn>& Columns() {
  static const std::vector<ListColumn> columns = {
      {20, kFixed, {142, 4, 1, 999}, ""},  {30, kFixed, {100, 5, 0, 127}, ""},
      {30, kFixed, {101, 5, 0, 127}, ""},  {378, kFixed, {199, 10, 0, 0}, ""},
      {40, kFixed, {102, 6, 0, 0}, ""},    {60, kFixed, {103, 1, 0, 99}, ""},
      {60, kFixed, {105, 2, -50, 50}, ""}, {20, kFixed, {126, 3, 0, 1}, ""},
      {30, kFixed, {108, 9, 0, 99}, ""},   {30, kFixed, {109, 4, 0, 99}, ""},
      {60, kFixed, {110, 1, 0, 99}, ""},   {30, kFixed, {111, 4, 0, 99}, ""},
  };
  return columns;
}

// An algorithm whose method GetList returns its list.
class ListDispatch final : public ZylDispatch {
 public:
  explicit ListDispatch(List& list) : list_(list) {}
  ZylFuncInfo* GetFuncTable() override { return nullptr; }
  uint32_t* GetAuxTable() override { return nullptr; }
  hashEntry* GetHashTable() override { return nullptr; }
  hashEntry* RebuildHashTable() override { return nullptr; }
  const char* GetClassName() const override { return "Lists"; }
  const char* GetBaseClassName() const override { return ""; }
  void Destroy() override { delete this; }
  int CallFunctionIndirect(const char*, ROCParams*, ROCParam** result) override {
    *result = newROCParam(static_cast<RIOObject*>(&list_));
    return 0;
  }

 private:
  List& list_;
};

}  // namespace

int main() {
  const auto module = bench::LoadModule();
  const std::unique_ptr<ROCAlgo> program(ZylNewScriptObject("ZylSProgram"));
  bench::Call(*program, "Create", static_cast<RIOObject*>(nullptr));
  for (int k = 1; k < kKeygroups; ++k) bench::Call(*program, "KGCreate", k);
  constexpr int32_t kRowHeight = 16;
  ROCAlgo lists;
  lists.SetGraphicRoot(zyl::MakeListRoot(kRowHeight).release());
  List list(static_cast<int>(Columns().size()), kRowHeight, lists.GraphicRoot(), Columns());
  lists.SetDispatch(new ListDispatch(list));

  int64_t sum = 0;
  const double ratio = bench::Ratio(
      kRounds,
      [&] {
        list.Clear();
        bench::Call(*program, "ListFillKeygroups", static_cast<RIOObject*>(&lists));
      },
      [&] {
        for (int k = 0; k < kKeygroups; ++k) {
          for (const ListColumn& column : Columns()) {
            sum += bench::Call(*program, "KGIntValue", k, column.ScriptValue(0))->Int();
          }
        }
        asm volatile("" : : "r"(sum));
      });
  if (list.RowCount() != kKeygroups) bench::Fail("the list does not have a row for each keygroup");
  bench::Report("refilling the keygroup list, times plain reads", ratio, bench::AtMost(3));
}
