// A surface to draw on that becomes the bytes of a PNG or SVG file. Lengths are pixels before
// scaling, y down; colours are 0xRRGGBB.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace zyl {

enum class PictureKind { kPng, kSvg };

class Picture {
 public:
  // Largest number of pixels along one side, and in all.
  static constexpr double kLargestSide = 32767;
  static constexpr double kLargestArea = 100e6;

  // Throws std::runtime_error when the surface cannot be had.
  Picture(PictureKind kind, double width, double height, double scale);

  void Rectangle(double x, double y, double width, double height, uint32_t rgb);
  void RoundedRectangle(double x, double y, double width, double height, double radius,
                        uint32_t rgb);
  // `top` is where capitals begin, `size` how high a unit of the font's grid is.
  void Text(double x, double top, std::string_view text, double size, uint32_t rgb);

  // The file's bytes; nothing can be drawn any more.
  std::string Encode();

 private:
  void SetColor(uint32_t rgb);

  struct Destroy {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  };
  PictureKind kind_;
  std::string bytes_;
  std::unique_ptr<cairo_surface_t, Destroy> surface_;
  std::unique_ptr<cairo_t, Destroy> context_;
};

}  // namespace zyl
