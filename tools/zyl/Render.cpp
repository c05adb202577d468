#include "Render.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "Drawing.h"
#include "StrokeFont.h"

namespace zyl {

namespace {

// Lengths are pixels; text sizes are the pixels of one font grid unit.
constexpr double kMargin = 10;  // around a page
constexpr double kItemGap = 8;  // below each item of a page, except headings
constexpr double kHeadingSize = 1.25;
constexpr double kHeadingHeight = 16;
constexpr double kHeaderHeight = 16;
constexpr double kTitleSize = 0.9;
constexpr double kPadding = 5;  // at the left and right of a column
constexpr double kTextHeight = 7;

struct Size {
  double width = 0;
  double height = 0;
};

// ---- Lists ----

// Returns whether the column's display type is a number; numbers are right-aligned.
bool IsNumeric(const ListColumn& column) {
  constexpr int32_t kNumericTypes[] = {4, 6, 9};
  return std::find(std::begin(kNumericTypes), std::end(kNumericTypes), column.ScriptValue(1)) !=
         std::end(kNumericTypes);
}

double CellWidth(const GOObject& object) {
  const auto* text = dynamic_cast<const GOText*>(&object);
  if (text != nullptr && text->AutoWidth()) return Picture::TextWidth(*text->Text(), 1);
  GORect bounds;
  object.GetBounds(bounds);
  return bounds.Width();
}

// Returns the left edges of the columns, which fit their titles and cells, then the list's width.
std::vector<double> ColumnEdges(const List& list) {
  std::vector<double> widths(static_cast<size_t>(list.View().ColumnCount()));
  for (size_t j = 0; j < widths.size(); ++j) {
    const ListColumn& column = *list.View().Column(static_cast<int>(j));
    widths[j] = std::max<double>(column.width, Picture::TextWidth(column.title, kTitleSize));
  }
  for (const ListItem* row = list.First(); row != nullptr; row = row->Next()) {
    for (size_t j = 0; j < widths.size(); ++j) {
      const ListElement* cell = row->Cell(static_cast<int>(j));
      if (cell == nullptr || cell->Object() == nullptr) continue;
      widths[j] = std::max(widths[j], CellWidth(*cell->Object()));
    }
  }
  std::vector<double> edges = {0};
  for (const double width : widths) edges.push_back(edges.back() + width + 2 * kPadding);
  return edges;
}

Size SizeOf(const List& list) {
  return {ColumnEdges(list).back(),
          kHeaderHeight + static_cast<double>(list.RowCount()) * list.RowHeight()};
}

void DrawCellText(Picture& picture, const Theme& theme, const std::string& text, double left,
                  double right, double top, bool atRight) {
  constexpr double kRounding = 0.01;  // covers rounding errors of summed widths
  const auto room = static_cast<int32_t>((right - left) / kGlyphAdvance + kRounding);
  std::string shown = text;
  if (GOText::Length(text) > room) shown = Truncate(text, std::max(room - 1, 0)) + "\u2026";
  const double x = atRight ? right - Picture::TextWidth(shown, 1) : left;
  picture.Text(x, top, shown, 1, theme.text);
}

void DrawList(Picture& picture, const Theme& theme, const List& list, double x, double y) {
  const std::vector<double> edges = ColumnEdges(list);
  const double top = y;
  picture.Rectangle(x, y, edges.back(), kHeaderHeight, theme.header);
  for (size_t j = 0; j + 1 < edges.size(); ++j) {
    const ListColumn& column = *list.View().Column(static_cast<int>(j));
    const double width = Picture::TextWidth(column.title, kTitleSize);
    const double left = IsNumeric(column) ? edges[j + 1] - kPadding - width : edges[j] + kPadding;
    picture.Text(x + left, y + 5, column.title, kTitleSize, theme.headerText);
  }
  y += kHeaderHeight;
  for (const ListItem* row = list.First(); row != nullptr; row = row->Next()) {
    const double height = list.RowHeight();
    picture.Rectangle(x, y, edges.back(), height,
                      row->Index() % 2 == 1 ? theme.oddRow : theme.page);
    for (size_t j = 0; j + 1 < edges.size(); ++j) {
      const ListElement* cell = row->Cell(static_cast<int>(j));
      const GOObject* object = cell == nullptr ? nullptr : cell->Object();
      if (object == nullptr) continue;
      const double left = x + edges[j] + kPadding;
      const double right = x + edges[j + 1] - kPadding;
      if (const std::string* text = object->Text()) {
        DrawCellText(picture, theme, *text, left, right, y + std::floor((height - kTextHeight) / 2),
                     IsNumeric(*list.View().Column(static_cast<int>(j))));
      } else {
        GORect bounds;
        object->GetBounds(bounds);
        DrawObject(picture, theme, *object, left, y + std::floor((height - bounds.Height()) / 2));
      }
    }
    y += height;
  }
  for (size_t j = 1; j + 1 < edges.size(); ++j) {
    picture.Rectangle(x + edges[j] - 0.5, top + 3, 0.5, kHeaderHeight - 6, theme.line);
  }
  picture.Rectangle(x, y - 0.5, edges.back(), 0.5, theme.line);
}

// ---- Items ----

Size SizeOf(const RenderItem& item, bool page) {
  if (item.list != nullptr) return SizeOf(*item.list);
  if (item.object == nullptr)
    return {Picture::TextWidth(item.heading, kHeadingSize), kHeadingHeight};
  if (const std::string* text = item.object->Text())
    return {Picture::TextWidth(*text, 1), kTextHeight + 2};
  GORect bounds;
  item.object->GetBounds(bounds);
  const bool labelled = page && IsKeyboard(*item.object);
  return {static_cast<double>(bounds.Width()),
          bounds.Height() + (labelled ? kOctaveLabelHeight : 0)};
}

void DrawItem(Picture& picture, const RenderOptions& options, const RenderItem& item, double x,
              double y) {
  const Theme& theme = ThemeOf(options.dark);
  if (item.list != nullptr) {
    DrawList(picture, theme, *item.list, x, y);
  } else if (item.object == nullptr) {
    picture.Text(x, y + 2, item.heading, kHeadingSize, theme.text);
  } else if (const std::string* text = item.object->Text()) {
    picture.Text(x, y, *text, 1, theme.text);
  } else {
    DrawObject(picture, theme, *item.object, x, y);
    if (options.page && IsKeyboard(*item.object)) {
      DrawOctaveLabels(picture, theme, *item.object, options.octave, x, y);
    }
  }
}

}  // namespace

std::string RenderPicture(const std::vector<RenderItem>& items, const RenderOptions& options,
                          PictureKind kind) {
  const double margin = options.page ? kMargin : 0;
  Size whole{0, 2 * margin};
  for (const RenderItem& item : items) {
    const Size size = SizeOf(item, options.page);
    whole.width = std::max(whole.width, size.width + 2 * margin);
    whole.height += size.height;
    if (item.heading.empty() && &item != &items.back()) whole.height += kItemGap;
  }
  const Theme& theme = ThemeOf(options.dark);
  Picture picture(kind, whole.width, whole.height, options.scale);
  picture.Rectangle(0, 0, std::ceil(whole.width) + 1, std::ceil(whole.height) + 1, theme.page);
  double y = margin;
  for (const RenderItem& item : items) {
    DrawItem(picture, options, item, margin, y);
    y += SizeOf(item, options.page).height;
    if (item.heading.empty()) y += kItemGap;
  }
  return picture.Encode();
}

}  // namespace zyl
