// A drawing surface that is encoded as a PNG or SVG file. Lengths are pixels before scaling, y
// down; colours are 0xRRGGBB. Equal drawings give equal bytes on every machine: a PNG draws text
// with StrokeFont; an SVG contains it as text elements, on top of everything else.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace zyl {

enum class PictureKind { kPng, kSvg };
// Returns the kind for a path that ends in .png or .svg in any case, otherwise nothing.
std::optional<PictureKind> PictureKindOf(std::string_view path);

struct PicturePoint {
  double x = 0;
  double y = 0;
};

class Picture {
 public:
  // Maximum pixels per side and in total.
  static constexpr double kLargestSide = 32767;
  static constexpr double kLargestArea = 100e6;

  // Throws std::runtime_error if the size exceeds these limits or cairo fails.
  Picture(PictureKind kind, double width, double height, double scale);

  void Rectangle(double x, double y, double width, double height, uint32_t rgb);
  void RoundedRectangle(double x, double y, double width, double height, double radius,
                        uint32_t rgb);
  void Line(std::span<const PicturePoint> points, double width, uint32_t rgb);
  void Polygon(std::span<const PicturePoint> points, uint32_t rgb);
  // `top` is the upper edge of capitals; `size` is the size of one font grid unit.
  void Text(double x, double top, std::string_view text, double size, uint32_t rgb);
  static double TextWidth(std::string_view text, double size);

  // Returns the file's bytes; throws std::runtime_error if cairo fails. Do not draw afterwards.
  std::string Encode();

 private:
  void Path(std::span<const PicturePoint> points);
  void StrokeText(double x, double top, std::string_view text, double size);
  void SetColor(uint32_t rgb);

  struct Destroy {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  };
  PictureKind kind_;
  double scale_;
  std::string bytes_;
  std::string svgText_;  // <text> elements, added by Encode
  std::unique_ptr<cairo_surface_t, Destroy> surface_;
  std::unique_ptr<cairo_t, Destroy> context_;
};

}  // namespace zyl
