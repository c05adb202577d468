// The program zyl as a user meets it: exit status, output, messages, Ctrl-C. The API's own tests
// are the Lua scripts of this folder, run here over the probe module.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

namespace {

namespace fs = std::filesystem;

std::string FileText(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

struct Outcome {
  int status;  // the exit status, or -1 after a signal
  std::string out;
  std::string err;
};

// A running zyl; its output goes to files of its own.
class Process {
 public:
  explicit Process(std::vector<std::string> words) {
    words.insert(words.begin(), ZYL_PROGRAM);
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    pid_ = fork();
    if (pid_ == 0) {
      prctl(PR_SET_PDEATHSIG, SIGKILL);
      dup2(open(out_.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 1);
      dup2(open(err_.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 2);
      execv(pointers[0], pointers.data());
      _exit(127);
    }
  }
  ~Process() {
    fs::remove(out_);
    fs::remove(err_);
  }

  // Waits until the program has printed that line, at most ten seconds.
  bool Printed(const std::string& line) const {
    for (int i = 0; i < 1000; ++i) {
      if (FileText(out_).find(line + "\n") != std::string::npos) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
  }
  void Interrupt() const { kill(pid_, SIGINT); }

  Outcome Wait() const {
    int status = 0;
    waitpid(pid_, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, FileText(out_), FileText(err_)};
  }

 private:
  static fs::path Name(const char* end) {
    static int count = 0;
    return fs::temp_directory_path() /
           ("zyl-test-" + std::to_string(getpid()) + "-" + std::to_string(++count) + end);
  }
  fs::path out_ = Name(".out");
  fs::path err_ = Name(".err");
  pid_t pid_;
};

Outcome Zyl(const std::vector<std::string>& words) { return Process(words).Wait(); }

std::vector<std::string> OverProbe(const std::vector<std::string>& words) {
  std::vector<std::string> all = {"--module", ZYL_PROBE_MODULE};
  all.insert(all.end(), words.begin(), words.end());
  return all;
}

bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST(Api, EveryScriptPasses) {
  for (const char* name : {"Values", "Objects", "Errors", "Callbacks", "Pads"}) {
    const std::string path = std::string(ZYL_TEST_SCRIPTS) + "/" + name + ".lua";
    const Outcome outcome = Zyl(OverProbe({"run", path}));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
  }
}

TEST(Api, AHandlerWithNearlyTheNameOfANotificationIsSaidOnce) {
  const Outcome outcome = Zyl(
      OverProbe({"eval",
                 "for i = 1, 2 do host.algo { OnProgramParameterchanged = print, On = print } end "
                 "local m = host.algo { OnDeletingPrg = print } m.OnDeletingSmpl = print"}));
  EXPECT_EQ(outcome.err,
            "zylhost: host.algo: \"OnProgramParameterchanged\" is not the name of a notification; "
            "did you mean \"OnProgramParameterChanged\"?\n");
}

// Over the product's module.
TEST(Api, TheEditorsScriptPasses) {
  const Outcome outcome = Zyl({"run", std::string(ZYL_TEST_SCRIPTS) + "/Editor.lua"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "");
}

// Over the real module: what help and the documentation say of it.
TEST(Reference, SaysWhatTheModuleDoesAndTheCommittedDocsAreThoseOfThisBuild) {
  const fs::path folder = fs::temp_directory_path() / ("zyl-docs-" + std::to_string(getpid()));
  fs::create_directories(folder);
  const std::string source = ZYL_SOURCE;
  const Outcome written = Zyl({"run", source + "/tools/reference/WriteDocs.lua", folder.string()});
  EXPECT_EQ(written.status, 0) << written.err;
  for (const char* name : {"methods.md", "zyl.d.lua"}) {
    EXPECT_TRUE(FileText(folder / name) == FileText(source + "/docs/" + name))
        << "docs/" << name << " is stale: run ./dev docs";
  }
  fs::remove_all(folder);
  const Outcome outcome = Zyl({"run", std::string(ZYL_TEST_SCRIPTS) + "/Reference.lua"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
}

TEST(Sugar, LoopsSelectsAndPutsProgramsBack) {
  const fs::path folder = fs::temp_directory_path() / ("zyl-sugar-" + std::to_string(getpid()));
  fs::create_directories(folder);
  const fs::path sample = folder / "a tone.wav";
  // A mono file of two values.
  const char wave[] =
      "RIFF\x28\0\0\0WAVEfmt \x10\0\0\0\1\0\1\0\x44\xac\0\0\x88\x58\1\0\2\0\x10\0"
      "data\4\0\0\0\1\0\2\0";
  std::ofstream(sample, std::ios::binary).write(wave, sizeof wave - 1);
  const Outcome outcome =
      Zyl({"run", std::string(ZYL_TEST_SCRIPTS) + "/Sugar.lua", folder.string(), sample.string()});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  fs::remove_all(folder);
}

TEST(Reference, HelpFindsMethodsByNamePartAndMeaning) {
  const struct {
    std::vector<std::string> words;
    int status;
    const char* part;  // of what is printed
  } lines[] = {
      {{"help"}, 0, "Keygroup parameters"},
      {{"help", "KGfilterFreq"}, 0, "KGfilterFreq(KeyGroupIndex, [NewValue]) -> integer\n"},
      {{"help", "kgfilterfreq"}, 0, "parameter number 103"},
      {{"help", "KGenv3Rate"}, 0, "KGenv3Rate4  Time of step 4"},
      {{"help", "host.pump"}, 0, "host.pump([seconds]) -> integer\n"},
      {{"help", "zyl.transaction"}, 0, "prg:transaction(body) -> any\n"},
      {{"eval", "require 'zyl' help(host.new('ZylSProgram').zones)"}, 0, "prg:zones()"},
      {{"help", "--search", "keygroups", "criteria"}, 0, "zyl.select"},
      {{"help", "pitch"}, 0, "zyl pitch --help"},
      {{"help", "KGfiltrFreq"}, 1, "did you mean \"KGfilterFreq\"?"},
      {{"help", "transactoin"}, 1, "did you mean \"transaction\"?"},
      {{"help", "--search", "cutoff", "keygroup"}, 0, "KGfilterFreq      Filter cutoff"},
      {{"help", "--search", "no such word"}, 1, "no such word"},
      {{"help", "a", "b"}, 2, "give one NAME"},
      {{"eval", "local p = host.new('ZylSProgram') help(p.KGSort)"}, 0, "KGSort(SortByData"},
      {{"eval", "help(print)"}, 1, "give a method"},
  };
  for (const auto& line : lines) {
    const Outcome outcome = Zyl(line.words);
    EXPECT_EQ(outcome.status, line.status) << line.words.back() << outcome.err;
    EXPECT_TRUE(Holds(outcome.status == 0 ? outcome.out : outcome.err, line.part))
        << line.words.back() << outcome.out << outcome.err;
  }
}

TEST(CommandLine, ExitStatusAndMessages) {
  const std::string notAModule = std::string(ZYL_TEST_SCRIPTS) + "/Check.lua";
  const struct {
    std::vector<std::string> words;
    int status;
    const char* out;  // the whole of standard output
    const char* err;  // a part of standard error
  } lines[] = {
      {{}, 2, "", "a verb is missing"},
      {{"../verbs/list"}, 2, "", "there is no verb"},
      {{"lops"}, 2, "", "there is no verb \"lops\"; did you mean \"loops\"?"},
      {{"--nonsense", "eval", ""}, 2, "", "--nonsense"},
      {{"run"}, 2, "", "run needs a script"},
      {{"--sample-rate", "0", "eval", ""}, 2, "", "sample rate"},
      {{"--profile", "/nowhere/p.ini", "eval", ""}, 2, "", "/nowhere/p.ini"},
      {{"--module", "/nowhere/m.so", "eval", ""}, 3, "", "/nowhere/m.so"},
      {{"--module", notAModule, "eval", ""}, 3, "", "could not be loaded"},
      {OverProbe({"eval", "print(1) error('here')"}), 1, "1\n",
       "zyl: eval:1: here\nstack traceback"},
      {OverProbe({"eval", "x ="}), 1, "", "eval:1:"},
      {OverProbe({"eval", "host.nwe()"}), 1, "", "no field \"nwe\"; did you mean \"new\"?"},
      {OverProbe({"eval", "print(host.qqqqqqqqqq)"}), 0, "nil\n", ""},
      {{"eval", "local p = host.new('ZylSProgram') p:Create(host.null) p:KGtune(1)"},
       1,
       "",
       "KGtune: Keygroup index out of range! (index 1, count 1)\n"},
      {{"eval", "host.new('ZylsProgram')"}, 1, "", "did you mean \"ZylSProgram\"?"},
      {OverProbe({"eval", "host.new('Probe'):Fail('abc', 'ArgType')"}), 1, "",
       "zyl: eval:1: Fail: argument 1 \"Number\" is a string, expected an integer\n"},
      {OverProbe({"eval", "print(arg[0], #arg, ...)", "--module", "-x", "--help", ""}), 0,
       "eval\t4\t--module\t-x\t--help\t\n", ""},
      {OverProbe({"--sample-rate", "48000", "eval", "print(host.sampleRate)"}), 0, "48000.0\n", ""},
  };
  for (const auto& line : lines) {
    const Outcome outcome = Zyl(line.words);
    const std::string shown = line.words.empty() ? "" : testing::PrintToString(line.words);
    EXPECT_EQ(outcome.status, line.status) << shown << outcome.err;
    EXPECT_EQ(outcome.out, line.out) << shown;
    EXPECT_TRUE(Holds(outcome.err, line.err)) << shown << outcome.err;
  }
  EXPECT_TRUE(Holds(Zyl({"--help"}).out, "methods [PATTERN]"));
}

TEST(CommandLine, ExitFromAnywhereLeavesInOrder) {
  for (const char* code :
       {"coroutine.wrap(function() pcall(os.exit, 7) end)() print('past it')",
        "local p = host.new('Probe') local m = host.algo { On = function() os.exit(7) end } "
        "p:Register(m) pcall(p.Notify, p, 'On') print('past it')"}) {
    const Outcome outcome = Zyl(OverProbe({"eval", code}));
    EXPECT_EQ(outcome.status, 7) << code << outcome.err;
    EXPECT_EQ(outcome.out, "") << code;
  }
  EXPECT_EQ(Zyl(OverProbe({"eval", "os.exit(false)"})).status, 1);
}

// What is still alive at the end goes without calls into the script that has ended.
TEST(CommandLine, EndsWithObjectsAndSendsLeft) {
  const Outcome outcome = Zyl(OverProbe(
      {"eval",
       "p = host.new('Probe') m = host.algo { On = error } p:Register(m) "
       "pad = m:addPad('x', 0) pad.onSend = error p:Send(m, 'x', 5) "
       "setmetatable({}, { __gc = function() print('last', p:Types(1)) end }) error('end')"}));
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Holds(outcome.err, "zyl: eval:1: end\n")) << outcome.err;
}

TEST(CommandLine, CtrlCStopsAnyScript) {
  const std::string ready = "io.stdout:write('ready\\n') io.stdout:flush() ";
  for (const char* code :
       {"while true do pcall(function() while true do end end) end",
        "coroutine.wrap(function() while true do end end)()",
        "while true do pcall(coroutine.wrap(function() while true do end end)) end",
        "host.pump(600)",
        "local p = host.new('Probe') local m = host.algo { On = function() while true do end end } "
        "p:Register(m) while true do pcall(p.Notify, p, 'On') end"}) {
    const Process process(OverProbe({"eval", ready + code}));
    ASSERT_TRUE(process.Printed("ready")) << code;
    process.Interrupt();
    const Outcome outcome = process.Wait();
    EXPECT_EQ(outcome.status, 130) << code;
    EXPECT_EQ(outcome.err, "zyl: interrupted\n") << code;
  }
}

TEST(CommandLine, ListsTheModulesMethods) {
  const Outcome all = Zyl({"methods"});
  EXPECT_EQ(all.status, 0) << all.err;
  EXPECT_EQ(std::count(all.out.begin(), all.out.end(), '\n'), 295);
  EXPECT_EQ(Zyl({"methods", "filterfreq"}).out, "KGfilterFreq\n");
  EXPECT_EQ(Zyl({"methods", "nothing of the kind"}).status, 1);
}

}  // namespace
