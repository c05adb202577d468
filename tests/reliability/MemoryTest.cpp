// Script calls that run out of memory: whichever allocation fails, the call reports it and the
// program stays as it was.
#include "support/AllocationWatch.h"
#include "support/ProgramRecord.h"

namespace zyl::test {
namespace {

class ShortMemory : public ModuleTest {
 protected:
  void SetUp() override {
    ModuleTest::SetUp();
    WriteWave(Path("a.wav"), {{1, 2, 3}, {4, 5, 6}});
    program.Make(3);
    program("ZoneSampleSet", 0, 1, Path("a.wav"));
    program("FileName", Path("before.zprg"));
    listener["OnProgramParameterChanged"] = [](ROCParams&, ROCParam**) {};
    program("Register", &listener);
  }

  // Everything of the program that the calls below could change.
  std::string State() const {
    const ProgramRecord record(program);
    const std::vector<std::byte> image = record.Image();
    std::string state(reinterpret_cast<const char*>(image.data()), image.size());
    state += record->GetFileName();
    for (int i = 0; i < kZones * record->AllocatedKeyGroups(); ++i) {
      const char* path = record->keyGroupExtensions[i / kZones].SamplePath(i % kZones);
      const genericSample* sample = record->sampleTable[i];
      state += std::string("\n") + (path == nullptr ? "" : path);
      if (sample == nullptr) continue;
      state += std::string(sample->name) + sample->filePath + std::to_string(sample->useCount) +
               std::to_string(sample->channel) + std::to_string(sample->getChannelCount()) +
               std::to_string(sample->shared().bits) + std::to_string(sample->shared().dirty);
    }
    return state + std::to_string(program("GetUsedPhysicalMemory", false).Int()) +
           std::to_string(program("Dirty").Bool());
  }

  // Fails the first allocation of the call, then the second, and so on until the call succeeds.
  template <class Check, class... Args>
  void FailEach(const Program& object, Check check, const char* method, Args... args) {
    SCOPED_TRACE(method);
    for (uint64_t n = 1;; ++n) {
      ASSERT_LT(n, 500u);
      ROCParams arguments;
      (arguments.AddTail(ToParam(args)), ...);
      ROCParam* result = nullptr;
      AllocationWatch::FailAt(n);
      const int status =
          object.Algo()->GetDispatch(true)->CallFunctionIndirect(method, &arguments, &result);
      const bool failed = AllocationWatch::HasFailed();
      AllocationWatch::FailAt(0);
      const ROCParamPtr owned(result);
      ZylScriptError error;
      EXPECT_EQ(ZylTakeError(error), status != 0);
      if (!failed) {
        EXPECT_EQ(status, 0);
        return;
      }
      // A library that returns no record is no error: the result says so.
      const bool refused = result != nullptr && result->Type() == kTypeBool && !result->Bool();
      ASSERT_TRUE(status == 0 ? refused : result == nullptr) << "allocation " << n;
      ASSERT_NO_FATAL_FAILURE(check(n));
    }
  }

  Program program;
  Listener listener;
};

TEST_F(ShortMemory, ACallThatFailsChangesNothing) {
  const std::string text = "a text that does not fit into a string object";
  std::string before;
  const auto unchanged = [&](uint64_t n) {
    ASSERT_TRUE(State() == before) << "at allocation " << n;
  };
  const auto fail = [&](const char* method, auto... args) {
    before = State();
    FailEach(program, unchanged, method, args...);
  };
  RIOObject* sample = program("SampleGet", 0, 1).Object();
  fail("PRGname", "New");
  fail("FileName", text);
  fail("SetUniqueFilePath");
  fail("ZoneSamplePath", 0, 1, text);
  fail("SampleName", sample, text);
  fail("SampleFilePath", sample, text);
  fail("SampleChannelCount", sample, 4);
  fail("SampleBits", sample, 24);
  fail("KGCreate", 1, program.Algo(), 0);
  fail("KGCreate", 0);
  fail("PRGpoly", 9);
  fail("PRGindyOutput", 2);
  fail("PRGStringValue", 3, "7");
  fail("ZoneIntValue", -1, 0, 230, 3);
  fail("SampleIntValue", 0, 1, 306, 1);
}

TEST_F(ShortMemory, ACreateThatFailsLeavesNoRecordBehind) {
  const std::string before = State();
  const Program copy;
  for (RIOObject* source : {program.Algo(), static_cast<RIOObject*>(nullptr)}) {
    FailEach(
        copy,
        [&](uint64_t n) {
          ASSERT_FALSE(copy("IsValid").Bool());
          ASSERT_TRUE(State() == before) << "at allocation " << n;
        },
        "Create", source);
    EXPECT_TRUE(copy("IsValid").Bool());
    copy("Find", "nothing");  // detaches
  }
}

TEST_F(ShortMemory, AProgramObjectThatCannotBeMadeIsNull) {
  std::vector<std::unique_ptr<ROCAlgo>> made;
  // More than one block of the module's list of program objects.
  while (made.size() < 12) {
    // The first allocation is the host's.
    for (uint64_t n = 2;; ++n) {
      ROCAlgo* algo = nullptr;
      AllocationWatch::FailAt(n);
      EXPECT_NO_THROW(algo = ZylNewScriptObject("ZylSProgram"));
      const bool failed = AllocationWatch::HasFailed();
      AllocationWatch::FailAt(0);
      EXPECT_EQ(algo == nullptr, failed);
      if (algo == nullptr) continue;
      made.emplace_back(algo);
      break;
    }
  }
}

}  // namespace
}  // namespace zyl::test
