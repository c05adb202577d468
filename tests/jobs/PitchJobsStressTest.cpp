// Random operations on samples, programs and the module while pitch jobs run, from a fixed seed.
// Meant to run with the sanitizers.
#include <chrono>
#include <climits>
#include <random>
#include <thread>

#include "support/ScriptSurface.h"

namespace zyl::test {
namespace {

class PitchJobsStress : public ModuleTest, private ROCPadListener {
 protected:
  static constexpr int kPrograms = 3;

  void SetUp() override {
    ModuleTest::SetUp();
    // From less than one window to an analysis of several milliseconds.
    for (const size_t frames : {1000, 5000, 12000, 30000, 60000}) {
      std::vector<std::vector<int16_t>> channels(1 + paths_.size() % 2);
      for (auto& channel : channels) {
        while (channel.size() < frames) channel.push_back(static_cast<int16_t>(random_() >> 17));
      }
      paths_.push_back(Path("sound" + std::to_string(frames) + ".wav"));
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
  const Program& AnyProgram() { return *programs_[Any(kPrograms)]; }
  const std::string& AnyPath() { return paths_[static_cast<size_t>(Any(5))]; }

  void OnSend(ROCPad&, const ROCParam&) override { Interfere(); }
  void OnUpdate(ROCPad&, const ROCParam&) override { Interfere(); }
  // Callbacks occasionally discard samples, including the one that they are called for.
  void Interfere() {
    if (interfering_ || Any(3) != 0) return;
    interfering_ = true;
    for (const auto& program : programs_) {
      if (program == nullptr) continue;
      if (Any(2) == 0) (*program)("ZoneSampleSet", Any(2), Any(4));
      if (Any(8) == 0) (*program)("PrepareDelete");
      if (Any(12) == 0) (*program)("DeleteTempSample");
    }
    interfering_ = false;
  }

  void Renew(std::unique_ptr<Program>& program) {
    program.reset();
    program = std::make_unique<Program>();
    program->Make(2);
    if (Any(2) == 0) (*program)("Register", &watcher_);
    if (Any(2) == 0) {
      (*program)("PitchDataProgressCB", &watcher_);
      (*program)("PitchDataProgressCBFinish", &watcher_);
    }
    for (int z = 0; z < 6; ++z) (*program)("ZoneSampleSet", z / 4, z % 4, AnyPath());
  }
  void Begin() {
    for (auto& program : programs_) Renew(program);
  }
  // Unloading the module then deletes the temporary samples and cancels their jobs.
  void End() {
    for (auto& program : programs_) program.reset();
  }

  // One random operation on a random program and sample; a third of them start a job.
  void Round() {
    const Program& p = AnyProgram();
    RIOObject* sample = Any(3) == 0 ? p("ReadTempSample", AnyPath(), Any(2) - 1).Object()
                                    : p("SampleGet", Any(2), Any(4)).Object();
    const ROCParamPtr result(Any(2) == 0 ? ROCParam::NewArray(0) : newROCParam(0));
    const std::function<void()> operations[] = {
        [&] { p("PitchDataCalcCancel"); },
        [&] { p("SampleReload", AnyPath()); },
        [&] { EXPECT_GE(p("PitchDataProgressRatio").Int(), 0); },
        [&] { EXPECT_GE(p("PitchDataTimeLeft").Int(), 0); },
        [&] { p("PitchDataCalcSamples", result.get()); },
        [&] { p("SampleGetPitchData", sample, result.get()); },
        [&] { ZylPump(0); },
        [&] { p("ClearProgramPitch"); },
        [&] { p("ClearSamplePitch", sample); },
        [&] { p("SampleSetValues", sample, 0, 100000, Any(1000)); },
        [&] { p("SampleReverseValues", sample, 10, 4000); },
        [&] { p("SampleSize", sample, Any(20000)); },
        [&] { p("SampleBits", sample, 8 + 8 * Any(4)); },
        [&] { p("SampleName", sample, "renamed"); },
        [&] { p("DeleteTempSample"); },
        [&] { p("ZoneSampleSet", Any(2), Any(4), AnyPath()); },
        [&] { p("ZoneSampleSet", Any(2), Any(4)); },
        [&] { Renew(programs_[Any(kPrograms)]); },
        [&] { p("CalcSamplePitch", sample, 2000, 50, Any(3), 10); },
        [&] { p("CalcKeygroupPitch", Any(2)); },
        [&] { p("CalcProgramPitch", 2000, 50, 0, Any(2) == 0 ? 10 : INT_MAX); },
    };
    operations[Any(3) == 0 ? 18 + Any(3) : Any(21)]();
    if (Any(4) == 0) std::this_thread::sleep_for(std::chrono::microseconds(Any(1500)));
  }

  std::mt19937 random_{20};
  std::vector<std::string> paths_;
  std::unique_ptr<Program> programs_[kPrograms];
  Listener watcher_;
  bool interfering_ = false;
};

TEST_F(PitchJobsStress, SurvivesRandomOperations) {
  int running = 0;
  Begin();
  for (int round = 0; round < 2800; ++round) {
    Round();
    if (round % 20 != 0) continue;
    running += AnyProgram()("PitchDataCalculating").Int() > 0 ? 1 : 0;
    End();
    LoadModule();
    if (Any(2) == 0) ZylPump(0);
    for (const std::string& path : paths_) {
      for (const int channel : {-1, 0, 1}) {
        ASSERT_EQ(findSampleFN(path.c_str(), 0, channel), nullptr) << path << " in " << round;
      }
    }
    Begin();
  }
  EXPECT_GE(running, 50) << "how often jobs existed at unload";
  // Jobs still work afterwards.
  End();
  LoadModule();
  Begin();
  const Program& p = *programs_[0];
  RIOObject* sample = p("ReadTempSample", paths_[2], 0).Object();
  EXPECT_TRUE(p("CalcSamplePitch", sample).Bool());
  for (int i = 0; i < 60000 && p("PitchDataCalculating").Int() > 0; ++i) {
    p("PitchDataProgressRatio");
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  ROCParam handle(0);
  EXPECT_EQ(p("SampleGetPitchData", sample, &handle).Int(), 12000 / 128 + 1);
}

}  // namespace
}  // namespace zyl::test
