// Marks a keygroup's key range on a keyboard object.
#pragma once

#include "host/graphics.h"

// Moves and sizes the keyboard's children "KBSelector", "KBBKSel" and "KBBKSelClip" to mark the
// keys from `lowKey` to `highKey`, and refreshes the keyboard. Missing children are skipped. Keys
// must not be negative.
void PaintKeyRange(GOContainer* keyboard, int lowKey, int highKey);
