#pragma once

// One second-order section, y0 = b0 x0 + b1 x1 + b2 x2 + a1 y1 + a2 y2, with unity gain at DC.
// The state is the input and output now (0), one and two samples ago.
struct BiquadSection {
  double b0 = 1, b1 = 0, b2 = 0, a1 = 0, a2 = 0;
  double x0 = 0, x1 = 0, x2 = 0;
  double y0 = 0, y1 = 0, y2 = 0;
};
