// The command line of zyl: exit status, output, messages, Ctrl-C. The tests of its API are the Lua
// scripts of this folder, run here with the probe module.
#include "zyl/ZylProcess.h"

namespace zyl::test {
namespace {

std::vector<std::string> OverProbe(const std::vector<std::string>& words) {
  std::vector<std::string> all = {"--module", ZYL_PROBE_MODULE};
  all.insert(all.end(), words.begin(), words.end());
  return all;
}

bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

void ExpectPasses(std::vector<std::string> words) {
  words.insert(words.end() - 1, "run");
  words.back() = ZYL_TEST_SCRIPTS "/" + words.back() + ".lua";
  const Outcome outcome = Zyl(words);
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.err, "");
}

TEST(Api, EveryScriptPasses) {
  for (const char* name : {"Values", "Objects", "Errors", "Callbacks", "Pads"}) {
    ExpectPasses(OverProbe({name}));
  }
  ExpectPasses({"Editor"});
}

TEST(Api, FilesAreCopiedAndCompared) {
  const TempFolder folder;
  const Outcome outcome = Zyl({"run", ZYL_TEST_SCRIPTS "/Files.lua", folder.File("")});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
}

TEST(Api, ReportsAMisspelledHandlerOnce) {
  const Outcome outcome = Zyl(
      OverProbe({"eval",
                 "for i = 1, 2 do host.algo { OnProgramParameterchanged = print, On = print } end "
                 "local m = host.algo { OnDeletingPrg = print } m.OnDeletingSmpl = print"}));
  EXPECT_EQ(outcome.err,
            "zylhost: host.algo: \"OnProgramParameterchanged\" is not the name of a notification; "
            "did you mean \"OnProgramParameterChanged\"?\n");
}

TEST(Reference, MatchesTheModuleAndTheCommittedDocs) {
  ExpectPasses({"Reference"});
  const TempFolder folder;
  const std::string source = ZYL_SOURCE;
  EXPECT_EQ(Zyl({"run", source + "/tools/reference/WriteDocs.lua", folder.File("")}).err, "");
  for (const char* name : {"methods.md", "zyl.d.lua"}) {
    EXPECT_TRUE(ReadBytes(folder.File(name)) == ReadBytes(source + "/docs/" + name))
        << "docs/" << name << " is stale: run ./dev docs";
  }
}

TEST(Sugar, LoopsSelectsAndRollsProgramsBack) {
  const TempFolder folder;
  const Outcome outcome = Zyl({"run", ZYL_TEST_SCRIPTS "/Sugar.lua", folder.File("")});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
}

TEST(Reference, HelpFindsMethodsByNamePartAndMeaning) {
  const struct {
    std::vector<std::string> words;
    int status;
    const char* part;  // of what is printed
  } lines[] = {
      {{"help"}, 0, "Keygroup parameters"},
      {{"help", "kgfilterfreq"}, 0, "parameter number 103"},
      {{"help", "host.pump"}, 0, "host.pump([seconds]) -> integer\n"},
      {{"help", "zyl.transaction"}, 0, "prg:transaction(body) -> any\n"},
      {{"eval", "require 'zyl' help(host.new('ZylSProgram').zones)"}, 0, "prg:zones()"},
      {{"help", "pitch"}, 0, "zyl pitch --help"},
      {{"help", "KGfiltrFreq"}, 1, "did you mean \"KGfilterFreq\"?"},
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
      {{"run"}, 2, "", "run needs a script"},
      {{"--sample-rate", "0", "eval", ""}, 2, "", "sample rate"},
      {{"--profile", "/nowhere/p.ini", "eval", ""}, 2, "", "/nowhere/p.ini"},
      {{"--module", "/nowhere/m.so", "eval", ""}, 3, "", "/nowhere/m.so"},
      {{"--module", notAModule, "eval", ""}, 3, "", "could not be loaded"},
      {OverProbe({"eval", "print(1) error('here')"}), 1, "1\n",
       "zyl: eval:1: here\nstack traceback"},
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

TEST(CommandLine, ExitWorksFromCoroutinesAndCallbacks) {
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

// Objects that are alive at the end are freed without calls into the closed script.
TEST(CommandLine, EndsWithLiveObjectsAndPendingSends) {
  const Outcome outcome = Zyl(OverProbe(
      {"eval",
       "p = host.new('Probe') m = host.algo { On = error } p:Register(m) "
       "pad = m:addPad('x', 0) pad.onSend = error p:Send(m, 'x', 5) "
       "setmetatable({}, { __gc = function() print('last', p:Types(1)) end }) error('end')"}));
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Holds(outcome.err, "zyl: eval:1: end\n")) << outcome.err;
}

TEST(CommandLine, CtrlCStopsAnyScript) {
#ifdef __SANITIZE_THREAD__
  GTEST_SKIP() << "the sanitizer delays a signal until the next call of the system";
#endif
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

}  // namespace
}  // namespace zyl::test
