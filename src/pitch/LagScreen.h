#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "PitchKernels.h"

namespace zyl {

// Converts a run of decimated values to the integers that the lag screen reads: multiples of 1/2047
// of a bound just above the run's largest magnitude, with their running energies. All windows of
// the run share them.
class LagScreen {
 public:
  // Returns false if the values cannot be screened: one is not finite, or the largest magnitude is
  // not between 2^-200 and 2^200, so that squares could leave the range in which the bounds are
  // valid.
  bool Prepare(const double* values, int count);

  // The window that starts at value `start`, which must be even. Refers to this object's data.
  ScreenWindow WindowAt(int start) const;

 private:
  std::vector<int32_t> rounded_;
  std::vector<uint32_t> pairs_;
  std::vector<uint32_t> energy_;
  std::vector<uint32_t> evenEnergy_;
  float rms_ = 1;
};

}  // namespace zyl
