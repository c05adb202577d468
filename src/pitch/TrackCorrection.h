#pragma once

#include <atomic>

// In-place correction of a complete pitch track of n values (periods in frames, 0 for unvoiced
// blocks).

// Returns a typical value near index i: the mean of the octave band that contains most of the
// values less than halfWidth away, up to the first pair of zeros on each side. `factor` scales the
// values at indexes below i for the assignment to bands. Returns 0 if there are no values.
double TypicalPeriod(const float* track, int n, int i, double factor, int halfWidth);

// Corrects values that differ strongly from their typical value: replaces an unvoiced or much too
// short one with the typical value and divides a multiple of it. Then fills gaps of one block. Does
// not change the first and the last value.
void CorrectOctaveErrors(float* track, int n, int findPitchLen);

// Replaces each voiced value with the weighted mean (raised cosine) of the voiced values up to
// smoothLength away; unvoiced values stay 0. Does nothing for a smoothLength below 1 and clamps it
// to 2^24, the longest track. Takes time proportional to n * smoothLength. Returns false, leaving
// an incomplete track, if `abort` is set during the call.
bool SmoothTrack(float* track, int n, int smoothLength, const std::atomic<bool>* abort = nullptr);
