#pragma once

#include <atomic>

// Repairs of a finished pitch track of n values (periods in frames, 0 where there is none), in
// place.

// A typical value near index i: the mean of the octave band that holds most of the values less than
// halfWidth away, up to the first pair of zeros on each side. `factor` scales the values below i
// when they are sorted into bands. 0 when there is no value.
double TypicalPeriod(const float* track, int n, int i, double factor, int halfWidth);

// Moves values that lie far from their typical value: an unvoiced or far too short one becomes the
// typical value, a multiple of it is divided back. Then fills gaps of one block. The first and the
// last value stay.
void CorrectOctaveErrors(float* track, int n, int findPitchLen);

// Weighted mean over smoothLength values to each side (raised cosine), of voiced values only;
// unvoiced ones stay 0. Does nothing for a smoothLength below 1; one above 2^24, which is the
// longest track, is clamped. The time it takes grows with n * smoothLength. False, with an
// incomplete track, when `abort` was set meanwhile.
bool SmoothTrack(float* track, int n, int smoothLength, const std::atomic<bool>* abort = nullptr);
