// Paths of the build that tests run in. Only Paths.cpp is compiled with them, so that the objects
// of all other tests are the same in every folder and a compiler cache finds them.
#pragma once

namespace zyl::test {

const char* ModulePath();  // the module's library
const char* SourcePath();  // the project's folder

}  // namespace zyl::test
