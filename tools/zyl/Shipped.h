// Locates the files that ship with zyl: the scripts of the verbs and the Lua files for require. An
// installed program finds them in ../share/zyl; a program in a build folder, in the source tree.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace zyl {

// The folder of the running program.
std::filesystem::path ProgramFolder();

// The folder of the Lua files, without a trailing slash; empty if there is none.
const std::string& LuaFolder();

// Returns a verb's purpose in a few words: the rest of its script's first line, which begins with
// "-- zyl VERB: ". Empty if the line has another form.
std::string VerbPurpose(const std::string& verb);

// The folder of the Lua files that the verbs share; empty if there is none.
const std::string& VerbLibrary();

// Returns the script of the verb; empty if there is none.
std::filesystem::path VerbScript(const std::string& verb);
// Returns the sorted names of all verbs that are scripts.
std::vector<std::string> ScriptVerbs();

}  // namespace zyl
