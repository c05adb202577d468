#pragma once

// Coefficients of a second-order filter section with input x and output y; the index is the age in
// samples:
//   y0 = b0 x0 + b1 x1 + b2 x2 + a1 y1 + a2 y2
// The default section passes its input through.
struct BiquadSection {
  double b0 = 1, b1 = 0, b2 = 0, a1 = 0, a2 = 0;
};
