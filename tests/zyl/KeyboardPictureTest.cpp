// Pictures of keyboards: the place of every key, and the marked range.
#include <cairo.h>

#include <memory>

#include "zyl/ZylProcess.h"

namespace zyl::test {
namespace {

constexpr int kScale = 4;
constexpr int kHeight = 24;
constexpr uint32_t kWhite = 0xFFFFFF;
constexpr uint32_t kMarkedWhite = 0x11AA22;
constexpr uint32_t kMarkedBlack = 0x3344CC;

using Image = std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)>;

// The colour at a point in the keyboard's own pixels.
uint32_t At(const Image& image, double x, double y) {
  const unsigned char* row =
      cairo_image_surface_get_data(image.get()) +
      static_cast<int>(y * kScale) * cairo_image_surface_get_stride(image.get());
  const unsigned char* pixel = row + static_cast<ptrdiff_t>(x * kScale) * 4;
  return static_cast<uint32_t>(pixel[2] << 16 | pixel[1] << 8 | pixel[0]);
}

Image Draw(int low, int high) {
  const TempFolder folder;
  const std::string path = folder / "keys.png";
  const Outcome outcome =
      Zyl({"eval",
           "local low, high, white, black, scale, path = table.unpack(arg) "
           "p = host.new('ZylSProgram') p:Create(host.null) p:KGlowKey(0, low // 1 | 0) "
           "p:KGhighKey(0, high // 1 | 0) k = host.keyboard{} p:DrawKeyGroupKB(0, k, host.null) "
           "k:child('KBSelector').fill = white // 1 | 0 k:child('KBBKSel').fill = black // 1 | 0 "
           "host.render(k, path, { scale = tonumber(scale) })",
           std::to_string(low), std::to_string(high), std::to_string(kMarkedWhite),
           std::to_string(kMarkedBlack), std::to_string(kScale), path});
  EXPECT_EQ(outcome.err, "");
  return {cairo_image_surface_create_from_png(path.c_str()), cairo_surface_destroy};
}

TEST(KeyboardPicture, MarksOnlyTheKeysOfTheRange) {
  // For each note of an octave, the white key at or below it; equal ones in a row: a black key.
  constexpr int kWhiteOf[] = {0, 0, 1, 1, 2, 3, 3, 4, 4, 5, 5, 6};
  const std::pair<int, int> ranges[] = {{0, 127}, {60, 60}, {61, 61}, {64, 65}, {127, 127}};
  for (const auto& [low, high] : ranges) {
    const Image image = Draw(low, high);
    ASSERT_EQ(cairo_image_surface_get_width(image.get()), 378 * kScale);
    ASSERT_EQ(cairo_image_surface_get_height(image.get()), kHeight * kScale);
    for (int key = 0; key < 128; ++key) {
      SCOPED_TRACE(testing::Message() << key << " in " << low << " " << high);
      const bool inside = low <= key && key <= high;
      const int note = key % 12;
      const double left = 2 + 35 * (key / 12) + 5 * kWhiteOf[note];
      if (note > 0 && kWhiteOf[note] == kWhiteOf[note - 1]) {
        const uint32_t shown = At(image, left + 4.75, 6);
        EXPECT_EQ(shown == kMarkedBlack, inside);
        EXPECT_NE(shown, kWhite);
        continue;
      }
      const uint32_t wanted = inside ? kMarkedWhite : kWhite;
      for (const double x : {0.1, 2.25, 4.4}) {
        EXPECT_EQ(At(image, left + x, kHeight - 4), wanted);
      }
      EXPECT_NE(At(image, left + 4.75, kHeight - 4), wanted) << "no gap after the key";
    }
    EXPECT_NE(At(image, 377.5, kHeight - 4), kMarkedWhite) << "beyond the last key";
  }
}

}  // namespace
}  // namespace zyl::test
