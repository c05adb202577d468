// fuzz-allocations [METHOD]: fails every allocation of every script method, one at a time.
//
// For each call of MethodCalls.h and for n = 1, 2, 3... the call runs in a new world and its n-th
// allocation fails, until the call makes fewer than n. Then the same is done with all later
// allocations failing too, and both are done with the allocations of the workers that the call
// starts. After each call, when its workers have ended:
//
// - If the call reports an error, nothing in the world has changed.
// - If it reports none although an allocation failed, the world is either unchanged (which the
//   result says) or the same as after the undisturbed call.
// - After the world is destroyed, all of its memory is freed.
//
// "The world" is every program and sample record, the program objects with their settings, the
// lists of sample objects and registered modules, the use and lock counts, the data pads and the
// values of the arguments; the pitch tracks only for calls that report an error. What the methods'
// contracts allow beyond that:
//
// - Create, Read and Find detach the old record before they make the new one: a failed call may
//   leave the object without a program. Other objects and records are unchanged.
// - Write stores one file after another. Files that were stored stay stored, and the dirty flags of
//   their samples are cleared.
// - An editor's list is a view, not a record: a failed call may leave fewer rows and cells, and the
//   sample objects that those show.
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "MethodCalls.h"
#include "ProgramSnapshot.h"
#include "frame/entry/MethodList.h"
#include "support/AllocationWatch.h"
#include "support/ScriptSurface.h"
#include "views/EditorTools.h"

namespace zyl::test {
namespace {

namespace fs = std::filesystem;

constexpr int kMostAllocations = 20000;
constexpr unsigned kMostSeconds = 60;  // for one method
constexpr const char* kPaths[] = {"left.wav",  "both.wav",  "both.aif", "tone.wav",
                                  "other.wav", "other.aif", "new.wav",  "made-by-the-fuzzer.wav"};

const ZylSProgram* ProgramObject(const Program& program) {
  return reinterpret_cast<const ZylSProgram*>(program.Algo()->GetDispatch(true));
}

void StoreFiles() {
  std::vector<std::vector<int16_t>> sound(2);
  for (int i = 0; i < 200; ++i) {
    sound[0].push_back(static_cast<int16_t>(i * 97));
    sound[1].push_back(static_cast<int16_t>(i * -31));
  }
  WriteWave("left.wav", {sound[0]});
  WriteWave("tone.wav", {sound[1]});
  WriteWave("other.wav", {sound[1]});
  WriteWave("both.wav", sound);
  Program maker;
  maker.Make(2);
  RIOObject* both = maker("ReadTempSample", "both.wav", -1).Object();
  maker("SampleWrite", both, "both.aif");
  maker("SampleWrite", both, "other.aif");
  maker("ZoneSampleSet", 0, 0, "both.wav");
  maker("Write", "full.zprg", 49);
  maker("DeleteTempSample");
  fs::copy_file(std::string(SourcePath()) + "/fuzz/corpus/sound_font/two.sf2", "two.sf2");
}

// The objects that calls are made with. The names of the members are the letters of MethodCalls.h.
class AllocationWorld {
 public:
  AllocationWorld() : editor_({{60, 100, {}, ""}, {60, 0, {}, ""}, {60, 0, {}, ""}}) {
    other_("Read", "full.zprg");
    own_.Make(4);  // as many keygroups as their arrays have room for
    own_("ZoneSampleSet", 0, 0, "left.wav");
    own_("ZoneSampleSet", 0, 1, "both.wav");
    own_("SampleChannel", 0, 1, 1);
    own_("ZoneSampleSet", 1, 3, "both.aif");
    findSampleFN("both.aif", 0, 0)->setPitchData(std::vector<float>(2, 5.0F));
    own_("KGSelect", 1, true);
    own_("Register", static_cast<RIOObject*>(&listener_));
    mono_ = own_("SampleGet", 0, 0).result;
    channel_ = own_("SampleGet", 0, 1).result;
    whole_ = own_("ReadTempSample", "both.wav", -1).result;
    single_ = own_("ReadTempSample", "tone.wav", 0).result;
    own_("SampleLoopCount", mono_->Object(), 1);
    own_("SampleLoopEnd", mono_->Object(), 0, 100);
    own_("WriteDataToPad", static_cast<RIOObject*>(&slots_), 7, 4, 5);
    own_("WriteDataToPad", static_cast<RIOObject*>(&slots_), 8, 4, 5);
    own_("WriteSampleToPad", static_cast<RIOObject*>(&image_), whole_->Object());
    listener_.AddPad("progressUpdate", newROCParam(0));
    listener_.AddPad("pitchDataFinished", newROCParam(""));
    own_("PitchDataProgressCB", static_cast<RIOObject*>(&listener_));
    own_("PitchDataProgressCBFinish", static_cast<RIOObject*>(&listener_));
    for (const char* name : {"OnProgramParameterChanged", "OnDeletingSmpl", "OnDeletingPrg"}) {
      listener_[name] = [](ROCParams&, ROCParam**) {};
    }
    keyboard_ = MakeBoard("board", 300, 20);
    own_("Dirty", false);
    own_("SampleDirty", 0, 0, false);
  }
  ~AllocationWorld() {
    EndWorkers();
    own_("PitchDataProgressCB", NullObject{});
    own_("PitchDataProgressCBFinish", NullObject{});
    ZylPump(0);
    own_("DeleteTempSample");
  }
  AllocationWorld(const AllocationWorld&) = delete;
  AllocationWorld& operator=(const AllocationWorld&) = delete;

  ROCParam* Value(const std::string& token);
  const Program& Own() const { return own_; }
  // Starts a worker and waits until it has parked.
  void StartWorker();
  // Waits until all workers have parked and are deleted.
  void EndWorkers();

  // Checksums of what the file comment calls the world. Part 0 is the calling object.
  struct State {
    ProgramSnapshot own;
    ProgramSnapshot other;
    std::string rest;
    std::string tracks;
  };
  State Snapshot(const ROCParams& arguments) const;

 private:
  RIOObject* ObjectOf(char letter);

  Program own_;
  Program other_;
  Listener listener_;
  Editor editor_;
  RODPad slots_;
  RODPad image_;
  std::unique_ptr<GOContainer> keyboard_;
  std::shared_ptr<ROCParam> mono_;
  std::shared_ptr<ROCParam> channel_;
  std::shared_ptr<ROCParam> whole_;
  std::shared_ptr<ROCParam> single_;
};

void AllocationWorld::StartWorker() {
  own_("CalcKeygroupPitch", 2);
  ZylPump(10);  // its last progress
  std::this_thread::sleep_for(std::chrono::milliseconds(2));
}

void AllocationWorld::EndWorkers() {
  while (own_("PitchDataCalculating").Int() > 0) {
    own_("PitchDataTimeLeft");
    std::this_thread::yield();
  }
}

RIOObject* AllocationWorld::ObjectOf(char letter) {
  switch (letter) {
    case 'S':
      return mono_->Object();
    case 'Z':
      return channel_->Object();
    case 'W':
      return whole_->Object();
    case 'V':
      return single_->Object();
    case 'O':
      return own_.Algo();
    case 'P':
      return other_.Algo();
    case 'R':
      return &listener_;
    case 'D':
      return &slots_;
    case 'I':
      return &image_;
    case 'G':
      return keyboard_.get();
    case 'L':
      return editor_.Module();
    default:
      return nullptr;
  }
}

ROCParam* AllocationWorld::Value(const std::string& token) {
  if (token == "-") return nullptr;
  if (token == "T" || token == "F") return newROCParam(token == "T");
  if (token == "A") return ROCParam::NewArray(1);
  if (token[0] == '\'') return newROCParam(std::string_view(token).substr(1, token.size() - 2));
  if (std::isupper(static_cast<unsigned char>(token[0])) != 0)
    return newROCParam(ObjectOf(token[0]));
  if (token.find('.') != std::string::npos) return newROCParam(std::stod(token));
  return newROCParam(static_cast<int32_t>(std::stol(token)));
}

AllocationWorld::State AllocationWorld::Snapshot(const ROCParams& arguments) const {
  std::ostringstream rest;
  std::ostringstream tracks;
  for (const char* path : kPaths) {
    for (int channel = -1; channel < 2; ++channel) {
      const genericSample* sample = findSampleFN(path, 0, channel);
      rest << path << ' ' << channel << ": ";
      if (sample == nullptr || sample->useCount == 0) {
        rest << "none\n";
        continue;
      }
      const SampleParameters& p = sample->shared();
      rest << sample->useCount << ' ' << sample->lockValue << ' ' << sample->getChannelCount()
           << ' ' << p.frameCount << ' ' << p.bits << ' ' << p.dirty << ' ' << sample->name << '\n';
      tracks << path << (sample->hasPitchData() ? " has a track\n" : " has no track\n");
    }
  }
  for (const auto* pad : {&slots_, &image_}) {
    rest << "pad ";
    rest.write(reinterpret_cast<const char*>(pad->DataValue()->Data()),
               pad->DataValue()->GetSize());
  }
  for (int i = 0; i < arguments.count; ++i) {
    const ROCParam* value = arguments.Entry(i);
    rest << "\nargument " << i + 1 << ' ' << (value == nullptr ? 0 : value->Type()) << ' ';
    if (value == nullptr) continue;
    if (value->Type() == kTypeInteger) rest << value->Int();
    if (value->Type() == kTypeString) rest << value->Str();
    if (value->Type() == kTypeArray) rest << value->ElementCount();
    if (value->Type() == kTypeObject) rest << (value->Object() != nullptr);
  }
  return {ProgramSnapshot(*ProgramObject(own_), ProgramSnapshot::kCounts),
          ProgramSnapshot(*ProgramObject(other_), ProgramSnapshot::kCounts), rest.str(),
          tracks.str()};
}

std::string LineThatDiffers(const std::string& one, const std::string& two) {
  if (one == two) return {};
  std::istringstream before(one);
  std::istringstream after(two);
  std::string line;
  std::string other;
  while (std::getline(before, line) && std::getline(after, other) && line == other) {
  }
  return "\"" + line.substr(0, 60) + "\" to \"" + other.substr(0, 60) + "\"";
}

std::string Difference(const AllocationWorld::State& one, const AllocationWorld::State& two) {
  std::string difference = one.own.DifferenceFrom(two.own);
  if (difference.empty()) difference = one.other.DifferenceFrom(two.other);
  return difference.empty() ? LineThatDiffers(one.rest, two.rest) : difference;
}

// ---- The pass ----

std::vector<std::string> TokensOf(const std::string& call) {
  std::vector<std::string> tokens;
  for (size_t i = 0; i < call.size(); ++i) {
    const size_t end = call[i] == '\'' ? call.find('\'', i + 1) + 1 : call.find(' ', i);
    tokens.push_back(call.substr(i, std::min(end, call.size()) - i));
    i = std::min(end, call.size());
  }
  return tokens;
}

template <size_t N>
void Copy(const std::string& text, char (&to)[N]) {
  std::snprintf(to, N, "%s", text.c_str());
}

class AllocationPass {
 public:
  // False after a fault, which has been printed.
  bool Try(const ZylFuncInfo& method, const std::string& call);

 private:
  enum Side { kCall, kWorkers };  // whose allocation fails
  // One call in a new world, whose n-th allocation fails. `more`: the call made n or more.
  struct Outcome {
    bool more = false;
    int status = 0;
    char error[200] = "";  // arrays, so that the outcome itself allocates nothing
    char changed[200] = "";
    char changedFromDone[200] = "";
    bool detached = false;
    ptrdiff_t leakedBytes = 0;
  };
  Outcome CallOnce(const ZylFuncInfo& method, const std::string& call, uint64_t n,
                   AllocationWatch::Failing failing, Side side = kCall);
  bool FailEach(const ZylFuncInfo& method, const std::string& call,
                AllocationWatch::Failing failing, Side side);
  std::string FaultOf(const std::string& method, const Outcome& outcome) const;

  std::unique_ptr<AllocationWorld::State> done_;  // after the undisturbed call
};

AllocationPass::Outcome AllocationPass::CallOnce(const ZylFuncInfo& method, const std::string& call,
                                                 uint64_t n, AllocationWatch::Failing failing,
                                                 Side side) {
  Outcome outcome;
  const size_t before = AllocationWatch::LiveBytes();
  {
    AllocationWorld world;
    ROCParams arguments;
    for (const std::string& token : TokensOf(call)) arguments.AddTail(world.Value(token));
    const AllocationWorld::State start = world.Snapshot(arguments);
    ROCParam* made = nullptr;
    // The queries delete workers that have parked.
    if (std::string_view(method.name).starts_with("PitchData")) world.StartWorker();
    const auto fail = side == kCall ? AllocationWatch::FailAt : AllocationWatch::FailOthersAt;
    fail(n, failing);
    outcome.status =
        world.Own().Algo()->GetDispatch(true)->CallFunctionDirect(method, &arguments, &made);
    if (side == kWorkers) world.EndWorkers();  // such a call reports no error
    outcome.more = AllocationWatch::HasFailed();
    fail(0, failing);
    deleteROCParam(made);
    ZylScriptError error;
    if (ZylTakeError(error)) Copy(error.Readable(), outcome.error);
    world.EndWorkers();
    AllocationWorld::State end = world.Snapshot(arguments);
    Copy(Difference(start, end), outcome.changed);
    if (outcome.status != 0 && *outcome.changed == '\0')
      Copy(LineThatDiffers(start.tracks, end.tracks), outcome.changed);
    outcome.detached = ProgramObject(world.Own())->program == nullptr &&
                       start.other.DifferenceFrom(end.other).empty();
    if (n == 0) {
      done_ = std::make_unique<AllocationWorld::State>(std::move(end));
    } else {
      Copy(Difference(*done_, end), outcome.changedFromDone);
    }
  }
  outcome.leakedBytes = static_cast<ptrdiff_t>(AllocationWatch::LiveBytes() - before);
  return outcome;
}

std::string AllocationPass::FaultOf(const std::string& method, const Outcome& outcome) const {
  const bool reported = *outcome.error != '\0';
  if ((outcome.status != 0) != reported) return "the status and the error disagree";
  // The list and the sample objects in it are filled row by row.
  if (method == "ListFillZones" && std::strcmp(outcome.changed, "the lists") == 0) return "";
  const bool detaches = method == "Create" || method == "Read" || method == "Find";
  if (*outcome.changed == '\0' || (detaches && outcome.detached)) return "";
  // These return a different name or number in each call.
  const bool unique = method == "SetUniqueFilePath" || method == "SampleGetBuffer";
  if (outcome.status == 0 && unique) return "";
  if (outcome.status == 0 && *outcome.changedFromDone == '\0') return "";
  return std::string("changed ") + outcome.changed;
}

bool AllocationPass::Try(const ZylFuncInfo& method, const std::string& call) {
  const Outcome whole = CallOnce(method, call, 0, AllocationWatch::kThisAlone);
  if (whole.status != 0) {
    std::printf("%s(%s) is no valid call: %s\n", method.name, call.c_str(), whole.error);
    return false;
  }
  for (const Side side : {kCall, kWorkers}) {
    for (const auto failing : {AllocationWatch::kThisAlone, AllocationWatch::kThisAndAllLater}) {
      if (!FailEach(method, call, failing, side)) return false;
    }
  }
  return true;
}

bool AllocationPass::FailEach(const ZylFuncInfo& method, const std::string& call,
                              AllocationWatch::Failing failing, Side side) {
  for (uint64_t n = 1;; ++n) {
    const Outcome outcome = CallOnce(method, call, n, failing, side);
    std::string fault = FaultOf(method.name, outcome);
    // A cache that has grown does not grow again.
    if (fault.empty() && outcome.leakedBytes > 0 &&
        CallOnce(method, call, n, failing, side).leakedBytes == outcome.leakedBytes) {
      fault = "leaked " + std::to_string(outcome.leakedBytes) + " bytes";
    }
    if (n > kMostAllocations) fault = "too many allocations";
    if (!fault.empty()) {
      std::printf("%s(%s), allocation %d%s%s failed (%s): %s\n", method.name, call.c_str(),
                  static_cast<int>(n), side == kCall ? "" : " of the workers",
                  failing == AllocationWatch::kThisAlone ? "" : " and all later",
                  outcome.status == 0 ? "no error" : outcome.error, fault.c_str());
      return false;
    }
    if (!outcome.more) return true;
  }
}

std::string_view CallsOf(std::string_view method, bool isField) {
  std::string_view calls = "none";
  size_t length = 0;
  if (isField) {
    for (const MethodCalls& row : kFieldCalls) {
      if (!method.starts_with(row.method) || row.method.size() <= length) continue;
      length = row.method.size();
      calls = row.calls;
    }
  } else {
    for (const MethodCalls& row : kMethodCalls) {
      if (row.method == method) calls = row.calls;
    }
  }
  return calls;
}

// Runs one method in a child process, so that a crash is a fault of that method only. Returns the
// number of faults.
int TryMethod(const ZylFuncInfo& method, const std::string& calls) {
  std::fflush(stdout);
  const pid_t parent = ::getpid();
  const pid_t child = ::fork();
  if (child == 0) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent) std::_Exit(1);  // it ended before the call above
    ::alarm(kMostSeconds);
    AllocationPass pass;
    int faults = 0;
    std::istringstream list(calls + "|");
    for (std::string call; std::getline(list, call, '|');) faults += pass.Try(method, call) ? 0 : 1;
    std::fflush(stdout);
    std::_Exit(faults);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  if (WIFEXITED(status)) return WEXITSTATUS(status);
  std::printf("%s ended with signal %d%s\n", method.name, WTERMSIG(status),
              WTERMSIG(status) == SIGALRM ? ": it does not return" : "");
  return 1;
}

// Runs the methods that `wanted` names, or all if it is empty. Returns the number of faults.
int TryMethods(std::string_view wanted) {
  constexpr bool kIsField[] = {
#define ZYL_METHOD(...) false,
#define ZYL_FIELD(...) true,
      ZYL_METHOD_LIST(ZYL_FIELD, ZYL_METHOD, ZYL_METHOD)
#undef ZYL_METHOD
#undef ZYL_FIELD
  };
  const auto start = std::chrono::steady_clock::now();
  const ZylFuncInfo* methods = ZylClassMethods("ZylSProgram");
  int faults = 0;
  int tried = 0;
  for (size_t m = 0; methods[m].name != nullptr; ++m) {
    if (!wanted.empty() && wanted != methods[m].name) continue;
    ++tried;
    faults += TryMethod(methods[m], std::string(CallsOf(methods[m].name, kIsField[m])));
  }
  std::printf("%d methods in %.1f s: %d faults\n", tried,
              std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(),
              faults);
  return faults;
}

}  // namespace
}  // namespace zyl::test

int main(int argc, char** argv) {
  namespace fs = std::filesystem;
  using namespace zyl::test;
  LoadModule();
  if (LoadedModule() == nullptr) return 2;
  std::string folder = (fs::temp_directory_path() / "zyl-allocations-XXXXXX").string();
  if (::mkdtemp(folder.data()) == nullptr) return 2;
  fs::current_path(folder);
  ::setenv("TMPDIR", folder.c_str(), 1);
  ZylSetDiagnosticSink([](std::string_view) {});
  ZylLimitFreeBlocks(0);
  StoreFiles();
  const int faults = TryMethods(argc > 1 ? argv[1] : "");
  LoadedModule().reset();
  fs::current_path("/");
  fs::remove_all(folder);
  return faults == 0 ? 0 : 1;
}
