// Finds the notes in a long recording.
//
// An onset is where the level rises in the frequency bands that carry the sound, so that a quiet
// note is found in the tail of a loud one. For each block of 5 ms,
//
//   rise = mean over the bands of max(0, L(next 60 ms) - L(previous 30 ms))
//
// where L is the largest level of the band in dB, at least that of the noise, and the bands are
// those within 35 dB of the loudest. The level of a sounding note moves as well, so a maximum of
// the rise is an onset only if
//
//   rise + drop / 3 >= OnsetWish::scoreDb
//
// where drop is how far the sound has faded since the previous onset. A sound after silence is an
// onset too, however slowly it rises. Each onset is then located in the prediction residual (see
// Prediction.h): a predictor fitted to the sound before the onset predicts the tail of the previous
// note, so that the first values that it does not predict belong to the new one. A slow attack
// exceeds the tail late, so from there its onset is searched backwards for as long as the residual
// falls.
#pragma once

#include <cstddef>
#include <vector>

#include "audio/Sound.h"

namespace zyl::audio {

struct OnsetWish {
  double scoreDb = 15.25;         // least score of an onset
  double shortestSeconds = 0.15;  // between two onsets
  size_t count = 0;               // number of notes if it is known: the clearest; 0: all
};

struct NoteRange {
  size_t first;  // kOnsetMarginSeconds before the onset
  size_t last;   // the last frame above the noise, at most the one before the next note
  bool cut;      // the note still sounds at `last`
  size_t onset;
  size_t place;  // FindNotesAt: index of its place
};

// In order of time. Requires a rate above 0.
std::vector<NoteRange> FindNotes(const Sound& sound, const OnsetWish& wish);

// The notes that begin near `places`, frames in rising order: for recordings of a known sequence.
// The onset of each is the one found within `reach` frames of its place, otherwise the place.
// Places without an onset at which the recording is silent have no note.
std::vector<NoteRange> FindNotesAt(const Sound& sound, const std::vector<size_t>& places,
                                   size_t reach);

constexpr double kOnsetMarginSeconds = 0.005;

}  // namespace zyl::audio
