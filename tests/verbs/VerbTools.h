// Running zyl for the tests of the verbs.
#pragma once

#include <sys/wait.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "support/ScriptSurface.h"
#include "verbs/Notes.h"

namespace zyl::test {

struct Finished {
  int status = -1;
  std::string out;
};

// Appends standard error to the output when `merged`, else discards it.
inline Finished Shell(const std::string& commandLine, bool merged) {
  const std::string command = commandLine + (merged ? " 2>&1" : " 2>/dev/null");
  Finished run;
  std::FILE* pipe = popen(command.c_str(), "r");
  char block[4096];
  while (const size_t count = std::fread(block, 1, sizeof(block), pipe)) {
    run.out.append(block, count);
  }
  run.status = WEXITSTATUS(pclose(pipe));
  return run;
}

inline Finished Zyl(const std::string& arguments, bool merged = false) {
  return Shell(std::string(ZYL_PROGRAM) + " " + arguments, merged);
}

inline bool Has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

// The number of a name in JSON.
inline double Number(const std::string& json, const std::string& name) {
  const size_t at = json.find('"' + name + '"');
  return at == std::string::npos ? NAN : std::atof(json.c_str() + json.find(':', at) + 1);
}

inline std::string FileBytes(const std::string& path) { return ReadBytes(path); }

class Verbs : public ModuleTest {
 protected:
  void SetUp() override {
    ModuleTest::SetUp();
    setenv("XDG_STATE_HOME", Path("state").c_str(), 1);
  }
  // Writes a tone of one second with two partials; returns the quoted path.
  std::string Tone(const std::string& name, double hertz) const {
    std::vector<int16_t> values(44100);
    for (size_t i = 0; i < values.size(); ++i) {
      const double phase = 2 * std::numbers::pi * hertz * static_cast<double>(i) / 44100;
      values[i] = static_cast<int16_t>(9000 * std::sin(phase) + 4000 * std::sin(2 * phase));
    }
    WriteWave(Path(name), {values});
    return Quoted(name);
  }
  std::string Quoted(const std::string& name) const { return "'" + Path(name) + "'"; }
  // A recording of a note by one of the instruments.
  void Recording(const std::string& name, double key, double seconds = 0.6,
                 const Instrument& instrument = kInstruments[0]) const {
    std::filesystem::create_directories(std::filesystem::path(Path(name)).parent_path());
    WriteWave(Path(name), {Note(instrument, HertzOfKey(key), seconds, 11)});
  }
};

}  // namespace zyl::test
