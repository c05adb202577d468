// How single graphic objects look: keyboards with their keys, bars, markers, switches, rectangles.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Picture.h"
#include "host/graphics.h"

namespace zyl {

// The colours of what has no fill of its own.
struct Theme {
  uint32_t page;
  uint32_t text;
  uint32_t header;
  uint32_t headerText;
  uint32_t oddRow;
  uint32_t line;
  uint32_t track;   // behind bars and markers
  uint32_t accent;  // bars, markers, switches that are on
  uint32_t off;     // switches that are off
  uint32_t knob;
  uint32_t keyEdge;
  uint32_t blackKey;
  double whiteKeys;  // how bright they are, 1 as their fill says
};
const Theme& ThemeOf(bool dark);

// A container with the child that marks a range of keys.
bool IsKeyboard(const GOObject& object);

// Draws the object and what it contains, its top left corner at x, y.
void DrawObject(Picture& picture, const Theme& theme, const GOObject& object, double x, double y);

// The names of the octaves, below a keyboard that is drawn at x, y. Middle C, key 60, is C3.
inline constexpr double kOctaveLabelHeight = 9;
void DrawOctaveLabels(Picture& picture, const Theme& theme, const GOObject& keyboard, double x,
                      double y);

// The first `count` characters of a UTF-8 text.
std::string CutTo(std::string_view text, int32_t count);

}  // namespace zyl
