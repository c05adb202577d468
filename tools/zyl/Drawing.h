// Draws graphic objects: keyboards with their keys, bars, markers, switches, rectangles.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Picture.h"
#include "host/graphics.h"

namespace zyl {

// The colours of objects without a fill, as 0xRRGGBB.
struct Theme {
  uint32_t page;
  uint32_t text;
  uint32_t header;
  uint32_t headerText;
  uint32_t oddRow;
  uint32_t line;
  uint32_t track;   // background of bars and markers
  uint32_t accent;  // bars, markers, switches that are on
  uint32_t off;     // switches that are off
  uint32_t knob;
  uint32_t keyEdge;
  uint32_t blackKey;
  double whiteKeys;  // brightness factor of the white keys' fill, 0 to 1
};
const Theme& ThemeOf(bool dark);

// Returns whether the object is a container with a "KBSelector" child.
bool IsKeyboard(const GOObject& object);

// Draws the object and its children with its top left corner at x, y.
void DrawObject(Picture& picture, const Theme& theme, const GOObject& object, double x, double y);

// Draws the octave names below a keyboard whose top left corner is at x, y. Key 60 is C of
// `octave`.
inline constexpr double kOctaveLabelHeight = 9;
void DrawOctaveLabels(Picture& picture, const Theme& theme, const GOObject& keyboard, int octave,
                      double x, double y);

// Returns the first `count` characters of a UTF-8 text.
std::string Truncate(std::string_view text, int32_t count);

}  // namespace zyl
