#include "support/Paths.h"

namespace zyl::test {

const char* ModulePath() { return ZYL_MODULE; }
const char* SourcePath() { return ZYL_SOURCE; }

}  // namespace zyl::test
