// The keyboard of a keygroup: which part of it the key range marks.
#pragma once

#include "host/graphics.h"

// Places the keyboard's children "KBSelector", "KBBKSel" and "KBBKSelClip" for a range of keys and
// refreshes the keyboard. Children that it does not have are left out. Keys are not negative.
void PaintKeyRange(GOContainer* keyboard, int lowKey, int highKey);
