// Maps keys to pixels. An octave has seven white keys, each 5 pixels wide; the first white key of
// the keyboard starts 2 pixels from its left edge. Within an octave, for note n (0 = C), with a = 1
// for F and above and a = 0 below F, the white keys are counted from 0:
//   nearest white key at or below n:  (n + a) / 2
//   nearest white key at or above n:  (n + a + 1) / 2
// Both are the note's own key when it is white.
#include "views/Keyboard.h"

namespace {

constexpr int kWhiteKeyWidth = 5;
constexpr int kWhiteKeysInOctave = 7;
constexpr int kLeftMargin = 2;
constexpr int kMarkerOffset = -1;    // left edge of the marker, relative to kWhiteKeyWidth * key
constexpr int kBackgroundInset = 2;  // keyboard height minus background height

struct Key {
  explicit Key(int number) : octave(number / 12), halfSteps(number - 12 * octave) {
    constexpr int kF = 5;
    if (halfSteps >= kF) ++halfSteps;
  }
  int WhiteBelow() const { return kWhiteKeysInOctave * octave + halfSteps / 2; }
  int WhiteAbove() const { return kWhiteKeysInOctave * octave + (halfSteps + 1) / 2; }

  int octave;
  int halfSteps;  // within the octave, as if there were a black key between E and F
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

  Place(background, r.left, r.top, r.Width(), r.Height() - kBackgroundInset);
  // The marker covers the white keys inside the range.
  const int firstWhite = low.WhiteAbove();
  const int lastWhite = high.WhiteBelow();
  Place(marker, r.left + kWhiteKeyWidth * firstWhite + kMarkerOffset, r.top,
        kWhiteKeyWidth * (lastWhite - firstWhite + 1), r.Height());
  const int clipLeft = LeftOfWhite(low.WhiteBelow());
  Place(clip, r.left + clipLeft, r.top, LeftOfWhite(high.WhiteAbove()) - clipLeft, r.Height());
  keyboard->Refresh(0, 1);
}
