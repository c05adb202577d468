// Cuts, splices and resizes sample data. Each operation moves whole positions and allocates one new
// block for each channel that it changes. It returns false and changes nothing if it needs data and
// the sample has none.
//
// All channels of a file have the same length. Editing a whole sample edits all its channels.
// Editing one of several channels keeps the others in step: a cut removes the same positions from
// all channels, and an insertion adds silence to the others.
#pragma once

#include <cstdint>

#include "host/akai.h"

// Sets the length of every channel; new positions are silent. Shortening clamps start, end and loop
// points to the new length.
bool ResizeSample(genericSample& sample, int32_t positions);
// Keeps only positions s to e, both included.
bool ExtractRange(genericSample& sample, int32_t s, int32_t e);
// Removes positions s up to, not including, e.
bool DeleteRange(genericSample& sample, int32_t s, int32_t e);
// Inserts all of the other sample's data before `index`, converted to this sample's width. A sample
// without data takes the other's width.
bool InsertSample(genericSample& sample, const genericSample* other, int32_t index);
// Replaces the data with the other's positions s to e, both included, in the other's width.
bool CopyRangeFrom(genericSample& sample, const genericSample* other, int32_t s, int32_t e);
