#include "views/RowPainter.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "views/Keyboard.h"

namespace {

constexpr int32_t kFrame = 2;        // from the edge of "Back" to its inner object
constexpr int32_t kMarkerWidth = 2;  // width of the inner object when it is a marker

void Resize(GOObject& object, int32_t width, int32_t height) {
  object.SizeTo(width, height, 1, 1, 0, 0);
}

// Formats a number without allocating.
class NumberText {
 public:
  explicit NumberText(int32_t value) { SetEnd(std::to_chars(buffer_, buffer_ + kRoom, value)); }
  // With two decimals.
  explicit NumberText(double value) {
    SetEnd(std::to_chars(buffer_, buffer_ + kRoom, value, std::chars_format::fixed, 2));
  }
  std::string_view Text() const { return {buffer_, length_}; }

 private:
  static constexpr size_t kRoom = 32;
  void SetEnd(std::to_chars_result result) { length_ = static_cast<size_t>(result.ptr - buffer_); }
  char buffer_[kRoom];
  size_t length_ = 0;
};

// Scales the value from the column's range to 0..length, rounding towards zero. Returns 0 for an
// empty range.
int32_t ScaleToLength(int32_t length, const ColumnDefinition& column, int32_t value) {
  const int64_t range = int64_t{column.maximum} - column.minimum;
  if (range == 0) return 0;
  return static_cast<int32_t>(length * (int64_t{value} - column.minimum) / range);
}

GOObject* InnerObject(const ListElement& cell) {
  const auto* container = dynamic_cast<const GOContainer*>(cell.Object());
  return container == nullptr ? nullptr : container->FirstChild();
}

void PaintBar(const ListElement& cell, const ColumnDefinition& column, int32_t value) {
  GOObject* bar = InnerObject(cell);
  if (bar == nullptr) return;
  GORect r;
  cell.Object()->GetBounds(r);
  Resize(*bar, ScaleToLength(r.Width() - 2 * kFrame, column, value), r.Height() - 2 * kFrame);
}

void PaintMarker(const ListElement& cell, const ColumnDefinition& column, int32_t value) {
  GOObject* marker = InnerObject(cell);
  if (marker == nullptr) return;
  GORect r;
  cell.Object()->GetBounds(r);
  r = r.ShiftedBy(cell.Object()->GetOrigin());
  marker->MoveTo(r.left + kFrame + ScaleToLength(r.Width() - 2 * kFrame, column, value),
                 r.top + kFrame);
}

}  // namespace

std::string NoteName(int32_t value) {
  constexpr std::string_view kLetters = "C#D#EF#G#A#B";
  constexpr int32_t kNotes = 12;
  constexpr int32_t kOctaveOfZero = -2;
  const int32_t octave = value >= 0 ? value / kNotes : -1 - (-1 - value) / kNotes;
  const auto note = static_cast<size_t>(value - int64_t{kNotes} * octave);
  std::string name(1, kLetters[kLetters[note] == '#' ? note - 1 : note]);
  if (kLetters[note] == '#') name += '#';
  return name.append(NumberText(octave + kOctaveOfZero).Text());
}

RowPainter::RowPainter(const List& list, const akaiProgram& program, bool keyAsValue,
                       const GOContainer* root)
    : list_(list), program_(program), keyAsValue_(keyAsValue) {
  if (root == nullptr) return;
  text_ = dynamic_cast<GOText*>(root->FindTemplate("TextTemplate", 0));
  back_ = dynamic_cast<GOContainer*>(root->FindTemplate("Back", 0));
  backInner_ = back_ == nullptr ? nullptr : back_->FirstChild();
  buttonOff_ = root->FindTemplate("BtOff", 0);
  buttonOn_ = root->FindTemplate("BtOn", 0);
  keyboard_ = root->FindTemplate("KBBack", 0);
}

GOObject* RowPainter::TemplateFor(DisplayType type, int32_t width) {
  const int32_t rowHeight = list_.RowHeight();
  switch (type) {
    case DisplayType::kBar:
      if (back_ == nullptr) return nullptr;
      if (backInner_ != nullptr) {
        const GOPoint origin = back_->GetOrigin();
        backInner_->MoveTo(origin.x + kFrame, origin.y + kFrame);
      }
      Resize(*back_, width, rowHeight - 2);
      return back_;
    case DisplayType::kMarker:
      if (back_ == nullptr) return nullptr;
      Resize(*back_, width, rowHeight - 2);
      if (backInner_ != nullptr) Resize(*backInner_, kMarkerWidth, rowHeight - 6);
      return back_;
    case DisplayType::kSwitch:
      return nullptr;
    case DisplayType::kKeyboard:
      return keyboard_;
    default:
      if (text_ == nullptr) return nullptr;
      text_->SetAutoWidth(width < 0);
      if (width >= 0) Resize(*text_, width, text_->FontHeight());
      return text_;
  }
}

void RowPainter::PaintCell(ListElement& cell, const ColumnDefinition& column, int32_t value,
                           const std::string* text) {
  if (cell.Object() == nullptr) return;
  if (column.maximum != column.minimum) {
    if (value > column.maximum) {
      value = column.maximum;
    } else if (value < column.minimum) {
      value = column.minimum;
    }
  }
  switch (column.type) {
    case DisplayType::kBar:
      return PaintBar(cell, column, value);
    case DisplayType::kMarker:
      return PaintMarker(cell, column, value);
    case DisplayType::kSwitch:
      return cell.CreateGO(value != 0 ? buttonOn_ : buttonOff_, 1);
    case DisplayType::kKeyboard:
      return PaintKeyboard(cell, value);
    default:
      return PaintText(cell, column, value, text);
  }
}

void RowPainter::PaintKeyboard(ListElement& cell, int32_t keygroup) {
  auto* keyboard = dynamic_cast<GOContainer*>(cell.Object());
  if (keyboard == nullptr || keygroup < 0 || keygroup >= program_.KeyGroupCount()) return;
  const akaiKeyGroup& record = program_.keyGroupArray[keygroup];
  PaintKeyRange(keyboard, record.lowKey, record.highKey);
}

void RowPainter::PaintText(ListElement& cell, const ColumnDefinition& column, int32_t value,
                           const std::string* text) {
  constexpr double kFractionUnit = 0.00390625;  // 1/256
  const auto show = [&](std::string_view shown) { cell.Object()->SetText(shown, -1, -1); };
  switch (column.type) {
    case DisplayType::kNumber:
    case DisplayType::kOtherNumber:
      return show(NumberText(value).Text());
    case DisplayType::kKey:
      return keyAsValue_ ? show(NumberText(value).Text()) : show(NoteName(value));
    case DisplayType::kFraction:
      return show(NumberText(value * kFractionUnit).Text());
    default:
      if (text != nullptr) show(*text);
  }
}
