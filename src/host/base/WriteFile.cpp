#include "../hostapp.h"
#include "../platform/AtomicFile.h"

bool ZylWriteFile(const std::string& path, std::string_view bytes, std::string& reason) {
  zyl::AtomicFile file(path);
  if (file.Write(bytes.data(), bytes.size()) && file.Commit()) return true;
  reason = file.Error();
  return false;
}
