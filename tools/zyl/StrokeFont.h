// The font of PNG pictures: strokes on a grid, so text looks the same on every machine.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zyl {

// In grid units, y down: capitals are 4 wide and 6 high, the baseline is at 6, descenders end at 8.
struct StrokePoint {
  int x;
  int y;
};
using Stroke = std::vector<StrokePoint>;

inline constexpr int kGlyphAdvance = 6;
inline constexpr int kGlyphHeight = 6;

// Returns the strokes of a character. Accented letters are drawn without the accent; characters
// that are not in the font are drawn as a box.
std::vector<Stroke> StrokesOf(char32_t character);
// Decodes UTF-8; invalid bytes become U+FFFD.
std::u32string DecodeUtf8(std::string_view text);

}  // namespace zyl
