// Calls the module's methods with arguments of every kind, on programs in every state, from a fixed
// seed, and checks that a failing call reports an error and leaves its program unchanged byte for
// byte.
//
// The arguments of the methods are not listed here: errors name them, and later calls of the method
// use them more often. So new methods are covered without changes here.
//
// Writes files into the scratch folder only, which becomes the working folder. Allocations beyond
// kLargestBytes fail.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "support/ScriptSurface.h"

class ZylSProgram;

namespace zyl::test {

class CallFuzz : private ROCPadListener {
 public:
  enum State {
    kNoProgram,
    kEmptyProgram,
    kFullProgram,
    kDeadSamples,
    kJobsRunning,
    kChangingArguments,  // callbacks change the values and types of the running calls' arguments
    kShortMemory,        // in many calls one allocation fails, or all from one on
    kStates
  };
  static const char* NameOf(State state);
  static constexpr size_t kLargestBytes = size_t{3} << 20;

  // A new folder, in memory if possible, because calls flush many files to disk.
  static std::string MakeFolder();
  // The module must be loaded. `folder` exists; this object owns it and removes it when destroyed.
  CallFuzz(uint32_t seed, std::string folder, int callsPerWorld);
  ~CallFuzz() override;
  CallFuzz(const CallFuzz&) = delete;
  CallFuzz& operator=(const CallFuzz&) = delete;

  // Creates a world of the next state and calls methods in it. Returns false after the first fault;
  // Fault() describes it with everything needed to reproduce it.
  bool RunWorld();
  const std::string& Fault() const { return fault_; }

  struct MethodCount {
    uint64_t calls[kStates] = {};
    uint64_t done[kStates] = {};  // without an error
  };
  const std::vector<MethodCount>& Counts() const { return counts_; }
  const ZylFuncInfo& MethodAt(size_t index) const { return methods_[index]; }
  uint64_t CallCount() const { return calls_; }
  uint64_t FailedCount() const { return failed_; }

 private:
  // What earlier calls revealed about an argument.
  struct Wanted {
    int type = 0;
    std::string className;
  };

  void OnSend(ROCPad&, const ROCParam&) override {}
  void OnUpdate(ROCPad&, const ROCParam&) override {}

  uint32_t Any(uint32_t count) { return static_cast<uint32_t>(random_()) % count; }
  bool Once(uint32_t in) { return Any(in) == 0; }

  void StoreFiles();
  void RenewFolder();
  void MakeWorld();
  void EndWorld();
  void FillProgram(Program& program);
  void KillSamples(Program& program);
  void KeepWithinBounds(Program& program);
  void KeepObject(const std::shared_ptr<ROCParam>& value);

  int32_t AnyInt();
  double AnyDouble();
  std::string AnyText();
  ROCParam* AnyObject(const std::string& className);
  ROCParam* AnyArray();
  ROCParam* AnyValue(int type, const std::string& className);
  void FillArguments(size_t method, ROCParams& arguments);
  void Learn(size_t method, const ZylScriptError& error);
  int Call(size_t method, Program& program, ROCParams& arguments, ROCParam** result);
  bool CallOnce(size_t method, Program& program);
  bool MayChange(size_t method, const ROCParams& arguments, const ZylScriptError& error,
                 const ZylSProgram& object) const;
  bool Break(size_t method, const ROCParams& arguments, const std::string& what);
  void ChangeArguments();
  void Interfere();

  const uint32_t seed_;
  const int callsPerWorld_;
  const std::string folder_;
  std::string home_;
  std::mt19937 random_;
  const ZylFuncInfo* methods_;
  std::vector<MethodCount> counts_;
  std::vector<std::map<int, Wanted>> wanted_;  // by method and position
  std::map<std::string, std::string> files_;   // by name: their first contents

  State state_ = kNoProgram;
  uint64_t world_ = 0;
  uint64_t calls_ = 0;
  uint64_t failed_ = 0;
  std::string fault_;

  std::vector<std::unique_ptr<Program>> programs_;
  std::unique_ptr<Listener> listener_;
  std::vector<std::unique_ptr<RIOObject>> others_;
  std::vector<std::shared_ptr<ROCParam>> samples_;
  bool interfered_ = false;            // a callback of the outermost call changed something
  std::vector<ROCParams*> arguments_;  // of the running calls, the outermost first
};

}  // namespace zyl::test
