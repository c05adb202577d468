// Paints the cells of a list's rows: for each it chooses the template, and shows a value on the
// copy that became the cell's object. Made for one fill; it keeps nothing beyond it.
#pragma once

#include <cstdint>
#include <string>

#include "frame/ZylSProgram.h"
#include "host/lists.h"

// What a column shows, the second of its script values. Others show their text like kText.
enum class DisplayType : int32_t {
  kBar = 1,
  kMarker = 2,
  kSwitch = 3,
  kNumber = 4,
  kKey = 5,
  kFraction = 6,  // of 256
  kText = 7,
  kOtherText = 8,
  kOtherNumber = 9,
  kKeyboard = 10,
};

// What a column's script values say.
struct ColumnDefinition {
  explicit ColumnDefinition(const ListColumn& column)
      : parameter(column.ScriptValue(0)),
        type(static_cast<DisplayType>(column.ScriptValue(1))),
        minimum(column.ScriptValue(2)),
        maximum(column.ScriptValue(3)) {}

  int32_t parameter;
  DisplayType type;
  int32_t minimum;
  int32_t maximum;
};

// "C3" for 60, a sharp for each black key; octaves go on downwards for negative values.
std::string NoteName(int32_t value);

class RowPainter {
 public:
  // `root` holds the templates; those that it does not have, or all without a root, are left out.
  RowPainter(const List& list, const akaiProgram& program, bool keyAsValue,
             const GOContainer* root);

  // The template for a column's cells, made ready for this width; null for an empty object.
  GOObject* TemplateFor(DisplayType type, int32_t width);
  // Shows a value, held to the column's range, or the text (null: none).
  void PaintCell(ListElement& cell, const ColumnDefinition& column, int32_t value,
                 const std::string* text);

 private:
  void PaintKeyboard(ListElement& cell, int32_t keygroup);
  void PaintText(ListElement& cell, const ColumnDefinition& column, int32_t value,
                 const std::string* text);

  const List& list_;
  const akaiProgram& program_;
  bool keyAsValue_;
  GOText* text_ = nullptr;
  GOContainer* back_ = nullptr;
  GOObject* backInner_ = nullptr;
  GOObject* buttonOff_ = nullptr;
  GOObject* buttonOn_ = nullptr;
  GOObject* keyboard_ = nullptr;
};
