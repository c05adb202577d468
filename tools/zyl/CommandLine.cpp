#include "CommandLine.h"

#include <poll.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "Errors.h"
#include "HostTable.h"
#include "Interruption.h"
#include "Repl.h"
#include "ScriptHost.h"
#include "Shipped.h"
#include "host/hostapp.h"
#include "host/qx.h"

namespace zyl {

namespace {

namespace fs = std::filesystem;

struct Options {
  std::string module;
  std::string profile;
  double sampleRateHz = 44100;
  bool version = false;
  // The verb and all words after it, unparsed.
  std::vector<std::string> words;
};

std::string VerbList() {
  std::string text =
      "Verbs:\n"
      "  run SCRIPT.lua [ARG...]     run the script\n"
      "  eval 'CODE' [ARG...]        run the text\n"
      "  repl                        read lines, run them and print their results\n"
      "  methods [PATTERN]           list the module's script methods; PATTERN is part of a name,\n"
      "                              or a whole name with * and ?\n"
      "  help [NAME]                 print a method's arguments, results and meaning, or all "
      "methods\n"
      "                              that match part of a name; --search WORD searches meanings\n";
  std::vector<std::string> shipped = ScriptVerbs();
  std::erase(shipped, "help");
  if (!shipped.empty()) {
    text += "Shipped scripts ('zyl VERB --help' lists their options):\n";
    constexpr size_t kColumn = 30;
    for (const std::string& name : shipped) {
      const std::string call = "  " + name;
      const size_t gap = kColumn - std::min(call.size(), kColumn - 2);
      text += call + std::string(gap, ' ') + VerbPurpose(name) + "\n";
    }
  }
  return text;
}

int Usage(const std::string& message) {
  std::cerr << "zyl: " << message << '\n' << VerbList();
  return kExitUsage;
}

fs::path DefaultModule() {
  const fs::path folder = ProgramFolder();
  const std::string file = std::string(kMainClass) + ".so";
  for (const fs::path& path : {folder / file, folder / ".." / "lib" / "zyl" / file}) {
    std::error_code failure;
    if (fs::is_regular_file(path, failure)) return path;
  }
  return folder / file;
}

bool SameWithoutCase(char a, char b) {
  return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
}

bool MatchesWhole(std::string_view name, std::string_view pattern) {
  if (pattern.empty()) return name.empty();
  if (pattern[0] == '*') {
    return MatchesWhole(name, pattern.substr(1)) ||
           (!name.empty() && MatchesWhole(name.substr(1), pattern));
  }
  return !name.empty() && (pattern[0] == '?' || SameWithoutCase(pattern[0], name[0])) &&
         MatchesWhole(name.substr(1), pattern.substr(1));
}

bool Matches(std::string_view name, std::string_view pattern) {
  if (pattern.find_first_of("*?") != std::string_view::npos) return MatchesWhole(name, pattern);
  return std::search(name.begin(), name.end(), pattern.begin(), pattern.end(), SameWithoutCase) !=
         name.end();
}

int ListMethods(const std::string& pattern) {
  const ZylFuncInfo* method = ZylClassMethods(kMainClass);
  if (method == nullptr) {
    std::cerr << "zyl: the module has no class " << kMainClass << '\n';
    return 1;
  }
  bool any = false;
  for (; method->name != nullptr; ++method) {
    if (!pattern.empty() && !Matches(method->name, pattern)) continue;
    std::cout << method->name << '\n';
    any = true;
  }
  std::cout.flush();
  if (any) return 0;
  std::cerr << "zyl: no method matches '" << pattern << "'\n";
  return 1;
}

// The parsed command line after the options. It is checked before the module is loaded.
struct Task {
  enum Kind { kRunVerb, kRunFile, kRunText, kMethods, kRepl, kHelp } kind = kRunVerb;
  std::string source;                  // the script file, the text or the pattern
  std::vector<std::string> arguments;  // arguments[0] is the script's name
};

// Sets `task` and returns an empty string, or returns an error message.
std::string ReadTask(const std::vector<std::string>& words, Task& task) {
  if (words.empty()) return "a verb is missing";
  const std::string& verb = words[0];
  const bool asksForHelp = words.size() == 2 && (words[1] == "--help" || words[1] == "-h");
  if (asksForHelp && (verb == "methods" || verb == "repl" || verb == "run" || verb == "eval")) {
    task.kind = Task::kHelp;
    return {};
  }
  if (verb == "methods") {
    if (words.size() > 2) return "methods takes one pattern";
    task.kind = Task::kMethods;
    if (words.size() == 2) task.source = words[1];
    return {};
  }
  if (verb == "repl") {
    if (words.size() > 1) return "repl takes no arguments";
    task.kind = Task::kRepl;
    return {};
  }
  if (verb == "run" || verb == "eval") {
    if (words.size() < 2) return verb + " needs " + (verb == "run" ? "a script" : "a text");
    task.kind = verb == "run" ? Task::kRunFile : Task::kRunText;
    task.source = words[1];
    task.arguments.assign(words.begin() + 1, words.end());
    if (verb == "eval") task.arguments[0] = "eval";
    return {};
  }
  task.source = VerbScript(verb).string();
  if (task.source.empty()) {
    std::vector<std::string> known = ScriptVerbs();
    known.insert(known.end(), {"run", "eval", "repl", "methods"});
    return "there is no verb \"" + verb + '"' + Suggestion(verb, known);
  }
  task.arguments = words;
  task.arguments[0] = task.source;
  return {};
}

int RunTask(const Task& task, const std::string& module) {
  if (task.kind == Task::kMethods) return ListMethods(task.source);
  ScriptHost script(module);
  InstallSignalHandlers();
  if (task.kind == Task::kRepl) return RunRepl(script);
  if (task.kind == Task::kRunVerb) return script.RunVerb(task.source, task.arguments);
  return task.kind == Task::kRunFile ? script.RunFile(task.source, task.arguments)
                                     : script.RunText(task.source, task.arguments);
}

int Run(const Options& options) {
  Task task;
  const std::string wrong = ReadTask(options.words, task);
  if (!wrong.empty()) return Usage(wrong);
  if (task.kind == Task::kHelp) {
    std::cout << VerbList();
    return 0;
  }
  if (!std::isfinite(options.sampleRateHz) || options.sampleRateHz <= 0) {
    return Usage("the sample rate must be above 0");
  }
  if (!options.profile.empty()) {
    std::error_code failure;
    if (!fs::is_regular_file(options.profile, failure)) {
      return Usage("there is no profile '" + options.profile + "'");
    }
    qxSetProfile(options.profile);
  }
  UnitAttribute::sampleRate = options.sampleRateHz;

  const std::string path = options.module.empty() ? DefaultModule().string() : options.module;
  std::string reason;
  const std::unique_ptr<ZylModule> module = ZylModule::Load(path, reason);
  if (module == nullptr) {
    std::cerr << "zyl: the module could not be loaded: " << reason << '\n';
    return kExitNoModule;
  }
  std::error_code failure;
  const fs::path whole = fs::weakly_canonical(path, failure);
  const int status = RunTask(task, failure ? path : whole.string());
  // Run queued calls before the module is unloaded: their code may be in it.
  ZylPump(0);
  return status;
}

// Returns the index of the verb in `argv`: the first word that is neither an option nor an option's
// value. All words after it belong to the verb, even if they look like options.
int VerbIndex(const CLI::App& app, int argc, char** argv) {
  int i = 1;
  while (i < argc && argv[i][0] == '-') {
    const CLI::Option* option = app.get_option_no_throw(argv[i]);
    i += option != nullptr && option->get_expected_min() > 0 ? 2 : 1;
  }
  return std::min(i, argc);
}

// Returns whether the reader of standard output has closed its end.
bool ReaderHasClosed() {
  pollfd output = {STDOUT_FILENO, POLLOUT, 0};
  return poll(&output, 1, 0) == 1 && (output.revents & POLLERR) != 0;
}

// Flushes standard output and returns the exit status: 1 instead of 0 if output was lost. A reader
// that closed the pipe early is not an error.
int FlushOutput(int status) {
  errno = 0;
  std::cout.flush();
  const bool lost = std::fflush(stdout) != 0 || std::ferror(stdout) != 0;
  if (!lost || errno == EPIPE || ReaderHasClosed()) return status;
  std::cerr << "zyl: standard output could not be written"
            << (errno != 0 ? std::string(": ") + std::strerror(errno) : std::string()) << '\n';
  return status == 0 ? 1 : status;
}

int ParseAndRun(int argc, char** argv) {
  Options options;
  CLI::App app("Runs Lua scripts over a sampler-program module: zyl [OPTIONS] VERB [ARG...]",
               "zyl");
  app.add_option("--module", options.module, "The module's library (default: next to the program)")
      ->take_last();
  app.add_option("--profile", options.profile, "The profile that the module reads at load")
      ->envname("ZYL_PROFILE")
      ->take_last();
  app.add_option("--sample-rate", options.sampleRateHz, "The processing rate in Hz")
      ->capture_default_str()
      ->take_last();
  app.add_flag("--version", options.version, "Print the version");
  try {
    app.footer(VerbList());
    const int verb = VerbIndex(app, argc, argv);
    app.parse(verb, argv);
    options.words.assign(argv + verb, argv + argc);
    if (options.version) {
      std::cout << "zyl " << ZYL_VERSION << '\n';
      return 0;
    }
    return Run(options);
  } catch (const CLI::CallForHelp& help) {
    return app.exit(help);
  } catch (const CLI::ParseError& error) {
    return Usage(error.what());
  } catch (const std::exception& error) {
    std::cerr << "zyl: " << error.what() << '\n';
    return 1;
  }
}

}  // namespace

int RunCommandLine(int argc, char** argv) {
  // Writing to a closed pipe fails with EPIPE instead of ending the program.
  std::signal(SIGPIPE, SIG_IGN);
  return FlushOutput(ParseAndRun(argc, argv));
}

}  // namespace zyl
