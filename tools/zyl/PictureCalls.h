// host.picture: a picture that scripts draw and write as a PNG or SVG file.
#pragma once

#include <string>

#include "Lua.h"
#include "Picture.h"

namespace zyl {

// Registers the metatable of picture objects.
void OpenPictures(lua_State* L);
int NewPicture(lua_State* L);

// Returns the path at stack index `index` and its picture kind. Raises a Lua error that names
// `function` if the path contains a NUL or does not end in .png or .svg.
struct PictureFile {
  std::string path;
  PictureKind kind;
};
PictureFile CheckPictureFile(lua_State* L, int index, const char* function);

}  // namespace zyl
