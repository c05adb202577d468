#pragma once

#include <vector>

// The pitch tracker's formulas evaluated one after the other in double precision, without any of
// the tracker's shortcuts: the reference that its tracks are compared with, bit by bit.
struct PlainPitchSettings {
  int minPeriodHz = 2000;
  int maxPeriodHz = 50;
  double silenceThreshold = 1e-5;
};

// Track of `frames` (full scale 1) before any correction, frames / 128 + 1 values.
std::vector<float> PlainPitchTrack(const std::vector<double>& frames, double rateHz,
                                   const PlainPitchSettings& settings);

double PlainTypicalPeriod(const std::vector<float>& track, int index, double factor, int halfWidth);
void PlainCorrectOctaveErrors(std::vector<float>& track, int halfWidth);
void PlainSmoothTrack(std::vector<float>& track, int length);
