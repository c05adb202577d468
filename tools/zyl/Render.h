// Renders graphic objects and lists as an editor shows them.
#pragma once

#include <string>
#include <vector>

#include "Picture.h"
#include "host/lists.h"

namespace zyl {

// One item of a picture: a list, an object or, if both are null, a heading. Not owned.
struct RenderItem {
  const GOObject* object = nullptr;
  const List* list = nullptr;
  std::string heading;
};

struct RenderOptions {
  double scale = 2;
  bool dark = false;
  int octave = 3;  // of key 60, in the labels of keyboards
  // True: stacks the items with margins and labels the octaves of keyboards. False: the picture has
  // one item without margins.
  bool page = false;
};

// Returns the bytes of the picture's file. Throws std::runtime_error if the picture is too large or
// drawing fails.
std::string RenderPicture(const std::vector<RenderItem>& items, const RenderOptions& options,
                          PictureKind kind);

}  // namespace zyl
