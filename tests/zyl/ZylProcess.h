// Running the program zyl: arguments in, exit status and both outputs out.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "support/Files.h"

namespace zyl::test {

struct Outcome {
  int status;  // the exit status, or -1 after a signal
  std::string out;
  std::string err;
};

// A running zyl.
class Process {
 public:
  explicit Process(std::vector<std::string> words, const std::string& input = {}) {
    words.insert(words.begin(), ZYL_PROGRAM);
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    WriteBytes(folder_.File("in"), input);
    pid_ = fork();
    if (pid_ == 0) {
      prctl(PR_SET_PDEATHSIG, SIGKILL);
      dup2(open(folder_.File("in").c_str(), O_RDONLY), 0);
      dup2(open(folder_.File("out").c_str(), O_WRONLY | O_CREAT, 0600), 1);
      dup2(open(folder_.File("err").c_str(), O_WRONLY | O_CREAT, 0600), 2);
      execv(pointers[0], pointers.data());
      _exit(127);
    }
  }

  // Waits at most ten seconds until the program has printed that line.
  bool Printed(const std::string& line) const {
    for (int i = 0; i < 1000; ++i) {
      if (ReadBytes(folder_.File("out")).find(line + "\n") != std::string::npos) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
  }
  void Interrupt() const { kill(pid_, SIGINT); }

  Outcome Wait() const {
    int status = 0;
    waitpid(pid_, &status, 0);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadBytes(folder_.File("out")),
            ReadBytes(folder_.File("err"))};
  }

 private:
  TempFolder folder_;
  pid_t pid_;
};

inline Outcome Zyl(const std::vector<std::string>& words, const std::string& input = {}) {
  return Process(words, input).Wait();
}

}  // namespace zyl::test
