// Paints the cells of a list's rows: selects the template that a cell's object is copied from, and
// shows a value on that object. Make one RowPainter per fill: it borrows the list, the program and
// the templates, and owns none of them.
#pragma once

#include <cstdint>
#include <string>

#include "frame/ZylSProgram.h"
#include "host/lists.h"

// How a column shows its values: the second of its script values. Other numbers act like kText.
enum class DisplayType : int32_t {
  kBar = 1,
  kMarker = 2,
  kSwitch = 3,
  kNumber = 4,
  kKey = 5,
  kFraction = 6,  // in units of 1/256
  kText = 7,
  kOtherText = 8,
  kOtherNumber = 9,
  kKeyboard = 10,
};

// A column's script values, decoded.
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

// Returns "C3" for 60; black keys are sharps. Negative values continue downwards below octave -2.
std::string NoteName(int32_t value);

class RowPainter {
 public:
  // `root` owns the templates; it may be null and may lack any of them.
  RowPainter(const List& list, const akaiProgram& program, bool keyAsValue,
             const GOContainer* root);

  // Returns the template for a column's cells, resized to `width`; null for an empty object.
  GOObject* TemplateFor(DisplayType type, int32_t width);
  // Shows the value, clamped to the column's range, or for text columns `text` (null: unchanged).
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
