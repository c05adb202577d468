// Draws graphic objects. The marked keys of a keyboard are derived from the bounds of its children,
// in pixels relative to the keyboard:
//   - White key w has its left edge at 2 + 5w.
//   - "KBSelector" starts at 5w - 1 for the first white key in the range and is 5 wide per key.
//   - "KBBKSelClip" extends from the left edge of the lowest key (of the white key below it if that
//     key is black) to the left edge of the white key at or above the highest key.
// So the black key between the white keys w and w + 1 is in the range when the left edges of both
// are within the clip.
#include "Drawing.h"

#include <algorithm>
#include <cmath>

#include "StrokeFont.h"

namespace zyl {

namespace {

constexpr int kWhiteKeyWidth = 5;
constexpr int kFirstKeyLeft = 2;
constexpr int kMarkerOffset = -1;
constexpr int kWhiteKeysInOctave = 7;
constexpr int kMaxWhiteKeys = 75;  // keys 0 to 127
constexpr double kKeyGap = 0.5;
constexpr double kBlackKeyWidth = 3;
constexpr double kBlackKeyPart = 0.6;  // black key height / white key height

constexpr Theme kLight = {
    .page = 0xFFFFFF,
    .text = 0x1B232C,
    .header = 0xE9EDF2,
    .headerText = 0x465464,
    .oddRow = 0xF5F7FA,
    .line = 0xC9D2DC,
    .track = 0xDDE3EA,
    .accent = 0x3B7DD8,
    .off = 0xB4BEC9,
    .knob = 0xFFFFFF,
    .keyEdge = 0x8A94A0,
    .blackKey = 0x20272F,
    .whiteKeys = 1,
};
constexpr Theme kDark = {
    .page = 0x171B21,
    .text = 0xE3E8EE,
    .header = 0x272F39,
    .headerText = 0xB4C0CD,
    .oddRow = 0x1D232B,
    .line = 0x3A4552,
    .track = 0x323C48,
    .accent = 0x5A9BF0,
    .off = 0x4A5562,
    .knob = 0xF2F4F7,
    .keyEdge = 0x0B0D10,
    .blackKey = 0x15191F,
    .whiteKeys = 0.86,
};

uint32_t Dimmed(uint32_t rgb, double part) {
  uint32_t dimmed = 0;
  for (const int shift : {16, 8, 0}) {
    dimmed |= static_cast<uint32_t>(std::lround((rgb >> shift & 0xFF) * part)) << shift;
  }
  return dimmed;
}

// Returns the colour of the object's fill, or `fallback` if it has no solid fill.
uint32_t FillOf(const GOObject& object, uint32_t fallback) {
  const GOFill* fill = object.Fill();
  if (fill == nullptr || !fill->isSolidColor()) return fallback;
  return static_cast<uint32_t>(static_cast<const GOSolidFill*>(fill)->color) & 0xFFFFFF;
}

GORect Absolute(const GOObject& object) {
  GORect bounds;
  object.GetBounds(bounds);
  return bounds.ShiftedBy(object.GetOrigin());
}

// Returns the child's bounds relative to the keyboard; empty if there is no such child.
GORect ChildInside(const GOContainer& keyboard, const char* name) {
  const GOObject* child = keyboard.GetChild(name, 1);
  if (child == nullptr) return {};
  const GOPoint origin = keyboard.AbsolutePlace();
  return Absolute(*child).ShiftedBy({-origin.x, -origin.y});
}

int WhiteLeft(int whiteKey) { return kFirstKeyLeft + kWhiteKeyWidth * whiteKey; }
bool HasBlackAbove(int whiteKey) {
  const int note = whiteKey % kWhiteKeysInOctave;
  constexpr int kE = 2;
  constexpr int kB = 6;
  return note != kE && note != kB;
}

int WhiteKeysOf(const GOObject& keyboard) {
  const int fitting = (Absolute(keyboard).Width() - kFirstKeyLeft) / kWhiteKeyWidth;
  return std::clamp(fitting, 0, kMaxWhiteKeys);
}

void DrawKeyboard(Picture& picture, const Theme& theme, const GOContainer& keyboard, double x,
                  double y) {
  const double height = Absolute(keyboard).Height();
  const int keys = WhiteKeysOf(keyboard);
  const GORect marker = ChildInside(keyboard, "KBSelector");
  const GORect clip = ChildInside(keyboard, "KBBKSelClip");
  const GOObject* markerObject = keyboard.GetChild("KBSelector", 1);
  const GOObject* background = keyboard.GetChild("KBBKSel", 1);
  const uint32_t white = Dimmed(FillOf(keyboard, 0xFFFFFF), theme.whiteKeys);
  const uint32_t markedWhite =
      markerObject == nullptr ? white : FillOf(*markerObject, theme.accent);
  const uint32_t markedBlack =
      background == nullptr ? theme.blackKey : FillOf(*background, theme.accent);

  picture.Rectangle(x + kFirstKeyLeft - kKeyGap, y, kWhiteKeyWidth * keys + kKeyGap, height,
                    theme.keyEdge);
  for (int w = 0; w < keys; ++w) {
    const int left = kWhiteKeyWidth * w + kMarkerOffset;
    const bool marked = left >= marker.left && left + kWhiteKeyWidth <= marker.right;
    picture.Rectangle(x + WhiteLeft(w), y + kKeyGap, kWhiteKeyWidth - kKeyGap, height - 2 * kKeyGap,
                      marked ? markedWhite : white);
  }
  for (int w = 0; w + 1 < keys; ++w) {
    if (!HasBlackAbove(w)) continue;
    const bool marked = WhiteLeft(w) >= clip.left && WhiteLeft(w + 1) <= clip.right;
    picture.Rectangle(x + WhiteLeft(w + 1) - (kBlackKeyWidth + kKeyGap) / 2, y, kBlackKeyWidth,
                      std::round(height * kBlackKeyPart), marked ? markedBlack : theme.blackKey);
  }
}

// How to draw an object without a fill. Depends on the template that the object or its container
// was copied from.
struct Look {
  uint32_t color = 0;
  double radius = 0;
  uint32_t inside = 0;  // the colour of its children
  bool drawn = false;
};

Look LookOf(const Theme& theme, const GOObject& object) {
  const std::string& name = object.TemplateName();
  const double half = Absolute(object).Height() / 2.0;
  if (name == "Back") return {theme.track, 3, theme.accent, true};
  if (name == "BtOn") return {theme.accent, half, theme.knob, true};
  if (name == "BtOff") return {theme.off, half, theme.knob, true};
  return {};
}

}  // namespace

const Theme& ThemeOf(bool dark) { return dark ? kDark : kLight; }

bool IsKeyboard(const GOObject& object) {
  const auto* container = dynamic_cast<const GOContainer*>(&object);
  return container != nullptr && container->GetChild("KBSelector", 1) != nullptr;
}

void DrawObject(Picture& picture, const Theme& theme, const GOObject& object, double x, double y) {
  const auto* container = dynamic_cast<const GOContainer*>(&object);
  if (IsKeyboard(object)) return DrawKeyboard(picture, theme, *container, x, y);
  const Look look = LookOf(theme, object);
  const GORect place = Absolute(object);
  if (look.drawn || object.Fill() != nullptr) {
    picture.RoundedRectangle(x, y, place.Width(), place.Height(), look.radius,
                             FillOf(object, look.color));
  }
  if (container == nullptr) return;
  for (const GOObject* child = container->FirstChild(); child != nullptr;
       child = child->NextSibling()) {
    const GORect inside = Absolute(*child).ShiftedBy({-place.left, -place.top});
    if (look.drawn && dynamic_cast<const GOContainer*>(child) == nullptr) {
      picture.RoundedRectangle(x + inside.left, y + inside.top, inside.Width(), inside.Height(),
                               std::max(look.radius - 1, 0.0), FillOf(*child, look.inside));
    } else {
      DrawObject(picture, theme, *child, x + inside.left, y + inside.top);
    }
  }
}

void DrawOctaveLabels(Picture& picture, const Theme& theme, const GOObject& keyboard, int octave,
                      double x, double y) {
  constexpr double kSize = 0.75;
  constexpr int kOctavesToMiddleC = 5;  // from key 0 to key 60
  const double top = y + Absolute(keyboard).Height() + 2.5;
  const int keys = WhiteKeysOf(keyboard);
  for (int w = 0; w < keys; w += kWhiteKeysInOctave) {
    const std::string name =
        "C" + std::to_string(w / kWhiteKeysInOctave + octave - kOctavesToMiddleC);
    picture.Text(x + WhiteLeft(w), top, name, kSize, theme.headerText);
  }
}

std::string Truncate(std::string_view text, int32_t count) {
  size_t end = 0;
  while (end < text.size()) {
    const bool begins = (static_cast<unsigned char>(text[end]) & 0xC0) != 0x80;
    if (begins && count-- == 0) break;
    ++end;
  }
  return std::string(text.substr(0, end));
}

}  // namespace zyl
