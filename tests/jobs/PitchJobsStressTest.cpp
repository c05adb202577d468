// Random operations on samples, programs and the module while pitch jobs run, from a fixed seed.
// Meant to run with the sanitizers.
#include <chrono>
#include <climits>
#include <functional>
#include <random>
#include <thread>

#include "support/ScriptSurface.h"

namespace zyl::test {
namespace {

class PitchJobsStress : public ModuleTest, private ROCPadListener {
 protected:
  static constexpr int kPrograms = 3;
  static constexpr int kKeygroups = 2;

  void SetUp() override {
    ModuleTest::SetUp();
    // From a sound shorter than one window to one that takes some milliseconds.
    const int frames[] = {1000, 5000, 12000, 30000, 60000};
    for (int i = 0; i < 5; ++i) {
      std::vector<std::vector<int16_t>> channels(i % 2 == 0 ? 1 : 2);
      for (auto& channel : channels) {
        for (int j = 0; j < frames[i]; ++j)
          channel.push_back(static_cast<int16_t>(random_() >> 17));
      }
      paths_.push_back(Path("sound" + std::to_string(i) + ".wav"));
      WriteWave(paths_.back(), channels);
    }
    watcher_.AddPad("progressUpdate", newROCParam(0))->SetListener(this);
    watcher_.AddPad("pitchDataFinished", newROCParam(""))->SetListener(this);
    watcher_["OnDeletingSmpl"] = [this](ROCParams&, ROCParam**) { Interfere(); };
  }
  void TearDown() override {
    End();
    ModuleTest::TearDown();
  }

  int Any(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
  const Program& AnyProgram() { return *programs_[static_cast<size_t>(Any(kPrograms))]; }
  const std::string& AnyPath() { return paths_[static_cast<size_t>(Any(5))]; }

  void OnSend(ROCPad&, const ROCParam&) override { Interfere(); }
  void OnUpdate(ROCPad&, const ROCParam&) override { Interfere(); }
  // Callbacks discard samples now and then, also the one that they are called for.
  void Interfere() {
    if (interfering_ || Any(3) != 0) return;
    interfering_ = true;
    for (const auto& program : programs_) {
      if (program == nullptr) continue;
      if (Any(2) == 0) (*program)("ZoneSampleSet", Any(kKeygroups), Any(4));
      if (Any(8) == 0) (*program)("PrepareDelete");
    }
    if (Any(4) == 0 && programs_[0] != nullptr) (*programs_[0])("DeleteTempSample");
    interfering_ = false;
  }

  void Renew(size_t i) {
    programs_[i].reset();
    programs_[i] = std::make_unique<Program>();
    const Program& program = *programs_[i];
    program.Make(kKeygroups);
    if (Any(2) == 0) program("Register", static_cast<RIOObject*>(&watcher_));
    if (Any(2) == 0) {
      program("PitchDataProgressCB", static_cast<RIOObject*>(&watcher_));
      program("PitchDataProgressCBFinish", static_cast<RIOObject*>(&watcher_));
    }
    for (int z = 0; z < 6; ++z) program("ZoneSampleSet", z / 4, z % 4, AnyPath());
  }
  void Begin() {
    for (size_t i = 0; i < kPrograms; ++i) Renew(i);
  }
  // Temporary samples and their jobs are left to the unloading module.
  void End() {
    for (auto& program : programs_) program.reset();
  }

  RIOObject* AnySample(const Program& program) {
    if (Any(3) == 0) return program("ReadTempSample", AnyPath(), Any(2) - 1).Object();
    return program("SampleGet", Any(kKeygroups), Any(4)).Object();
  }
  using Action = std::function<void()>;
  void DoAny(const std::vector<Action>& actions) {
    actions[static_cast<size_t>(Any(static_cast<int>(actions.size())))]();
  }
  void Start(const Program& p) {
    DoAny({[&] { p("CalcSamplePitch", AnySample(p), 2000, 50, Any(3), 10); },
           [&] { p("CalcKeygroupPitch", Any(kKeygroups)); },
           [&] { p("CalcProgramPitch", 2000, 50, 0, Any(2) == 0 ? 10 : INT_MAX); }});
  }
  void Read(const Program& p, RIOObject* sample) {
    ROCParam handle(0);
    const int count = p("SampleGetPitchData", sample, &handle).Int();
    std::string bytes;
    std::string reason;
    qxBufferBytes(static_cast<uint32_t>(handle.Int()), static_cast<size_t>(count) * 4, bytes,
                  reason);
  }
  void Query(const Program& p) {
    EXPECT_GE(p("PitchDataProgressRatio").Int(), 0);
    EXPECT_GE(p("PitchDataTimeLeft").Int(), 0);
    const std::shared_ptr<ROCParam> names(ROCParam::NewArray(0), deleteROCParam);
    const int count = p("PitchDataCalcSamples", names.get()).Int();
    EXPECT_EQ(count, names->ElementCount());
  }
  void Edit(const Program& p, RIOObject* sample) {
    DoAny({[&] { p("SampleSetValues", sample, 0, 100000, Any(1000)); },
           [&] { p("SampleReverseValues", sample, 10, 4000); },
           [&] { p("SampleSize", sample, Any(20000)); },
           [&] { p("SampleBits", sample, 8 + 8 * Any(4)); },
           [&] { p("SampleName", sample, "renamed"); }});
  }
  void Round() {
    const Program& p = AnyProgram();
    const auto withSample = [&](auto action) {
      if (RIOObject* sample = AnySample(p)) action(sample);
    };
    const Action edit = [&] { withSample([&](RIOObject* sample) { Edit(p, sample); }); };
    const Action discard = [&] {
      DoAny({[&] { p("ZoneSampleSet", Any(kKeygroups), Any(4)); },
             [&] { p("ZoneSampleSet", Any(kKeygroups), Any(4), AnyPath()); },
             [&] { p("DeleteTempSample"); }});
    };
    DoAny({[&] { p("PitchDataCalcCancel"); }, [&] { Renew(static_cast<size_t>(Any(kPrograms))); },
           [&] { p("SampleReload", AnyPath()); }, [&] { Query(p); }, [&] { ZylPump(0); },
           [&] { withSample([&](RIOObject* sample) { Read(p, sample); }); },
           [&] { p("ClearProgramPitch"); },
           [&] { withSample([&](RIOObject* sample) { p("ClearSamplePitch", sample); }); }, edit,
           edit, discard, discard, discard});
  }
  void Pause() {
    if (Any(2) == 0) std::this_thread::sleep_for(std::chrono::microseconds(Any(1500)));
  }

  std::mt19937 random_{20};
  std::vector<std::string> paths_;
  std::unique_ptr<Program> programs_[kPrograms];
  Listener watcher_;
  bool interfering_ = false;
};

TEST_F(PitchJobsStress, SurvivesRandomOperations) {
  int unloads = 0;
  int running = 0;
  Begin();
  for (int round = 0; round < 1000; ++round) {
    Start(AnyProgram());
    Pause();
    Round();
    Pause();
    if (Any(7) != 0) continue;
    running += AnyProgram()("PitchDataCalculating").Int() > 0 ? 1 : 0;
    End();
    LoadModule();
    ++unloads;
    if (Any(2) == 0) ZylPump(0);
    for (const std::string& path : paths_) {
      for (const int channel : {-1, 0, 1}) {
        ASSERT_EQ(findSampleFN(path.c_str(), 0, channel), nullptr) << path << " in " << round;
      }
    }
    Begin();
  }
  EXPECT_GE(unloads, 100);
  EXPECT_GE(running, 50) << "how often jobs were there at unload";
  // A job still stores a track afterwards.
  End();
  LoadModule();
  Begin();
  RIOObject* sample = programs_[0]->operator()("ReadTempSample", paths_[2], 0).Object();
  EXPECT_TRUE((*programs_[0])("CalcSamplePitch", sample).Bool());
  for (int i = 0; i < 60000 && (*programs_[0])("PitchDataCalculating").Int() > 0; ++i) {
    (*programs_[0])("PitchDataProgressRatio");
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  ROCParam handle(0);
  EXPECT_EQ((*programs_[0])("SampleGetPitchData", sample, &handle).Int(), 12000 / 128 + 1);
}

}  // namespace
}  // namespace zyl::test
