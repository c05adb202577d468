#include "views/KeyboardMethods.h"

#include <cmath>

#include "views/Keyboard.h"

namespace {

constexpr int kKeyboardColumn = 3;

struct Colors {
  int32_t marker;
  int32_t background;
};

// Truncates modulo 2^32, so colours above INT32_MAX keep their bits. Returns 0 for a number that is
// not finite.
int32_t ColorOf(double number) {
  constexpr double kRange = 4294967296.0;
  const double whole = std::fmod(std::trunc(number), kRange);
  return std::isfinite(whole) ? static_cast<int32_t>(static_cast<int64_t>(whole)) : 0;
}

// Returns null if the object is null or its fill is not a solid colour.
GOSolidFill* SolidFill(const GOObject* object) {
  GOFill* fill = object == nullptr ? nullptr : object->Fill();
  return fill != nullptr && fill->isSolidColor() ? static_cast<GOSolidFill*>(fill) : nullptr;
}

void Recolor(GOObject& object, GOSolidFill& fill, int32_t color) {
  if (fill.color == color) return;
  fill.color = color;
  object.FillChanged(0);
  object.Refresh(0, 1);
}

void RecolorKeyboard(const GOContainer& keyboard, const Colors& colors) {
  GOObject* marker = keyboard.GetChild("KBSelector", 1);
  GOObject* background = keyboard.GetChild("KBBKSel", 1);
  GOSolidFill* markerFill = SolidFill(marker);
  GOSolidFill* backgroundFill = SolidFill(background);
  if (markerFill == nullptr || backgroundFill == nullptr) return;
  Recolor(*background, *backgroundFill, colors.background);
  Recolor(*marker, *markerFill, colors.marker);
}

}  // namespace

void DrawKeyGroupKB(ZylSProgram&, LoadedProgram program, KeyGroupOrNone keygroup,
                    ContainerArg<"GO"> keyboard, ListModuleArg) {
  if (keyboard.container == nullptr || *keygroup < 0) return;
  const akaiKeyGroup& record = program->keyGroupArray[*keygroup];
  PaintKeyRange(keyboard.container, record.lowKey, record.highKey);
}

void UpdateKeyboardSelection(Call& call, LoadedProgram, Arg<int32_t, "SelKey"> key,
                             Arg<double, "Color"> color, Arg<double, "ColorBK"> colorBK,
                             Arg<double, "ColorSel"> colorSel, Arg<double, "ColorBKSel"> colorBKSel,
                             ListModuleArg module) {
  // Read the arguments first: GetList is a script and may change the caller's variables.
  const int32_t selected = *key;
  const Colors plain{ColorOf(*color), ColorOf(*colorBK)};
  const Colors marked{ColorOf(*colorSel), ColorOf(*colorBKSel)};
  const ModuleList lists = CallGetList(call, module);
  const akaiProgram* record = call.program.program;
  if (lists.list == nullptr || record == nullptr) return;
  for (const ListItem* row = lists.list->First(); row != nullptr && row->CellCount() > 0;
       row = row->Next()) {
    const int k = row->Cell(0)->value;
    const ListElement* cell = row->Cell(kKeyboardColumn);
    if (k < 0 || k >= record->KeyGroupCount() || cell == nullptr) continue;
    const auto* keyboard = dynamic_cast<const GOContainer*>(cell->Object());
    if (keyboard == nullptr) continue;
    const akaiKeyGroup& keygroup = record->keyGroupArray[k];
    const bool inRange = keygroup.lowKey <= selected && selected <= keygroup.highKey;
    RecolorKeyboard(*keyboard, inRange ? marked : plain);
  }
}
