// Creates the graphic objects of an editor's panels.
#pragma once

#include <memory>

#include "host/lists.h"

namespace zyl {

// Returns a keyboard at 0, 0 with the three children that mark a key range, all with solid fills.
std::unique_ptr<GOContainer> MakeKeyboard(const char* name, int32_t width, int32_t height);

// Returns the graphic root of a list module, which owns the templates of the cells.
std::unique_ptr<GOContainer> MakeListRoot(int32_t rowHeight);

}  // namespace zyl
