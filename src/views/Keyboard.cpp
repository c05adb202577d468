// Keys in pixels. White keys are 5 wide, seven of them an octave, and the first begins 2 from the
// keyboard's left edge. In the octave, note n (0 = C) with a = 1 from F on has the white key
// (n + a) / 2 at or below it and (n + a + 1) / 2 at or above it: both are its own when it is white.
#include "views/Keyboard.h"

namespace {

constexpr int kWhiteKeyWidth = 5;
constexpr int kWhiteKeysInOctave = 7;
constexpr int kLeftMargin = 2;
constexpr int kMarkerOffset = -1;      // of the marker from the white key's number times its width
constexpr int kBackgroundShorter = 2;  // than the keyboard

struct Key {
  explicit Key(int number) : octave(number / 12), halfSteps(number - 12 * octave) {
    constexpr int kF = 5;
    if (halfSteps >= kF) ++halfSteps;
  }
  int WhiteBelow() const { return kWhiteKeysInOctave * octave + halfSteps / 2; }
  int WhiteAbove() const { return kWhiteKeysInOctave * octave + (halfSteps + 1) / 2; }

  int octave;
  int halfSteps;  // in an octave that has a black key between E and F too
};

int LeftOfWhite(int whiteKey) { return kLeftMargin + kWhiteKeyWidth * whiteKey; }

void Place(GOObject* object, int32_t x, int32_t y, int32_t width, int32_t height) {
  if (object == nullptr) return;
  object->MoveTo(x, y);
  object->SizeTo(width, height, 1, 1, 0, 0);
}

}  // namespace

void PaintKeyRange(GOContainer* keyboard, int lowKey, int highKey) {
  GOObject* marker = keyboard->GetChild("KBSelector", 1);
  GOObject* background = keyboard->GetChild("KBBKSel", 1);
  GOObject* clip = keyboard->GetChild("KBBKSelClip", 1);
  const Key low(lowKey);
  const Key high(highKey);
  GORect r;
  keyboard->GetBounds(r);
  r = r.ShiftedBy(keyboard->GetOrigin());

  Place(background, r.left, r.top, r.Width(), r.Height() - kBackgroundShorter);
  // The white keys that lie wholly inside.
  const int firstWhite = low.WhiteAbove();
  const int lastWhite = high.WhiteBelow();
  Place(marker, r.left + kWhiteKeyWidth * firstWhite + kMarkerOffset, r.top,
        kWhiteKeyWidth * (lastWhite - firstWhite + 1), r.Height());
  const int clipLeft = LeftOfWhite(low.WhiteBelow());
  Place(clip, r.left + clipLeft, r.top, LeftOfWhite(high.WhiteAbove()) - clipLeft, r.Height());
  keyboard->Refresh(0, 1);
}
