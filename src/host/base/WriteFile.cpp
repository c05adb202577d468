#include "../hostapp.h"
#include "../platform/AtomicFile.h"
#include "../qx.h"

bool ZylWriteFile(const std::string& path, std::string_view bytes, std::string& reason) {
  zyl::AtomicFile file(path);
  if (file.Write(bytes.data(), bytes.size()) && file.Commit()) return true;
  reason = file.Error();
  return false;
}

bool qxReplaceFile(const std::string& path,
                   const std::function<bool(const std::string& temporary)>& write,
                   std::string& reason) {
  zyl::AtomicFile file(path, zyl::AtomicFile::Naming::kAtOnce);
  const bool written = file.Good() && write(file.TemporaryPath());
  if (written && file.Commit()) return true;
  reason = file.Error();
  return false;
}
