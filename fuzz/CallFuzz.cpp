#include "CallFuzz.h"

#include <unistd.h>

#include <chrono>
#include <climits>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>
#include <thread>

#include "ProgramSnapshot.h"
#include "frame/ZylSProgram.h"
#include "support/AllocationWatch.h"

namespace zyl::test {
namespace {

namespace fs = std::filesystem;

constexpr int kPrograms = 3;
constexpr int kMostKeygroups = 12;
constexpr int kMostArguments = 9;
constexpr size_t kMostSamples = 40;

constexpr int32_t kEdges[] = {
    0,    1,     -1,    -2,     -3,    2,     3,       4,       7,       8,           15,
    16,   17,    31,    32,     60,    99,    100,     115,     127,     128,         129,
    142,  199,   200,   255,    256,   257,   300,     315,     400,     -128,        -129,
    1000, 32767, 32768, -32768, 65535, 65536, 1 << 20, INT_MAX, INT_MIN, INT_MAX - 1, INT_MIN + 1};

const char* const kWords[] = {
    "",         "wav",         "aif",        "s",           "Omni",
    "1",        "32",          "C3",         "on",          "left.wav",
    "both.aif", "left",        "full.zprg",  "new.zprg",    "new.wav",
    "new.aif",  "two.sf2",     "broken.wav", "broken.zprg", "absent.wav",
    "link.wav", "made/by.wav", ".",          "New Program", "a name that is longer than twelve",
    "%s%n%d"};

// The module exports no types, so this cannot check the type.
const ZylSProgram* ProgramObject(const Program& program) {
  return reinterpret_cast<const ZylSProgram*>(program.Algo()->GetDispatch(true));
}

bool IsOfJobs(std::string_view name) {
  return name.starts_with("Calc") || name.starts_with("PitchData");
}

int Settle(RIOObject* object, const char* method) {
  ROCParams none;
  const Outcome outcome = CallList(object, method, &none);
  return outcome.result != nullptr && outcome.result->Type() == kTypeInteger ? outcome.result->Int()
                                                                             : 0;
}

}  // namespace

const char* CallFuzz::NameOf(State state) {
  constexpr const char* kNames[] = {"no program",   "empty program", "full program",
                                    "dead samples", "jobs running",  "changing arguments",
                                    "short memory"};
  return kNames[state];
}

std::string CallFuzz::MakeFolder() {
  const fs::path inMemory = "/dev/shm";
  const fs::path base = fs::is_directory(inMemory) ? inMemory : fs::temp_directory_path();
  std::string name = (base / "zyl-calls-XXXXXX").string();
  return ::mkdtemp(name.data()) == nullptr ? "" : name;
}

CallFuzz::CallFuzz(uint32_t seed, std::string folder, int callsPerWorld)
    : seed_(seed),
      callsPerWorld_(callsPerWorld),
      folder_(std::move(folder)),
      home_(fs::current_path().string()),
      random_(seed),
      methods_(ZylClassMethods("ZylSProgram")) {
  size_t count = 0;
  while (methods_[count].name != nullptr) ++count;
  counts_.resize(count);
  wanted_.resize(count);
  fs::current_path(folder_);
  ::setenv("TMPDIR", folder_.c_str(), 1);
  ZylSetDiagnosticSink([](std::string_view) {});
  StoreFiles();
  AllocationWatch::SetLargest(kLargestBytes);
}

CallFuzz::~CallFuzz() {
  EndWorld();
  AllocationWatch::SetLargest(SIZE_MAX);
  ZylSetDiagnosticSink({});
  ::unsetenv("TMPDIR");
  fs::current_path(home_);
  fs::remove_all(folder_);
}

// ---- The world ----

void CallFuzz::StoreFiles() {
  std::vector<std::vector<int16_t>> sound(2);
  for (int i = 0; i < 200; ++i) {
    sound[0].push_back(static_cast<int16_t>(20000 * std::sin(i * 0.2)));
    sound[1].push_back(static_cast<int16_t>(random_()));
  }
  WriteWave("left.wav", {sound[0]});
  WriteWave("both.wav", sound);
  std::vector<std::vector<int16_t>> tone(1);
  for (int i = 0; i < 9000; ++i) tone[0].push_back(static_cast<int16_t>(9000 * std::sin(i * 0.05)));
  WriteWave("tone.wav", tone);
  Program maker;
  maker.Make(2);
  RIOObject* both = maker("ReadTempSample", "both.wav", -1).Object();
  maker("SampleWrite", both, "both.aif");
  maker("ZoneSampleSet", 0, 0, "left.wav");
  maker("ZoneSampleSet", 1, 3, "both.aif", 1);
  maker("Write", "full.zprg", 49);
  maker("DeleteTempSample");
  maker.Delete();
  for (const auto& entry : fs::directory_iterator(".")) {
    std::ifstream file(entry.path(), std::ios::binary);
    files_[entry.path().filename().string()] =
        std::string(std::istreambuf_iterator<char>(file), {});
  }
  for (const char* name : {"both.wav", "full.zprg"}) {
    std::string broken = files_[name];
    broken.resize(broken.size() * 2 / 3);
    files_[std::string("broken") + fs::path(name).extension().string()] = broken;
  }
}

void CallFuzz::RenewFolder() {
  for (const auto& entry : fs::directory_iterator(".")) {
    if (files_.count(entry.path().filename().string()) == 0) fs::remove_all(entry.path());
  }
  for (const auto& [name, bytes] : files_) {
    std::ofstream(name, std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  }
  fs::create_symlink("left.wav", "link.wav");
}

void CallFuzz::EndWorld() {
  if (programs_.empty()) return;
  // A worker may send through the listener's pads until it has ended.
  RIOObject* any = programs_[0]->Algo();
  (*programs_[0])("DeleteTempSample");
  Settle(any, "PitchDataCalcCancel");
  while (Settle(any, "PitchDataCalculating") > 0) {
    Settle(any, "PitchDataTimeLeft");
    std::this_thread::sleep_for(std::chrono::microseconds(100));
  }
  (*programs_[0])("PitchDataProgressCB", NullObject{});
  (*programs_[0])("PitchDataProgressCBFinish", NullObject{});
  ZylPump(0);
  programs_.clear();
  samples_.clear();
  others_.clear();
  listener_.reset();
}

void CallFuzz::MakeWorld() {
  EndWorld();
  AllocationWatch::FailOthersAt(0);
  RenewFolder();
  state_ = static_cast<State>(world_++ % kStates);
  listener_ = std::make_unique<Listener>();
  listener_->AddPad("progressUpdate", newROCParam(0))->SetListener(this);
  listener_->AddPad("pitchDataFinished", newROCParam(""))->SetListener(this);
  for (const char* name : {"OnProgramParameterChanged", "OnDeletingSmpl", "OnDeletingPrg"}) {
    (*listener_)[name] = [this](ROCParams&, ROCParam**) { Interfere(); };
  }
  others_.emplace_back(ZylNewPlainObject("Thing"));
  for (const size_t bytes : {0, 21, 700, 5000}) {
    auto pad = std::make_unique<RODPad>();
    std::vector<std::byte> data(bytes);
    for (std::byte& byte : data) byte = static_cast<std::byte>(random_());
    pad->DataValue()->SetData(data.data(), static_cast<int>(bytes));
    others_.push_back(std::move(pad));
  }
  for (int i = 0; i < kPrograms; ++i) {
    programs_.push_back(std::make_unique<Program>());
    Program& program = *programs_.back();
    if (state_ == kNoProgram) continue;
    program("Create", NullObject{});
    if (state_ == kEmptyProgram) {
      program("KGDelete", 0);
    } else {
      FillProgram(program);
    }
    if (i == 0) program("Register", static_cast<RIOObject*>(listener_.get()));
  }
  if (state_ == kDeadSamples) KillSamples(*programs_[0]);
}

void CallFuzz::FillProgram(Program& program) {
  for (int k = 1; k < 3; ++k) program("KGCreate", k);
  program("TolmoPRGreverb", 3);
  program("ZoneSampleSet", 0, 0, "left.wav");
  program("ZoneSampleSet", 0, 1, "both.wav", 1);
  program("ZoneSampleSet", 1, 3, "both.aif", -1);
  program("ZoneSampleSet", 2, 2, "absent.wav");
  program("SampleCreate", 2, 0, "wav", 2);
  for (const auto& [keygroup, zone] : {std::pair{0, 0}, {0, 1}, {1, 3}, {2, 0}}) {
    KeepObject(program("SampleGet", keygroup, zone).result);
  }
  KeepObject(program("ReadTempSample", "tone.wav", 0).result);
  if (state_ != kJobsRunning) return;
  program("ZoneSampleSet", 2, 1, "tone.wav");
  program("PitchDataProgressCB", static_cast<RIOObject*>(listener_.get()));
  program("PitchDataProgressCBFinish", static_cast<RIOObject*>(listener_.get()));
  program("CalcProgramPitch");
}

// Clears the record of half of the sample objects and destroys the other half.
void CallFuzz::KillSamples(Program& program) {
  for (size_t i = 0; i < samples_.size(); i += 2) {
    auto* object = reinterpret_cast<CSample*>(samples_[i]->Object());
    if (object == nullptr || object->sample == nullptr) continue;
    object->sample->deleteSample();
    object->sample = nullptr;
  }
  program("DeleteTempSample");
  programs_[1]->operator()("PrepareDelete");
}

// Replaces a program that has grown by a small one, so that calls stay fast.
void CallFuzz::KeepWithinBounds(Program& program) {
  const auto* object = ProgramObject(program);
  if (object->program != nullptr && object->program->AllocatedKeyGroups() > kMostKeygroups) {
    program("Create", NullObject{});
  }
}

void CallFuzz::KeepObject(const std::shared_ptr<ROCParam>& value) {
  if (value == nullptr || value->Type() != kTypeObject) return;
  const RIOObject* object = value->Object();
  if (object == nullptr || !object->isCSample()) return;
  if (samples_.size() < kMostSamples) {
    samples_.push_back(value);
  } else {
    samples_[Any(kMostSamples)] = value;
  }
}

// Assigns values of any type to the arguments of running calls, as scripts can with host.var.
void CallFuzz::ChangeArguments() {
  for (ROCParams* arguments : arguments_) {
    for (int i = 0; i < arguments->count; ++i) {
      if (arguments->Entry(i) == nullptr || Once(2)) continue;
      const std::unique_ptr<ROCParam, void (*)(ROCParam*)> value(AnyValue(0, ""), deleteROCParam);
      if (value != nullptr) *arguments->Entry(i) = *value;
    }
  }
}

// Callbacks occasionally call methods.
void CallFuzz::Interfere() {
  if (state_ == kShortMemory) {
    if (Once(2)) return;
    AllocationWatch::FailAt(0);  // the calls below and their preparation need memory
  }
  if (state_ == kChangingArguments) {
    interfered_ = true;
    ChangeArguments();
  }
  if (arguments_.size() > 1 || !Once(4) || programs_.empty()) return;
  Program& program = *programs_[Any(kPrograms)];
  interfered_ = true;
  CallOnce(Any(static_cast<uint32_t>(counts_.size())), program);
}

// ---- Arguments ----

int32_t CallFuzz::AnyInt() {
  switch (Any(6)) {
    case 0:
      return kEdges[Any(std::size(kEdges))];
    case 1:
      return static_cast<int32_t>(random_());
    case 2:
      return static_cast<int32_t>(Any(400)) - 20;
    default:
      return static_cast<int32_t>(Any(4));
  }
}

double CallFuzz::AnyDouble() {
  constexpr double kSpecial[] = {0.0,
                                 -0.0,
                                 1.0,
                                 -1.0,
                                 0.5,
                                 1e-5,
                                 2.0,
                                 4294967295.0,
                                 1e308,
                                 -1e308,
                                 5e-324,
                                 std::numeric_limits<double>::quiet_NaN(),
                                 std::numeric_limits<double>::infinity(),
                                 -std::numeric_limits<double>::infinity()};
  return Once(3) ? static_cast<double>(random_()) / 1e6 - 1000.0
                 : kSpecial[Any(std::size(kSpecial))];
}

std::string CallFuzz::AnyText() {
  if (!Once(8)) return kWords[Any(std::size(kWords))];
  switch (Any(4)) {
    case 0:
      return std::string(Any(300), 'x') + ".wav";
    case 1:
      return std::string("in\0side.wav", 11);
    case 2:
      return "\xFF\xC3(\x80";
    default: {
      std::string text(Any(40), ' ');
      // No slash: random paths must stay inside the folder.
      for (char& c : text) {
        c = static_cast<char>(random_());
        if (c == '/') c = '_';
      }
      return text;
    }
  }
}

ROCParam* CallFuzz::AnyObject(const std::string& className) {
  const uint32_t kind = Any(10);
  if (className == "CSample" ? kind < 9 : kind < 3) {
    if (samples_.empty()) return newROCParam(static_cast<RIOObject*>(nullptr));
    return new ROCParam(*samples_[Any(static_cast<uint32_t>(samples_.size()))]);
  }
  if (className == "ROCAlgo" || kind < 6) {
    if (Once(3)) return newROCParam(static_cast<RIOObject*>(listener_.get()));
    return newROCParam(programs_[Any(kPrograms)]->Algo());
  }
  if (kind < 9) return newROCParam(others_[Any(static_cast<uint32_t>(others_.size()))].get());
  if (Once(3)) return newROCParam(static_cast<RIOObject*>(listener_->FindPad("progressUpdate")));
  return newROCParam(static_cast<RIOObject*>(nullptr));
}

ROCParam* CallFuzz::AnyArray() {
  const int count = static_cast<int>(Any(4));
  ROCParam* array = ROCParam::NewArray(count);
  for (int i = 0; i < count; ++i) {
    const std::unique_ptr<ROCParam, void (*)(ROCParam*)> element(
        AnyValue(Once(2) ? kTypeInteger : kTypeString, ""), deleteROCParam);
    if (element != nullptr) array->Element(i) = *element;
  }
  return array;
}

ROCParam* CallFuzz::AnyValue(int type, const std::string& className) {
  constexpr int kTypes[] = {kTypeInteger, kTypeBool,  kTypeString, kTypeDouble,
                            kTypeData,    kTypeArray, kTypeObject, 0};
  if (type == 0) type = Once(2) ? kTypeInteger : kTypes[Any(std::size(kTypes))];
  switch (type) {
    case kTypeInteger:
      return newROCParam(AnyInt());
    case kTypeBool:
      return newROCParam(Once(2));
    case kTypeString:
      return newROCParam(std::string_view(AnyText()));
    case kTypeDouble:
      return newROCParam(AnyDouble());
    case kTypeData:
      return ROCParam::NewData("data", static_cast<int>(Any(5)));
    case kTypeArray:
      return AnyArray();
    case kTypeObject:
      return AnyObject(className);
    default:
      return nullptr;  // an absent argument that takes its position
  }
}

void CallFuzz::FillArguments(size_t method, ROCParams& arguments) {
  const auto& known = wanted_[method];
  const int longest = known.empty() ? 0 : known.rbegin()->first;
  const int count =
      Once(4) ? static_cast<int>(Any(kMostArguments)) : longest + static_cast<int>(Any(2));
  const bool spoilt = Once(3);
  for (int position = 1; position <= count; ++position) {
    const auto found = known.find(position);
    const bool asWanted = found != known.end() && !(spoilt && Once(3));
    arguments.AddTail(asWanted ? AnyValue(found->second.type, found->second.className)
                               : AnyValue(0, ""));
  }
}

void CallFuzz::Learn(size_t method, const ZylScriptError& error) {
  if (error.kind == ZylScriptError::kArgType) {
    wanted_[method][error.position].type = error.expected;
  } else if (error.kind == ZylScriptError::kArgPType) {
    wanted_[method][error.position] = {kTypeObject, error.required};
  } else if (error.kind == ZylScriptError::kArgValue && error.argument == "Sample") {
    wanted_[method][error.position] = {kTypeObject, "CSample"};
  }
}

// ---- Calls ----

bool CallFuzz::Break(size_t method, const ROCParams& arguments, const std::string& what) {
  std::ostringstream text;
  text << methods_[method].name << "(";
  for (int i = 0; i < arguments.count; ++i) {
    const ROCParam* value = arguments.Entry(i);
    if (i > 0) text << ", ";
    if (value == nullptr) {
      text << "nil";
    } else if (value->Type() == kTypeInteger) {
      text << value->Int();
    } else if (value->Type() == kTypeString) {
      text << '"' << value->Str() << '"';
    } else {
      text << ZylTypeName(value->Type());
    }
  }
  text << "), " << NameOf(state_) << ", seed " << seed_ << ", call " << calls_ << ": " << what;
  if (fault_.empty()) fault_ = text.str();
  return false;
}

int CallFuzz::Call(size_t method, Program& program, ROCParams& arguments, ROCParam** result) {
  arguments_.push_back(&arguments);
  if (state_ == kShortMemory && arguments_.size() == 1 && Once(2)) {
    const auto fail = Once(8) ? AllocationWatch::FailOthersAt : AllocationWatch::FailAt;
    fail(1 + Any(Once(4) ? 100 : 8),
         Once(2) ? AllocationWatch::kThisAlone : AllocationWatch::kThisAndAllLater);
  }
  const int status =
      program.Algo()->GetDispatch(true)->CallFunctionDirect(methods_[method], &arguments, result);
  AllocationWatch::FailAt(0);
  arguments_.pop_back();
  return status;
}

// Whether a call with this error may have changed something.
bool CallFuzz::MayChange(size_t method, const ROCParams& arguments, const ZylScriptError& error,
                         const ZylSProgram& object) const {
  // "UpdateKG" is checked after the value was stored.
  if (error.argument == "UpdateKG") return true;
  if (state_ != kShortMemory) return false;
  // The report of a wrong "UpdateKG" needs memory.
  const ROCParam* updated = arguments.count > 4 ? arguments.Entry(4) : nullptr;
  if (std::string_view(methods_[method].name) == "ZoneIntValue" && updated != nullptr &&
      updated->Type() != kTypeInteger) {
    return true;
  }
  // Create, Read and Find detach the old record before they need memory.
  return object.program == nullptr;
}

bool CallFuzz::CallOnce(size_t method, Program& program) {
  ROCParams arguments;
  FillArguments(method, arguments);
  const auto* object = ProgramObject(program);
  const ProgramSnapshot before(*object);
  if (arguments_.empty()) interfered_ = false;
  ++calls_;
  ++counts_[method].calls[state_];
  ROCParam* made = nullptr;
  const int status = Call(method, program, arguments, &made);
  const std::shared_ptr<ROCParam> result(made, deleteROCParam);
  ZylScriptError error;
  const bool reported = ZylTakeError(error);
  if (status == 0) {
    // A call from a callback may have left a pending error.
    if (reported && !interfered_) return Break(method, arguments, "an error without a status");
    ++counts_[method].done[state_];
    KeepObject(result);
    KeepWithinBounds(program);
    return true;
  }
  ++failed_;
  if (!reported && !interfered_) return Break(method, arguments, "a status without an error");
  if (reported && error.Readable().empty())
    return Break(method, arguments, "an error without text");
  if (reported) Learn(method, error);
  if (!interfered_ && !MayChange(method, arguments, error, *object)) {
    const std::string difference = ProgramSnapshot(*object).DifferenceFrom(before);
    if (!difference.empty()) {
      return Break(method, arguments,
                   "failed (" + error.Readable() + ") and changed " + difference);
    }
  }
  return true;
}

bool CallFuzz::RunWorld() {
  MakeWorld();
  const auto count = static_cast<uint32_t>(counts_.size());
  // One round of all methods in each world, and the others by chance.
  for (int i = 0; i < callsPerWorld_; ++i) {
    size_t method = static_cast<uint32_t>(i) < count ? static_cast<size_t>(i) : Any(count);
    // Each of these may start or join a thread, which takes as long as a hundred other calls.
    if (static_cast<uint32_t>(i) >= count && IsOfJobs(methods_[method].name) && !Once(20)) {
      method = Any(count);
    }
    if (Once(200)) ZylPump(0);
    // Replace objects that earlier calls have consumed.
    if (state_ == kNoProgram && Once(40)) programs_[Any(kPrograms)] = std::make_unique<Program>();
    if (state_ >= kFullProgram && Once(150)) {
      Program& program = *programs_[Any(kPrograms)];
      program("Create", NullObject{});
      FillProgram(program);
    }
    if (!CallOnce(method, *programs_[Any(kPrograms)])) return false;
  }
  return fault_.empty();
}

}  // namespace zyl::test
