// The letters of rendered pictures: strokes on a grid, the same on every machine.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zyl {

// The unit is the grid's: capitals are 6 high and 4 wide, y down, the baseline at 6, tails to 8.
struct StrokePoint {
  int x;
  int y;
};
using Stroke = std::vector<StrokePoint>;

inline constexpr int kGlyphAdvance = 6;
inline constexpr int kGlyphHeight = 6;

// The strokes of a character. Letters with accents are drawn without them; a character that the
// font does not have is a box.
std::vector<Stroke> StrokesOf(char32_t character);
// The characters of a UTF-8 text; a byte that is none is U+FFFD.
std::u32string DecodeUtf8(std::string_view text);

}  // namespace zyl
