#include "views/ListMethods.h"

#include <memory>
#include <string>

#include "params/ByNumber.h"
#include "params/ParameterNumbers.h"
#include "sample/ObjectMethods.h"
#include "views/RowPainter.h"

namespace {

// This module's row type. The host's list owns the rows.
class ProgramListItem final : public ListItem {
 public:
  explicit ProgramListItem(int cells) : ListItem(cells) {}
  ~ProgramListItem() override = default;
};

ListItem* AppendRow(List& list) {
  ListItem* row = new ProgramListItem(list.ColumnCount());
  list.AddTail(row);
  return row;
}

// Calls paint(cell, column index, column definition) for each cell whose column the view defines.
template <class Paint>
void ForEachCell(ListItem& row, const ModuleList& lists, Paint paint) {
  for (int j = 0; j < lists.list->ColumnCount(); ++j) {
    ListElement* cell = row.Cell(j);
    const ListColumn* column = lists.view == nullptr ? nullptr : lists.view->Column(j);
    if (cell != nullptr && column != nullptr) paint(*cell, j, *column);
  }
}

void FillKeygroupRow(ZylSProgram& object, RowPainter& painter, ListItem& row,
                     const ModuleList& lists, int keygroup) {
  // Cell 0 identifies the row's keygroup even if the view does not define column 0.
  if (row.CellCount() > 0) row.Cell(0)->value = keygroup;
  ForEachCell(row, lists, [&](ListElement& cell, int j, const ListColumn& column) {
    const ColumnDefinition definition(column);
    row.CreateGO(j, painter.TemplateFor(definition.type, column.width));
    const int32_t value = KeyGroupParamValue(object, definition.parameter, keygroup);
    painter.PaintCell(cell, definition, value, nullptr);
    lists.list->AddListElementToViewTree(&cell, j);
  });
}

void SetZoneOfRow(ZylSProgram& object, ListElement& cell, int keygroup, int zone) {
  cell.value = zone;
  // Releases the value only: the program owns the sample object.
  deleteROCParam(cell.objectValue);
  cell.objectValue = nullptr;
  genericSample* sample = object.program->sampleTable[kZones * keygroup + zone];
  cell.objectValue = newROCParam(static_cast<RIOObject*>(SampleObjectFor(object, sample)));
}

void FillZoneRow(ZylSProgram& object, RowPainter& painter, ListItem& row, const ModuleList& lists,
                 int keygroup, int zone) {
  if (row.CellCount() > 0) SetZoneOfRow(object, *row.Cell(0), keygroup, zone);
  ForEachCell(row, lists, [&](ListElement& cell, int j, const ListColumn& column) {
    const ColumnDefinition definition(column);
    const bool fixedWidth = (column.style & ListColumn::kFixedWidth) != 0;
    row.CreateGO(j, painter.TemplateFor(definition.type, fixedWidth ? column.width : -1));
    const int32_t p = definition.parameter;
    std::string text;
    int32_t value = 0;
    if (p < number::kFirstSample) {
      text = ZoneParamText(object, p, keygroup, zone);
      value = ZoneParamValue(object, p, keygroup, zone);
    } else {
      text = SampleParamText(object, p, keygroup, zone);
      value = SampleParamValue(object, p, keygroup, zone);
    }
    painter.PaintCell(cell, definition, value, &text);
    lists.list->AddListElementToViewTree(&cell, j);
  });
}

}  // namespace

void ListFillKeygroups(Call& call, LoadedProgram, ListModuleArg module,
                       Opt<bool, "KeyAsValue"> keyAsValue) {
  const bool asValue = keyAsValue.ValueOr(false);
  const ModuleList lists = CallGetList(call, module);
  const akaiProgram* record = call.program.program;
  if (lists.list == nullptr || record == nullptr) return;
  RowPainter painter(*lists.list, *record, asValue, lists.root);
  for (int k = 0; k < record->KeyGroupCount(); ++k) {
    FillKeygroupRow(call.program, painter, *AppendRow(*lists.list), lists, k);
  }
}

void ListFillZones(Call& call, LoadedProgram, KeyGroupOrNone keygroup, ListModuleArg module,
                   Opt<bool, "KeyAsValue"> keyAsValue) {
  if (*keygroup < 0) return;
  const int k = *keygroup;
  const bool asValue = keyAsValue.ValueOr(false);
  const ModuleList lists = CallGetList(call, module);
  const akaiProgram* record = call.program.program;
  if (lists.list == nullptr || record == nullptr || k >= record->KeyGroupCount()) return;
  RowPainter painter(*lists.list, *record, asValue, lists.root);
  ListItem* row = lists.list->First();
  for (int zone = 0; zone < kZones; ++zone, row = row->Next()) {
    if (row == nullptr) row = AppendRow(*lists.list);
    FillZoneRow(call.program, painter, *row, lists, k, zone);
  }
}
