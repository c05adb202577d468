// The prompt of zyl on a terminal, and with input from a pipe.
#include <poll.h>
#include <pty.h>

#include "zyl/ZylProcess.h"

namespace zyl::test {
namespace {

using Clock = std::chrono::steady_clock;

// zyl repl on a pseudo-terminal.
class Terminal {
 public:
  explicit Terminal(const std::string& stateHome) {
    winsize size = {};
    size.ws_row = 24;
    size.ws_col = 100;
    pid_ = forkpty(&terminal_, nullptr, nullptr, &size);
    if (pid_ == 0) {
      setenv("XDG_STATE_HOME", stateHome.c_str(), 1);
      setenv("TERM", "xterm", 1);
      execl(ZYL_PROGRAM, ZYL_PROGRAM, "repl", static_cast<char*>(nullptr));
      _exit(127);
    }
  }
  ~Terminal() {
    if (pid_ > 0) kill(pid_, SIGKILL);
    if (pid_ > 0) waitpid(pid_, nullptr, 0);
    close(terminal_);
  }

  // Sends the keys of each step and waits at most ten seconds for its text, after the texts of the
  // steps before.
  void Play(const std::vector<std::pair<std::string, std::string>>& steps) {
    for (const auto& [keys, text] : steps) {
      ASSERT_EQ(write(terminal_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
      const Clock::time_point end = Clock::now() + std::chrono::seconds(10);
      while (output_.find(text, seen_) == std::string::npos) {
        ASSERT_TRUE(Clock::now() < end && ReadSome())
            << "wanted " << text << " in: " << output_.substr(seen_);
      }
      seen_ = output_.find(text, seen_) + text.size();
    }
  }
  // Presses Ctrl-D until the program ends: one that is sent before the line editor sets up the
  // terminal is lost.
  int EndStatus() { return ExitStatus("\x04"); }
  // -1 when the program does not end within ten seconds.
  int ExitStatus(const std::string& keys = {}) {
    const Clock::time_point end = Clock::now() + std::chrono::seconds(10);
    int status = 0;
    while (waitpid(pid_, &status, WNOHANG) == 0) {
      if (Clock::now() > end) {
        kill(pid_, SIGKILL);
        waitpid(pid_, &status, 0);
        break;
      }
      if (write(terminal_, keys.data(), keys.size()) < 0 || !ReadSome()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
      }
    }
    pid_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  // False at the end of the output.
  bool ReadSome() {
    pollfd ready = {terminal_, POLLIN, 0};
    if (poll(&ready, 1, 100) == 0) return true;
    char bytes[4096];
    const ssize_t count = read(terminal_, bytes, sizeof bytes);
    if (count > 0) output_.append(bytes, static_cast<size_t>(count));
    return count > 0;
  }

  pid_t pid_ = -1;
  int terminal_ = -1;
  std::string output_;
  size_t seen_ = 0;
};

struct Repl : testing::Test {
  const TempFolder home;
  Terminal terminal{home.File("")};
};

TEST_F(Repl, PrintsResultsAndErrorsAndContinuesIncompleteChunks) {
  terminal.Play({
      {"", "repl:1> "},
      {"1 + 1, 'x'\n", "\n2, \"x\"\r\n"},
      {"", "repl:2> "},
      {"local prg = host.new('ZylSProgram')\n", "repl:3> "},
      {"prg\n", "\nROCAlgo: ZylSProgram\r\n"},
      {"prg:Register(\n", "repl:5>> "},
      {"'abc')\n", "repl:4: Register: argument 1 \"RegisterModule\" is a string"},
      {"", "repl:6> "},
      {"x =\x04 = 5\n", "repl:6: unexpected symbol near '='\r\n"},  // Ctrl-D in a line ends nothing
      {"", "repl:7> "},
  });
  EXPECT_EQ(terminal.EndStatus(), 0);
}

TEST_F(Repl, TabCompletesMethodsFieldsAndGlobals) {
  terminal.Play({{"", "repl:1> "}, {"prg = host.new('ZylSProgram')\n", "repl:2> "}});
  for (const char* line : {"type(prg.KGfilterFr\t)\n", "type(host.pum\t)\n", "type(collectg\t)\n",
                           "type(prg.KGsor\x08\x08\x08So\t)\n", "type(string.fo\t)\n"}) {
    terminal.Play({{line, "\n\"function\"\r\n"}});
  }
  terminal.Play({
      // A point also completes fields that are no functions. Several matches are completed to
      // their common start, then listed.
      {"m = host.algo { Fun = print, Field = 1 }\n", "repl:8> "},
      {"m.Fie\t\n", "\n1\r\n"},
      {"prg:KGenv3Ra\t\t", "KGenv3Rate1  KGenv3Rate2  KGenv3Rate3  KGenv3Rate4"},
      {"\x03", "^C"},
      // Completion ignores missing fields and runs no metamethods.
      {"t = setmetatable({}, { __index = function() error('ran') end })\n", ""},
      {"nothing.at.all:x\t\x15"
       "t.x\t\x15"
       "('done')\n",
       "\n\"done\"\r\n"},
  });
}

TEST_F(Repl, CtrlCReturnsToThePrompt) {
#ifdef __SANITIZE_THREAD__
  GTEST_SKIP() << "the sanitizer delays a signal until the next call of the system";
#endif
  terminal.Play({
      {"", "repl:1> "},
      {"half a li", "half a li"},
      {"\x03", "repl:1> "},
      {"for i = 1, 2 do\n", "repl:2>> "},
      {"\x03", "repl:2> "},
      {"co = coroutine.create(function() while true do coroutine.yield(7) end end)\n", ""},
  });
  for (const std::string code : {"while true do pcall(coroutine.resume, co) end", "host.pump(600)",
                                 "coroutine.wrap(function() while true do end end)()"}) {
    SCOPED_TRACE(code);
    terminal.Play({{"io.write('on', 'going\\n') " + code + "\n", "ongoing"},
                   {"\x03", "interrupted\r\n"},
                   {"", "> "}});
  }
  terminal.Play({
      {"require 'zyl' prg = host.new('ZylSProgram') prg:Create(host.null)\n", ""},
      {"prg:transaction(function() prg:PRGpoly(3) print('op' .. 'en') repeat until false end)\n",
       "\nopen\r\n"},
      {"\x03", "interrupted\r\n"},
      {"'poly', prg:PRGpoly()\n", "\n\"poly\", 15\r\n"},
      // Later chunks run normally, also in coroutines.
      {"coroutine.wrap(function() coroutine.yield(6 * 7) end)()\n", "\n42\r\n"},
      {"os.exit(5)\n", ""},
  });
  EXPECT_EQ(terminal.ExitStatus(), 5);
}

TEST_F(Repl, HistoryIsKeptBetweenSessions) {
  terminal.Play(
      {{"", "repl:1> "}, {"'fir' .. 'st', 'é'\n", "\"first\", \"é\""}, {"\n\n1\n1\n", "repl:6> "}});
  EXPECT_EQ(terminal.EndStatus(), 0);
  EXPECT_EQ(ReadBytes(home.File("zyl/history")), "'fir' .. 'st', 'é'\n1\n");
  Terminal next(home.File(""));
  next.Play({{"", "repl:1> "}, {"\x1b[A\x1b[A\n", "\"first\", \"é\""}});
}

TEST_F(Repl, ReadsLinesFromAPipe) {
  Outcome piped =
      Zyl({"repl"}, "x = { 1, two = { 'b', {} } }\nx\nfor i = 1, 2 do\n  print(i)\nend\n_");
  EXPECT_EQ(piped.status, 0);
  EXPECT_EQ(piped.out, "{ 1, two = { \"b\", {} } }\n1\n2\n{ 1, two = { \"b\", {} } }\n");
  EXPECT_EQ(piped.err, "");
  piped = Zyl({"repl"}, "1\n\nerror({})\nprint(2)\nif x then\n");
  EXPECT_EQ(piped.status, 1);
  EXPECT_EQ(piped.out, "1\n2\n");
  EXPECT_EQ(piped.err, "(the error value is a table)\nrepl:5: 'end' expected near <eof>\n");
  EXPECT_EQ(Zyl({"repl"}, "os.exit(3)\n").status, 3);
}

TEST_F(Repl, ShowsLargeAndCyclicTables) {
  const Outcome piped = Zyl({"repl"},
                            "t = {} t.t = t\nt\n"
                            "t = {} for i = 1, 5000 do t[i] = i end\nt\n"
                            "t = {} for i = 1, 50 do t = { t } end\nt\n"
                            "{ ['a b'] = 1, ['end'] = 2, [2.5] = 3, [true] = 4 }\n"
                            "setmetatable({}, { __tostring = function() return 'named' end })\n"
                            "'a\\0\\n\\xff', -0.5, 1e100, nil\n"
                            "setmetatable({}, { __tostring = function() error('here') end })\n");
  for (const char* part : {"{ t = (the table it is in) }\n", "1000, ... 4000 more\n}\n",
                           "{ { { { { { { { {...} } } } } } } } }\n",
                           "{ [2.5] = 3, [\"a b\"] = 1, [\"end\"] = 2, [true] = 4 }\nnamed\n",
                           "\"a\\x00\\n\\xFF\", -0.5, 1e+100, nil\n"}) {
    EXPECT_NE(piped.out.find(part), std::string::npos) << part << piped.out;
  }
  EXPECT_EQ(piped.err, "repl:10: here\n");
}

}  // namespace
}  // namespace zyl::test
