// The graphics that the panels of an editor are made of.
#pragma once

#include <memory>

#include "host/lists.h"

namespace zyl {

// A keyboard with the three children that mark a range, all filled with a colour, at 0, 0.
std::unique_ptr<GOContainer> MakeKeyboard(const char* name, int32_t width, int32_t height);

// The graphic root of a list module, with the templates of the cells.
std::unique_ptr<GOContainer> MakeListRoot(int32_t rowHeight);

}  // namespace zyl
