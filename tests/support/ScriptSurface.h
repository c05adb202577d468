// The script surface for tests: loads the built module once per process and calls methods of its
// objects by name, as scripts do.
#pragma once

#include <gtest/gtest.h>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/akai.h"
#include "host/byteOrder.h"
#include "host/hostapp.h"
#include "host/qx.h"
#include "support/Files.h"
#include "support/Paths.h"

namespace zyl::test {

// The loaded module, or null.
inline std::unique_ptr<ZylModule>& LoadedModule() {
  static std::unique_ptr<ZylModule> module;
  return module;
}
// Unloads the module after the last test, before the objects that it uses are destroyed.
struct Unloader : testing::Environment {
  void TearDown() override { LoadedModule().reset(); }
};
inline testing::Environment* const unloader = testing::AddGlobalTestEnvironment(new Unloader);
inline void LoadModule(const std::string& profile = {}) {
  LoadedModule().reset();
  qxSetProfile(profile);
  std::string reason;
  LoadedModule() = ZylModule::Load(ModulePath(), reason);
  ASSERT_NE(LoadedModule(), nullptr) << reason;
}

struct NullEntry {};   // an absent argument
struct NullObject {};  // a null object

inline ROCParam* ToParam(int value) { return newROCParam(int32_t{value}); }
inline ROCParam* ToParam(bool value) { return newROCParam(value); }
inline ROCParam* ToParam(double value) { return newROCParam(value); }
inline ROCParam* ToParam(const char* value) { return newROCParam(value); }
inline ROCParam* ToParam(const std::string& value) { return newROCParam(std::string_view(value)); }
inline ROCParam* ToParam(RIOObject* value) { return newROCParam(value); }
inline ROCParam* ToParam(NullObject) { return newROCParam(static_cast<RIOObject*>(nullptr)); }
inline ROCParam* ToParam(NullEntry) { return nullptr; }
// Passes the test's value by reference, so that it sees changes in place.
inline ROCParam* ToParam(ROCParam* value) {
  value->AddReference();
  return value;
}

// The result of a call, if it returned one, and its error, if it failed.
struct Outcome {
  int status = 0;
  std::shared_ptr<ROCParam> result;
  std::optional<ZylScriptError> error;

  int32_t Int() const { return Is(kTypeInteger) ? result->Int() : -424242; }
  bool Bool() const { return Is(kTypeBool) && result->Bool(); }
  double Double() const { return Is(kTypeDouble) ? result->Double() : -424242.0; }
  std::string Text() const { return Is(kTypeString) ? result->Str() : "(no text)"; }
  RIOObject* Object() const { return Is(kTypeObject) ? result->Object() : nullptr; }
  bool Ok() const { return status == 0 && !error; }
  std::string Message() const { return error ? error->Readable() : ""; }

 private:
  bool Is(int type) const {
    EXPECT_TRUE(Ok()) << Message();
    EXPECT_TRUE(result != nullptr && result->Type() == type)
        << "the result is not of type " << ZylTypeName(type);
    return result != nullptr && result->Type() == type;
  }
};

// Calls a method of any script object.
inline Outcome CallList(RIOObject* object, const char* method, ROCParams* arguments) {
  Outcome outcome;
  ROCParam* result = nullptr;
  outcome.status = object->GetDispatch(true)->CallFunctionIndirect(method, arguments, &result);
  if (result != nullptr) outcome.result.reset(result, deleteROCParam);
  ZylScriptError error;
  if (ZylTakeError(error)) outcome.error = error;
  return outcome;
}

template <class... Args>
Outcome CallMethod(RIOObject* object, const char* method, Args... args) {
  ROCParams arguments;
  (arguments.AddTail(ToParam(args)), ...);
  return CallList(object, method, &arguments);
}

// A program object with its algorithm.
class Program {
 public:
  Program() : algo_(ZylNewScriptObject("ZylSProgram")) {}
  template <class... Args>
  Outcome operator()(const char* method, Args... args) const {
    return CallMethod(algo_.get(), method, args...);
  }
  RIOObject* Algo() const { return algo_.get(); }
  void Delete() { algo_.reset(); }
  // Attaches a new program with that number of default keygroups.
  void Make(int keygroups = 1) const {
    (*this)("Create", NullObject{});
    for (int k = 1; k < keygroups; ++k) (*this)("KGCreate", k);
  }

 private:
  std::unique_ptr<ROCAlgo> algo_;
};

// An algorithm whose script methods are the test's functions.
class Listener : public ROCAlgo {
 public:
  using Function = std::function<void(ROCParams&, ROCParam**)>;
  Listener() : ROCAlgo("listener") { SetDispatch(new Dispatch(*this)); }
  Function& operator[](const std::string& name) { return functions_[name]; }

 private:
  class Dispatch : public ZylDispatch {
   public:
    explicit Dispatch(Listener& listener) : listener_(listener) {}
    ZylFuncInfo* GetFuncTable() override { return nullptr; }
    uint32_t* GetAuxTable() override { return nullptr; }
    hashEntry* GetHashTable() override { return nullptr; }
    hashEntry* RebuildHashTable() override { return nullptr; }
    const char* GetClassName() const override { return "Listener"; }
    const char* GetBaseClassName() const override { return ""; }
    void Destroy() override { delete this; }
    int CallFunctionIndirect(const char* name, ROCParams* arguments, ROCParam** result) override {
      const auto found = listener_.functions_.find(std::string_view(name));
      if (found == listener_.functions_.end()) return kNoSuchMethod;
      found->second(*arguments, result);
      return 0;
    }

   private:
    Listener& listener_;
  };
  std::map<std::string, Function, std::less<>>
      functions_;  // std::less<>: lookup without allocation
};

// A fixture with the loaded module and a temporary folder.
class ModuleTest : public testing::Test {
 protected:
  // Loads the module before members of derived fixtures are constructed: these may be programs.
  ModuleTest() {
    if (LoadedModule() == nullptr) LoadModule();
  }
  void SetUp() override {
    folder_.emplace();
    ZylSetDiagnosticSink(
        [this](std::string_view line) { diagnostics += std::string(line) + "\n"; });
  }
  void TearDown() override {
    ZylSetDiagnosticSink({});
    folder_.reset();
  }
  std::string Path(const std::string& name) const { return folder_->File(name); }

  std::string diagnostics;
  std::optional<TempFolder> folder_;
};

// A fixture with a program object that records its OnProgramParameterChanged notifications.
class ProgramTest : public ModuleTest {
 protected:
  // Appends further notifications to `notified`, each as "number value keygroup zone ".
  void Listen() {
    listener["OnProgramParameterChanged"] = [this](ROCParams& list, ROCParam**) {
      EXPECT_EQ(list.Entry(0)->Object(), program.Algo());
      for (int i = 1; i < list.count; ++i) notified += std::to_string(list.Entry(i)->Int()) + " ";
    };
    program("Register", &listener);
  }
  std::string TakeNotified() { return std::exchange(notified, {}); }
  bool TakeDirty() const { return program("Dirty", false).Bool(); }

  std::string notified;
  Program program;
  Listener listener;
};

// Expects that a call failed with an error of this kind.
inline void ExpectError(const Outcome& outcome, const char* kind) {
  ASSERT_TRUE(outcome.error) << "no error was reported";
  EXPECT_NE(outcome.status, 0);
  EXPECT_STREQ(outcome.error->KindName(), kind);
}
inline void ExpectArgValue(const Outcome& outcome, const char* argument, int position) {
  ASSERT_NO_FATAL_FAILURE(ExpectError(outcome, "ArgValue"));
  EXPECT_EQ(outcome.error->argument, argument);
  EXPECT_EQ(outcome.error->position, position);
}
inline void ExpectException(const Outcome& outcome, const std::string& message) {
  ASSERT_NO_FATAL_FAILURE(ExpectError(outcome, "Exception"));
  EXPECT_EQ(outcome.error->message, message);
}

// Stores a WAVE file of 16-bit values; one vector for each channel.
inline void WriteWave(const std::string& path, const std::vector<std::vector<int16_t>>& channels,
                      uint32_t rateHz = 44100) {
  const auto frameBytes = static_cast<uint32_t>(2 * channels.size());
  const auto soundBytes = static_cast<uint32_t>(frameBytes * channels[0].size());
  FieldWriter file(ByteOrder::kLittle);
  file.Text("RIFF").U32(36 + soundBytes).Text("WAVEfmt ").U32(16).U16(1).U16(frameBytes / 2);
  file.U32(rateHz).U32(rateHz * frameBytes).U16(frameBytes).U16(16).Text("data").U32(soundBytes);
  for (size_t i = 0; i < channels[0].size(); ++i) {
    for (const auto& channel : channels) file.U16(static_cast<uint16_t>(channel[i]));
  }
  WriteBytes(path, {reinterpret_cast<const char*>(file.block.data()), file.block.size()});
}

}  // namespace zyl::test
