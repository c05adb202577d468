// Where what ships with zyl lies: the scripts of the verbs and the Lua files that scripts load with
// require. An installed program finds them in ../share/zyl, one in a build folder in the sources.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace zyl {

// The folder of the running program.
std::filesystem::path ProgramFolder();

// The folder of the Lua files, without a slash at its end; empty when there is none.
const std::string& LuaFolder();

// What a verb is for, in a few words: its script begins with "-- zyl VERB: " and them.
std::string VerbPurpose(const std::string& verb);

// The folder of the Lua files that the verbs share, empty when there is none.
const std::string& VerbLibrary();

// The script of that verb; empty when there is none.
std::filesystem::path VerbScript(const std::string& verb);
// The names of all verbs that are scripts, in order.
std::vector<std::string> ScriptVerbs();

}  // namespace zyl
