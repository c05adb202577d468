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
    if (pid_ > 0) {
      kill(pid_, SIGKILL);
      waitpid(pid_, nullptr, 0);
    }
    close(terminal_);
  }

  void Send(const std::string& keys) {
    ASSERT_EQ(write(terminal_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  }
  // Waits at most ten seconds for the text, after the texts that were waited for before.
  testing::AssertionResult Shows(const std::string& text) {
    const Clock::time_point end = Clock::now() + std::chrono::seconds(10);
    for (;;) {
      const size_t place = output_.find(text, seen_);
      if (place != std::string::npos) {
        seen_ = place + text.size();
        return testing::AssertionSuccess();
      }
      if (Clock::now() > end || !ReadSome()) break;
    }
    return testing::AssertionFailure() << "wanted " << text << " in: " << output_.substr(seen_);
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

class Repl : public testing::Test {
 protected:
  const TempFolder home_;
};

TEST_F(Repl, PrintsResultsAndErrorsAndContinuesIncompleteChunks) {
  Terminal terminal(home_.Path());
  ASSERT_TRUE(terminal.Shows("repl:1> "));
  terminal.Send("1 + 1, 'x'\n");
  EXPECT_TRUE(terminal.Shows("\n2, \"x\"\r\n"));
  EXPECT_TRUE(terminal.Shows("repl:2> "));
  terminal.Send("local prg = host.new('ZylSProgram')\n");
  EXPECT_TRUE(terminal.Shows("repl:3> "));
  terminal.Send("prg\n");
  EXPECT_TRUE(terminal.Shows("\nROCAlgo: ZylSProgram\r\n"));
  terminal.Send("prg:Register(\n");
  EXPECT_TRUE(terminal.Shows("repl:5>> "));
  terminal.Send("'abc')\n");
  EXPECT_TRUE(terminal.Shows("repl:4: Register: argument 1 \"RegisterModule\" is a string"));
  EXPECT_TRUE(terminal.Shows("repl:6> "));
  terminal.Send("x =\x04");  // Ctrl-D ends in an empty line only
  terminal.Send(" = 5\n");
  EXPECT_TRUE(terminal.Shows("repl:6: unexpected symbol near '='\r\n"));
  EXPECT_TRUE(terminal.Shows("repl:7> "));
  EXPECT_EQ(terminal.EndStatus(), 0);
}

TEST_F(Repl, TabCompletesMethodsFieldsAndGlobals) {
  Terminal terminal(home_.Path());
  ASSERT_TRUE(terminal.Shows("repl:1> "));
  terminal.Send("prg = host.new('ZylSProgram')\n");
  ASSERT_TRUE(terminal.Shows("repl:2> "));
  for (const char* line : {"type(prg.KGfilterFr\t)", "type(host.pum\t)", "type(collectg\t)",
                           "type(prg.KGsor\x08\x08\x08So\t)", "type(string.fo\t)"}) {
    terminal.Send(std::string(line) + "\n");
    EXPECT_TRUE(terminal.Shows("\n\"function\"\r\n")) << line;
  }
  // A point also completes fields that are no functions. Several matches are completed to their
  // common start, then listed.
  terminal.Send("m = host.algo { Fun = print, Field = 1 }\n");
  ASSERT_TRUE(terminal.Shows("repl:8> "));
  terminal.Send("m.Fie\t\n");
  EXPECT_TRUE(terminal.Shows("\n1\r\n"));
  terminal.Send("prg:KGenv3Ra\t\t");
  EXPECT_TRUE(terminal.Shows("KGenv3Rate1  KGenv3Rate2  KGenv3Rate3  KGenv3Rate4"));
  terminal.Send("\x03");
  ASSERT_TRUE(terminal.Shows("^C"));
  // Completion ignores missing fields and runs no metamethods.
  terminal.Send("t = setmetatable({}, { __index = function() error('ran') end })\n");
  terminal.Send(
      "nothing.at.all:x\t\x15"
      "t.x\t\x15"
      "('done')\n");
  EXPECT_TRUE(terminal.Shows("\n\"done\"\r\n"));
}

TEST_F(Repl, CtrlCReturnsToThePrompt) {
#ifdef __SANITIZE_THREAD__
  GTEST_SKIP() << "the sanitizer delays a signal until the next call of the system";
#endif
  Terminal terminal(home_.Path());
  ASSERT_TRUE(terminal.Shows("repl:1> "));
  terminal.Send("half a li");
  ASSERT_TRUE(terminal.Shows("half a li"));
  terminal.Send("\x03");
  ASSERT_TRUE(terminal.Shows("repl:1> "));
  terminal.Send("for i = 1, 2 do\n");
  ASSERT_TRUE(terminal.Shows("repl:2>> "));
  terminal.Send("\x03");
  ASSERT_TRUE(terminal.Shows("repl:2> "));
  terminal.Send("co = coroutine.create(function() while true do coroutine.yield(7) end end)\n");
  for (const char* code :
       {"io.write('on', 'going\\n') while true do pcall(coroutine.resume, co) end",
        "io.write('on', 'going\\n') host.pump(600)",
        "io.write('on', 'going\\n') coroutine.wrap(function() while true do end end)()"}) {
    terminal.Send(std::string(code) + "\n");
    ASSERT_TRUE(terminal.Shows("ongoing")) << code;
    terminal.Send("\x03");
    ASSERT_TRUE(terminal.Shows("interrupted\r\n")) << code;
    ASSERT_TRUE(terminal.Shows("> ")) << code;
  }
  terminal.Send("require 'zyl' prg = host.new('ZylSProgram') prg:Create(host.null)\n");
  terminal.Send(
      "prg:transaction(function() prg:PRGpoly(3) print('op' .. 'en') repeat until false end)\n");
  ASSERT_TRUE(terminal.Shows("\nopen\r\n"));
  terminal.Send("\x03");
  ASSERT_TRUE(terminal.Shows("interrupted\r\n"));
  terminal.Send("'poly', prg:PRGpoly()\n");
  EXPECT_TRUE(terminal.Shows("\n\"poly\", 15\r\n"));
  // Later chunks run normally, also in coroutines.
  terminal.Send("coroutine.wrap(function() coroutine.yield(6 * 7) end)()\n");
  EXPECT_TRUE(terminal.Shows("\n42\r\n"));
  terminal.Send("os.exit(5)\n");
  EXPECT_EQ(terminal.ExitStatus(), 5);
}

TEST_F(Repl, HistoryIsKeptBetweenSessions) {
  {
    Terminal terminal(home_.Path());
    ASSERT_TRUE(terminal.Shows("repl:1> "));
    terminal.Send("'fir' .. 'st', 'é'\n");
    ASSERT_TRUE(terminal.Shows("\"first\", \"é\""));
    terminal.Send("\n\n1\n1\n");
    ASSERT_TRUE(terminal.Shows("repl:6> "));
    EXPECT_EQ(terminal.EndStatus(), 0);
  }
  EXPECT_EQ(FileText(home_ / "zyl/history"), "'fir' .. 'st', 'é'\n1\n");
  Terminal terminal(home_.Path());
  ASSERT_TRUE(terminal.Shows("repl:1> "));
  terminal.Send("\x1b[A\x1b[A\n");
  EXPECT_TRUE(terminal.Shows("\"first\", \"é\""));
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
  EXPECT_NE(piped.out.find("{ t = (the table it is in) }\n"), std::string::npos) << piped.out;
  EXPECT_NE(piped.out.find("1000, ... 4000 more\n}\n"), std::string::npos) << piped.out;
  EXPECT_NE(piped.out.find("{ { { { { { { { {...} } } } } } } } }\n"), std::string::npos);
  EXPECT_NE(piped.out.find("{ [2.5] = 3, [\"a b\"] = 1, [\"end\"] = 2, [true] = 4 }\nnamed\n"),
            std::string::npos);
  EXPECT_NE(piped.out.find("\"a\\x00\\n\\xFF\", -0.5, 1e+100, nil\n"), std::string::npos);
  EXPECT_EQ(piped.err, "repl:10: here\n");
}

}  // namespace
}  // namespace zyl::test
