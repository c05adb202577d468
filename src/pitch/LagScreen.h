#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "PitchKernels.h"

namespace zyl {

// The integer image of a stretch of decimated values that the lag screen works on: values as
// multiples of 1/2047 of the stretch's largest magnitude, with their running energies. Serves all
// windows of the stretch.
class LagScreen {
 public:
  // False when these values cannot be screened: one is not finite, or the largest magnitude is so
  // far from 1 (or 0) that squares leave the range in which the bounds hold.
  bool Prepare(const double* values, int count);

  // The window that starts at value `start`, an even number.
  ScreenWindow WindowAt(int start) const;

 private:
  std::vector<int32_t> rounded_;
  std::vector<uint32_t> pairs_;
  std::vector<uint32_t> energy_;
  std::vector<uint32_t> evenEnergy_;
  float rms_ = 1;
};

}  // namespace zyl
