// Pictures of keyboards: every key stands where it belongs, and those of the range, no others, are
// marked.
#include <cairo.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

namespace {

constexpr int kScale = 4;
constexpr int kHeight = 24;
constexpr uint32_t kWhite = 0xFFFFFF;
constexpr uint32_t kMarkedWhite = 0x11AA22;
constexpr uint32_t kMarkedBlack = 0x3344CC;

class Image {
 public:
  explicit Image(const std::string& path)
      : surface_(cairo_image_surface_create_from_png(path.c_str()), cairo_surface_destroy) {}
  int Width() const { return cairo_image_surface_get_width(surface_.get()); }
  int Height() const { return cairo_image_surface_get_height(surface_.get()); }
  // The colour at a place in the keyboard's own pixels.
  uint32_t At(double x, double y) const {
    const unsigned char* row =
        cairo_image_surface_get_data(surface_.get()) +
        static_cast<int>(y * kScale) * cairo_image_surface_get_stride(surface_.get());
    const unsigned char* pixel = row + static_cast<ptrdiff_t>(x * kScale) * 4;
    return static_cast<uint32_t>(pixel[2] << 16 | pixel[1] << 8 | pixel[0]);
  }

 private:
  std::unique_ptr<cairo_surface_t, void (*)(cairo_surface_t*)> surface_;
};

Image Draw(int low, int high) {
  const std::string path =
      (std::filesystem::temp_directory_path() / ("zyl-keys-" + std::to_string(getpid()) + ".png"))
          .string();
  const std::string code =
      "p = host.new('ZylSProgram') p:Create(host.null) p:KGlowKey(0, " + std::to_string(low) +
      ") p:KGhighKey(0, " + std::to_string(high) +
      ") k = host.keyboard{} p:DrawKeyGroupKB(0, k, host.null) k:child('KBSelector').fill = " +
      std::to_string(kMarkedWhite) + " k:child('KBBKSel').fill = " + std::to_string(kMarkedBlack) +
      " host.render(k, '" + path + "', { scale = " + std::to_string(kScale) + " })";
  EXPECT_EQ(std::system((std::string(ZYL_PROGRAM) + " eval \"" + code + "\"").c_str()), 0);
  Image image(path);
  std::filesystem::remove(path);
  return image;
}

TEST(KeyboardPicture, MarksTheKeysOfTheRangeAndNoOthers) {
  // Of each note of an octave: the white key that it is or lies behind, and whether it is black.
  constexpr int kWhiteOf[] = {0, 0, 1, 1, 2, 3, 3, 4, 4, 5, 5, 6};
  constexpr bool kBlack[] = {false, true,  false, true,  false, false,
                             true,  false, true,  false, true,  false};
  const std::pair<int, int> ranges[] = {{0, 127}, {60, 60}, {61, 61}, {64, 65}, {127, 127}};
  for (const auto& [low, high] : ranges) {
    const Image image = Draw(low, high);
    ASSERT_EQ(image.Width(), 378 * kScale);
    ASSERT_EQ(image.Height(), kHeight * kScale);
    for (int key = 0; key < 128; ++key) {
      const bool inside = low <= key && key <= high;
      const double left = 2 + 35 * (key / 12) + 5 * kWhiteOf[key % 12];
      if (!kBlack[key % 12]) {
        const uint32_t wanted = inside ? kMarkedWhite : kWhite;
        for (const double x : {left + 0.1, left + 2.25, left + 4.4}) {
          EXPECT_EQ(image.At(x, kHeight - 4), wanted) << key << " in " << low << " " << high;
        }
        EXPECT_NE(image.At(left + 4.75, kHeight - 4), wanted) << "no gap after " << key;
        continue;
      }
      const uint32_t shown = image.At(left + 4.75, 6);
      EXPECT_EQ(shown == kMarkedBlack, inside) << key << " in " << low << " " << high;
      EXPECT_NE(shown, kWhite) << key;
    }
    // Beyond the last key there is none.
    EXPECT_NE(image.At(377.5, kHeight - 4), kMarkedWhite);
  }
}

}  // namespace
