// host.picture: a surface that scripts draw on and write as a PNG or SVG file.
#pragma once

#include <string>

#include "Lua.h"
#include "Picture.h"

namespace zyl {

// The metatable of host.picture's objects; leaves nothing on the stack.
void OpenPictures(lua_State* L);
int NewPicture(lua_State* L);

// The file name at `index` and the kind of picture that it asks for; a Lua error that names the
// function for a name with a NUL or with another end than .png or .svg.
struct PictureFile {
  std::string path;
  PictureKind kind;
};
PictureFile CheckPictureFile(lua_State* L, int index, const char* function);

}  // namespace zyl
