#include "Shipped.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <set>

namespace zyl {

namespace fs = std::filesystem;

namespace {

bool IsFolder(const fs::path& path) {
  std::error_code failure;
  return fs::is_directory(path, failure);
}

// Returns the possible locations of a shipped folder, in order of preference.
std::vector<fs::path> CandidateFolders(const char* name) {
  std::vector<fs::path> folders = {
      (ProgramFolder() / ".." / "share" / "zyl" / name).lexically_normal()};
#ifdef ZYL_SOURCE_DIR
  folders.push_back(fs::path(ZYL_SOURCE_DIR) / name);
#endif
  return folders;
}

std::string FindFolder(const char* name) {
  const std::vector<fs::path> candidates = CandidateFolders(name);
  const auto found = std::find_if(candidates.begin(), candidates.end(), IsFolder);
  return found == candidates.end() ? std::string() : found->string();
}

}  // namespace

fs::path ProgramFolder() {
  std::error_code failure;
  const fs::path program = fs::read_symlink("/proc/self/exe", failure);
  return failure ? fs::path(".") : program.parent_path();
}

const std::string& LuaFolder() {
  static const std::string folder = FindFolder("lua");
  return folder;
}

const std::string& VerbLibrary() {
  static const std::string folder = FindFolder("verbs/lib");
  return folder;
}

fs::path VerbScript(const std::string& verb) {
  const bool plain = std::all_of(verb.begin(), verb.end(), [](unsigned char c) {
    return std::isalnum(c) != 0 || c == '-' || c == '_';
  });
  if (verb.empty() || !plain) return {};
  for (const fs::path& folder : CandidateFolders("verbs")) {
    fs::path script = folder / (verb + ".lua");
    std::error_code failure;
    if (fs::is_regular_file(script, failure)) return script;
  }
  return {};
}

std::string VerbPurpose(const std::string& verb) {
  std::ifstream file(VerbScript(verb));
  std::string line;
  std::getline(file, line);
  const std::string head = "-- zyl " + verb + ": ";
  if (!line.starts_with(head)) return {};
  line.erase(0, head.size());
  if (line.ends_with('.')) line.pop_back();
  return line;
}

std::vector<std::string> ScriptVerbs() {
  std::set<std::string> names;
  for (const fs::path& folder : CandidateFolders("verbs")) {
    std::error_code failure;
    for (const auto& entry : fs::directory_iterator(folder, failure)) {
      if (entry.path().extension() == ".lua") names.insert(entry.path().stem().string());
    }
  }
  return {names.begin(), names.end()};
}

}  // namespace zyl
