// Pictures of graphic objects and lists, as an editor shows them.
#pragma once

#include <string>
#include <vector>

#include "Picture.h"
#include "host/lists.h"

namespace zyl {

// One thing of a picture: an object, a list, or a heading.
struct RenderItem {
  const GOObject* object = nullptr;
  const List* list = nullptr;
  std::string heading;
};

struct RenderOptions {
  double scale = 2;
  bool dark = false;
  // A page: the items one below the other with margins, octaves named below keyboards. Otherwise
  // the picture is the one item, edge to edge.
  bool page = false;
};

// The bytes of the picture's file. Throws std::runtime_error with a text for people when it would
// be too large.
std::string RenderPicture(const std::vector<RenderItem>& items, const RenderOptions& options,
                          PictureKind kind);

}  // namespace zyl
