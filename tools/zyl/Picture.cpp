#include "Picture.h"

#include <cairo-svg.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <exception>
#include <numbers>
#include <stdexcept>

#include "StrokeFont.h"

namespace zyl {

namespace {

// Called from C: no exception may escape.
cairo_status_t Append(void* bytes, const unsigned char* data, unsigned int length) {
  try {
    static_cast<std::string*>(bytes)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
  } catch (const std::exception&) {
    return CAIRO_STATUS_NO_MEMORY;
  }
}

// cairo numbers an SVG's outermost group by the surfaces created in the process. Removing the
// number makes equal drawings equal files.
void NameGroup(std::string& svg) {
  constexpr std::string_view kName = "id=\"surface";
  const size_t at = svg.find(kName);
  if (at == std::string::npos) return;
  const size_t digits = at + kName.size();
  svg.erase(digits, svg.find('"', digits) - digits);
}

// Formats a number with up to three decimals.
std::string Number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.3f", value);
  std::string number = text;
  number.erase(number.find_last_not_of('0') + 1);
  if (number.back() == '.') number.pop_back();
  return number;
}

void AppendUtf8(std::string& text, char32_t character) {
  const auto byte = [&](char32_t bits) { text += static_cast<char>(bits); };
  const auto tail = [&](int shift) { byte(0x80 | (character >> shift & 0x3F)); };
  if (character < 0x80) {
    byte(character);
  } else if (character < 0x800) {
    byte(0xC0 | character >> 6);
    tail(0);
  } else if (character < 0x10000) {
    byte(0xE0 | character >> 12);
    tail(6);
    tail(0);
  } else {
    byte(0xF0 | character >> 18);
    tail(12);
    tail(6);
    tail(0);
  }
}

// Escapes text for XML. Characters that XML forbids (controls, surrogates, U+FFFE, U+FFFF) become
// U+FFFD.
std::string XmlText(std::string_view text) {
  std::string escaped;
  for (const char32_t character : DecodeUtf8(text)) {
    const bool allowed = character >= 0x20 && character != 0x7F &&
                         (character < 0xD800 || character > 0xDFFF) &&
                         (character & 0xFFFE) != 0xFFFE && character <= 0x10FFFF;
    if (character == U'&') {
      escaped += "&amp;";
    } else if (character == U'<') {
      escaped += "&lt;";
    } else if (character == U'>') {
      escaped += "&gt;";
    } else {
      AppendUtf8(escaped, allowed ? character : U'\uFFFD');
    }
  }
  return escaped;
}

void Check(cairo_status_t status) {
  if (status != CAIRO_STATUS_SUCCESS) throw std::runtime_error(cairo_status_to_string(status));
}

}  // namespace

std::optional<PictureKind> PictureKindOf(std::string_view path) {
  constexpr size_t kEnd = 4;
  std::string end(path.substr(path.size() - std::min(path.size(), kEnd)));
  for (char& c : end) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  if (end == ".png") return PictureKind::kPng;
  if (end == ".svg") return PictureKind::kSvg;
  return {};
}

Picture::Picture(PictureKind kind, double width, double height, double scale)
    : kind_(kind), scale_(scale) {
  const double pixelsWide = std::max(std::ceil(width * scale), 1.0);
  const double pixelsHigh = std::max(std::ceil(height * scale), 1.0);
  if (pixelsWide > kLargestSide || pixelsHigh > kLargestSide ||
      pixelsWide * pixelsHigh > kLargestArea) {
    throw std::runtime_error(
        "the picture would be too large: " + std::to_string(static_cast<int64_t>(pixelsWide)) +
        " by " + std::to_string(static_cast<int64_t>(pixelsHigh)) + " pixels");
  }
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

void Picture::Path(std::span<const PicturePoint> points) {
  cairo_new_path(context_.get());
  for (const PicturePoint& point : points) cairo_line_to(context_.get(), point.x, point.y);
}

void Picture::Line(std::span<const PicturePoint> points, double width, uint32_t rgb) {
  if (points.empty()) return;
  SetColor(rgb);
  Path(points);
  // Draw a single point as a dot: a line of length 0 with round caps.
  if (points.size() == 1) cairo_line_to(context_.get(), points[0].x, points[0].y);
  cairo_set_line_width(context_.get(), width);
  cairo_stroke(context_.get());
}

void Picture::Polygon(std::span<const PicturePoint> points, uint32_t rgb) {
  if (points.size() < 3) return;
  SetColor(rgb);
  Path(points);
  cairo_close_path(context_.get());
  cairo_fill(context_.get());
}

double Picture::TextWidth(std::string_view text, double size) {
  return static_cast<double>(DecodeUtf8(text).size()) * kGlyphAdvance * size;
}

void Picture::Text(double x, double top, std::string_view text, double size, uint32_t rgb) {
  if (text.empty()) return;
  if (kind_ == PictureKind::kPng) {
    SetColor(rgb);
    StrokeText(x, top, text, size);
    return;
  }
  // The advance of a monospaced font is 0.6 of its size; textLength fixes the width for any font.
  char colour[8];
  std::snprintf(colour, sizeof colour, "#%06x", rgb & 0xFFFFFF);
  svgText_ += "<text xml:space=\"preserve\" x=\"" + Number(x * scale_) + "\" y=\"" +
              Number((top + kGlyphHeight * size) * scale_) + "\" font-size=\"" +
              Number(kGlyphAdvance * size / 0.6 * scale_) + "\" textLength=\"" +
              Number(TextWidth(text, size) * scale_) + "\" fill=\"" + colour + "\">" +
              XmlText(text) + "</text>\n";
}

void Picture::StrokeText(double x, double top, std::string_view text, double size) {
  constexpr double kPenWidth = 0.95;
  cairo_t* c = context_.get();
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
    if (!svgText_.empty()) {
      const std::string group = "<g font-family=\"monospace\">\n" + svgText_ + "</g>\n";
      bytes_.insert(bytes_.rfind("</svg>"), group);
    }
  }
  surface_.reset();
  return std::move(bytes_);
}

}  // namespace zyl
