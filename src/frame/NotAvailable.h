// A method that this build does not have yet.
#pragma once

#include "frame/Method.h"

inline bool NotAvailable(Call& call) { return call.Failure("%s: not available in this build"); }
