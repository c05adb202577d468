#include "Picture.h"

#include <cairo-svg.h>

#include <algorithm>
#include <cmath>
#include <exception>
#include <numbers>
#include <stdexcept>

#include "StrokeFont.h"

namespace zyl {

namespace {

// Called from C: no exception passes.
cairo_status_t Append(void* bytes, const unsigned char* data, unsigned int length) {
  try {
    static_cast<std::string*>(bytes)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
  } catch (const std::exception&) {
    return CAIRO_STATUS_NO_MEMORY;
  }
}

// An SVG's outermost group is named by a count of all surfaces so far: one name for all makes equal
// pictures equal files.
void NameGroup(std::string& svg) {
  constexpr std::string_view kName = "id=\"surface";
  const size_t at = svg.find(kName);
  if (at == std::string::npos) return;
  const size_t digits = at + kName.size();
  svg.erase(digits, svg.find('"', digits) - digits);
}

void Check(cairo_status_t status) {
  if (status != CAIRO_STATUS_SUCCESS) throw std::runtime_error(cairo_status_to_string(status));
}

}  // namespace

Picture::Picture(PictureKind kind, double width, double height, double scale) : kind_(kind) {
  const double pixelsWide = std::max(std::ceil(width * scale), 1.0);
  const double pixelsHigh = std::max(std::ceil(height * scale), 1.0);
  if (kind == PictureKind::kSvg) {
    surface_.reset(cairo_svg_surface_create_for_stream(Append, &bytes_, pixelsWide, pixelsHigh));
    Check(cairo_surface_status(surface_.get()));
    cairo_svg_surface_set_document_unit(surface_.get(), CAIRO_SVG_UNIT_PX);
  } else {
    surface_.reset(cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(pixelsWide),
                                              static_cast<int>(pixelsHigh)));
    Check(cairo_surface_status(surface_.get()));
  }
  context_.reset(cairo_create(surface_.get()));
  Check(cairo_status(context_.get()));
  cairo_scale(context_.get(), scale, scale);
  cairo_set_line_cap(context_.get(), CAIRO_LINE_CAP_ROUND);
  cairo_set_line_join(context_.get(), CAIRO_LINE_JOIN_ROUND);
}

void Picture::SetColor(uint32_t rgb) {
  const auto part = [&](int shift) { return static_cast<double>(rgb >> shift & 0xFF) / 255.0; };
  cairo_set_source_rgb(context_.get(), part(16), part(8), part(0));
}

void Picture::Rectangle(double x, double y, double width, double height, uint32_t rgb) {
  if (width <= 0 || height <= 0) return;
  SetColor(rgb);
  cairo_rectangle(context_.get(), x, y, width, height);
  cairo_fill(context_.get());
}

void Picture::RoundedRectangle(double x, double y, double width, double height, double radius,
                               uint32_t rgb) {
  if (width <= 0 || height <= 0) return;
  const double r = std::min({radius, width / 2, height / 2});
  constexpr double kQuarter = std::numbers::pi / 2;
  cairo_t* c = context_.get();
  SetColor(rgb);
  cairo_new_sub_path(c);
  cairo_arc(c, x + width - r, y + r, r, -kQuarter, 0);
  cairo_arc(c, x + width - r, y + height - r, r, 0, kQuarter);
  cairo_arc(c, x + r, y + height - r, r, kQuarter, 2 * kQuarter);
  cairo_arc(c, x + r, y + r, r, 2 * kQuarter, 3 * kQuarter);
  cairo_close_path(c);
  cairo_fill(c);
}

void Picture::Text(double x, double top, std::string_view text, double size, uint32_t rgb) {
  constexpr double kPenWidth = 0.95;
  cairo_t* c = context_.get();
  SetColor(rgb);
  cairo_set_line_width(c, kPenWidth * size);
  for (const char32_t character : DecodeUtf8(text)) {
    for (const Stroke& stroke : StrokesOf(character)) {
      for (size_t i = 0; i < stroke.size(); ++i) {
        const double px = x + (stroke[i].x + 0.5) * size;
        const double py = top + (stroke[i].y + 0.5) * size;
        if (i == 0) {
          cairo_move_to(c, px, py);
        } else {
          cairo_line_to(c, px, py);
        }
      }
    }
    x += kGlyphAdvance * size;
  }
  cairo_stroke(c);
}

std::string Picture::Encode() {
  Check(cairo_status(context_.get()));
  context_.reset();
  if (kind_ == PictureKind::kPng) {
    Check(cairo_surface_write_to_png_stream(surface_.get(), Append, &bytes_));
  } else {
    cairo_surface_finish(surface_.get());
    Check(cairo_surface_status(surface_.get()));
    NameGroup(bytes_);
  }
  surface_.reset();
  return std::move(bytes_);
}

}  // namespace zyl
