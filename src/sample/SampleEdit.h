// Cutting, splicing and resizing sample data. Each operation moves whole positions, allocates one
// new block for each channel that it changes, and fails (false, nothing changed) for a sample
// without data where it needs some.
//
// The channels of a file keep one length. A whole sample is edited in all its channels. When one
// channel of several is edited, the others stay in step with it: what is cut out of one is cut out
// of all, and what is inserted into one is silence in the others.
#pragma once

#include <cstdint>

#include "host/akai.h"

// Every channel gets `positions` positions: the first ones kept, new ones silent. A shortened
// sample pulls start, end and loops into its length.
bool ResizeSample(genericSample& sample, int32_t positions);
// Keeps positions s to e, both included.
bool ExtractRange(genericSample& sample, int32_t s, int32_t e);
// Removes positions s up to, not including, e.
bool DeleteRange(genericSample& sample, int32_t s, int32_t e);
// Splices all of the other sample's data in before `index`; its values are converted to this
// sample's width. A sample without data takes the other's width.
bool InsertSample(genericSample& sample, const genericSample* other, int32_t index);
// Replaces the data by the other's positions s to e, both included, in the other's width.
bool CopyRangeFrom(genericSample& sample, const genericSample* other, int32_t s, int32_t e);
