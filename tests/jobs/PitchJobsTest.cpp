// Pitch jobs through script methods: what starts one, what it reports and stores, and edits of its
// samples while it runs.
#include <algorithm>
#include <chrono>
#include <climits>
#include <cmath>
#include <cstring>
#include <random>
#include <thread>

#include "frame/ZylSProgram.h"
#include "pitch/SamplePitchTracker.h"
#include "support/ScriptSurface.h"

namespace zyl::test {
namespace {

using Frames = std::vector<int16_t>;
using Names = std::vector<std::string>;

Frames ToneOf(int count, double hz, double amplitude = 1) {
  Frames frames;
  for (int i = 0; i < count; ++i) {
    const double phase = 2 * 3.141592653589793 * hz * i / 44100;
    const double tone = std::sin(phase) + 0.5 * std::sin(2 * phase);
    frames.push_back(static_cast<int16_t>(amplitude * 20000 * tone));
  }
  return frames;
}
Frames NoiseOf(size_t count, unsigned seed) {
  std::mt19937 random(seed);
  Frames frames(count);
  for (int16_t& frame : frames) frame = static_cast<int16_t>(random() >> 17);
  return frames;
}

// The track that a job must store.
std::vector<float> TrackOf(const std::vector<Frames>& channels, const PitchSettings& settings = {},
                           double rateHz = 44100) {
  std::vector<const std::byte*> buffers;
  for (const Frames& frames : channels) {
    buffers.push_back(reinterpret_cast<const std::byte*>(frames.data()));
  }
  SamplePitchTracker tracker({buffers.data(), static_cast<int>(buffers.size()), 2,
                              static_cast<int32_t>(channels[0].size()), rateHz});
  return *AnalyzePitch(tracker, settings, nullptr);
}

// The settings of a program object; the module does not export its type information.
__attribute__((no_sanitize("vptr"))) std::vector<double> KeptSettings(const Program& program) {
  const auto& o = *reinterpret_cast<ZylSProgram*>(program.Algo()->GetDispatch(true));
  return {double(o.minPeriod), double(o.maxPeriod), double(o.smoothLength), double(o.findPitchLen),
          o.rmsThres};
}

// A module that records the values of its two pads.
class Watcher : public ROCPadListener {
 public:
  explicit Watcher(ROCParam* progressValue = newROCParam(7),
                   ROCParam* finishedValue = newROCParam("nothing yet"))
      : progress(algo.AddPad("progressUpdate", progressValue)),
        finished(algo.AddPad("pitchDataFinished", finishedValue)) {
    progress->SetListener(this);
    finished->SetListener(this);
  }
  void OnSend(ROCPad& pad, const ROCParam& value) override {
    EXPECT_TRUE(ZylIsScriptThread());
    if (&pad == progress) return progressSent.push_back(value.Int());
    finishedSent.push_back(value.Str());
    if (onFinished) onFinished();
  }
  void OnUpdate(ROCPad& pad, const ROCParam& value) override {
    EXPECT_EQ(&pad, finished);
    updated.push_back(value.Str());
  }

  Listener algo;
  ROCPad* progress;
  ROCPad* finished;
  std::vector<int> progressSent;
  Names finishedSent, updated;
  std::function<void()> onFinished;
};

class PitchJobs : public ProgramTest {
 protected:
  void SetUp() override {
    ProgramTest::SetUp();
    program.Make(2);
    ZylPump(0);
  }
  void TearDown() override {
    Finish();
    Watch(NullObject{});
    Program()("DeleteTempSample");
    program.Delete();
    ProgramTest::TearDown();
  }
  template <class Module>
  void Watch(Module module) const {
    const Program any;
    EXPECT_EQ(any("PitchDataProgressCB", module).result, nullptr);
    EXPECT_EQ(any("PitchDataProgressCBFinish", module).result, nullptr);
  }
  std::string Store(const std::string& name, const std::vector<Frames>& channels) {
    WriteWave(Path(name), channels);
    return Path(name);
  }
  RIOObject* Fill(int keygroup, int zone, const std::string& path) const {
    program("ZoneSampleSet", keygroup, zone, path);
    return program("SampleGet", keygroup, zone).Object();
  }
  int Ask(const char* query) const { return Program()(query).Int(); }
  static void Await(const std::function<bool()>& condition, const char* what) {
    for (int i = 0; i < 60000; ++i) {
      if (condition()) return;
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    FAIL() << "timed out: " << what;
  }
  void Finish() const {
    Await([&] { return Ask("PitchDataProgressRatio") + Ask("PitchDataCalculating") == 0; },
          "the end of all jobs");
  }
  Names Current() const {
    const ROCParamPtr names(ROCParam::NewArray(5));
    const int count = Program()("PitchDataCalcSamples", names.get()).Int();
    EXPECT_EQ(count, names->ElementCount());
    Names all;
    for (int i = 0; i < names->ElementCount(); ++i) all.push_back(names->Element(i).Str());
    return all;
  }
  void AwaitCurrent(const Names& names) const {
    Await([&] { return Current() == names; }, names.back().c_str());
  }
  // While this exists, a worker that reaches the file's sample waits for its sound.
  static WritableSound Gate(const std::string& path) {
    return findSampleFN(path.c_str(), 0, -1)->WritableChannels({0});
  }
  // The track as scripts read it. Sets `handle` to the handle of its buffer.
  std::vector<float> Read(RIOObject* sample, ROCParam&& handle = ROCParam(99)) const {
    std::vector<float> track(
        static_cast<size_t>(program("SampleGetPitchData", sample, &handle).Int()));
    std::string bytes, reason;
    if (track.empty()) {
      EXPECT_EQ(handle.Int(), 0);
    } else if (qxBufferBytes(static_cast<uint32_t>(handle.Int()), 4 * track.size(), bytes,
                             reason)) {
      std::memcpy(track.data(), bytes.data(), bytes.size());
    }
    return track;
  }
  static bool IsAlive(const ROCParam& handle) {
    std::string bytes, reason;
    return qxBufferBytes(static_cast<uint32_t>(handle.Int()), 4, bytes, reason);
  }
};

TEST_F(PitchJobs, StartsJobsAndKeepsTheSettings) {
  RIOObject* sample = Fill(0, 0, Store("a.wav", {ToneOf(5000, 200)}));
  RIOObject* second = Fill(1, 1, Store("b.wav", {ToneOf(5000, 300)}));
  using Kept = std::vector<double>;
  EXPECT_FALSE(program("CalcSamplePitch", NullObject{}, 1, 2, 3, 4, 0.5).Bool());
  EXPECT_EQ(KeptSettings(program), (Kept{1, 2, 3, 4, 0.5}));
  EXPECT_FALSE(program("CalcKeygroupPitch", -1, -7, NullEntry{}, INT_MAX).Bool());
  EXPECT_EQ(KeptSettings(program), (Kept{-7, 50, INT_MAX, 10, 1e-5}));
  EXPECT_EQ(Ask("PitchDataCalculating"), 0);
  EXPECT_TRUE(program("CalcSamplePitch", sample).Bool());
  EXPECT_EQ(KeptSettings(program), (Kept{2000, 50, 0, 10, 1e-5}));
  EXPECT_EQ(Ask("PitchDataCalculating"), 1);
  Finish();
  EXPECT_FALSE(program("CalcSamplePitch", sample).Bool()) << "it has a track";
  EXPECT_FALSE(program("ClearSamplePitch", NullObject{}).Bool());
  EXPECT_TRUE(program("ClearSamplePitch", sample).Bool());
  EXPECT_TRUE(program("CalcKeygroupPitch", 0).Bool());
  Finish();
  EXPECT_EQ(Read(sample).size(), 40u);
  EXPECT_EQ(Read(second).size(), 0u);
  EXPECT_TRUE(program("CalcProgramPitch").Bool());
  Finish();
  EXPECT_EQ(Read(second).size(), 40u);

  // Jobs with nothing to do exist until a query removes them; samples with a track are skipped.
  Watcher watcher;
  Watch(&watcher.algo);
  program("CalcProgramPitch");
  program("CalcKeygroupPitch", 0);
  std::this_thread::sleep_for(std::chrono::milliseconds(30));
  EXPECT_EQ(Ask("PitchDataCalculating"), 2);
  Finish();
  EXPECT_TRUE(Current().empty());
  ZylPump(0);
  EXPECT_TRUE(watcher.finishedSent.empty());
  EXPECT_EQ(Ask("PitchDataTimeLeft") + Ask("PitchDataTimeTotal"), 0);
}

TEST_F(PitchJobs, TracksEqualThoseOfTheTracker) {
  const std::vector<Frames> stereo = {ToneOf(30000, 180, 0.6), NoiseOf(30000, 3)};
  const std::string path = Store("stereo.wav", stereo);
  for (const int channel : {-1, 0, 1}) {
    RIOObject* sample = program("ReadTempSample", path, channel).Object();
    program("ClearSamplePitch", sample);
    EXPECT_TRUE(program("CalcSamplePitch", sample).Bool());
    Finish();
    EXPECT_EQ(Read(sample), TrackOf(stereo)) << "channels are summed, for " << channel;
  }
  RIOObject* sample = program("ReadTempSample", path, 0).Object();
  program("ClearSamplePitch", sample);
  program("CalcSamplePitch", sample, 900, 70, 4, 3, 0.02);
  Finish();
  EXPECT_EQ(Read(sample), TrackOf(stereo, {900, 70, 4, 3, 0.02}));
}

TEST_F(PitchJobs, ClearingATrackRemovesItsBuffer) {
  const std::string path = Store("a.wav", {ToneOf(9000, 200)});
  RIOObject* sample = Fill(0, 0, path);
  ROCParam handle(0), again(0);
  EXPECT_TRUE(Read(sample).empty());
  program("CalcSamplePitch", sample);
  Finish();
  EXPECT_EQ(Read(sample, std::move(handle)), TrackOf({ToneOf(9000, 200)}));
  Read(sample, std::move(again));
  EXPECT_EQ(again.Int(), handle.Int());
  program("ClearSamplePitch", sample);
  program("CalcSamplePitch", sample);
  Finish();
  EXPECT_FALSE(IsAlive(handle));
  Read(sample, std::move(again));
  EXPECT_TRUE(IsAlive(again));
  program("ZoneSampleSet", 0, 0);
  EXPECT_FALSE(IsAlive(again));

  RIOObject* first = Fill(0, 0, path);
  RIOObject* other = Fill(0, 1, Store("b.wav", {ToneOf(500, 200)}));
  RIOObject* channel = program("ReadTempSample", path, -1).Object();
  EXPECT_TRUE(program("SampleCompare", first, first).Bool());
  EXPECT_TRUE(program("SampleCompare", first, channel).Bool()) << "two records of one file";
  EXPECT_FALSE(program("SampleCompare", first, other).Bool());
  EXPECT_FALSE(program("SampleCompare", NullObject{}, other).Bool());
  EXPECT_TRUE(program("SampleCompare", NullObject{}, NullObject{}).Bool());
}

TEST_F(PitchJobs, PadsAreCalledOnTheScriptThread) {
  constexpr int kBlocks = 250;  // hops: two full progress reports and a partial one
  RIOObject* sample = Fill(0, 0, Store("tone.wav", {ToneOf(4096 + 128 * kBlocks, 200)}));
  program("SampleName", sample, "A Name");
  Watcher deaf(newROCParam(1.5), newROCParam(2)), replaced, watcher;
  const auto run = [&] {
    program("ClearSamplePitch", sample);
    program("CalcSamplePitch", sample);
    Finish();
    return ZylPump(0);
  };
  Watch(&deaf.algo);
  run();
  EXPECT_EQ(deaf.progress->Value()->Double(), 1.5);
  EXPECT_EQ(deaf.finished->Value()->Int(), 2);
  Watch(&replaced.algo);
  Watch(&watcher.algo);
  run();
  EXPECT_EQ(watcher.progressSent, (std::vector<int>(4, 1)));
  EXPECT_EQ(watcher.finishedSent, Names{"A Name"});
  EXPECT_EQ(watcher.updated, Names{"A Name"}) << "the track was cleared";
  EXPECT_EQ(watcher.finished->Value()->Str(), "A Name");
  program("ClearProgramPitch");
  EXPECT_TRUE(Read(sample).empty());
  program("ClearProgramPitch");
  EXPECT_EQ(watcher.updated.size(), 2u) << "the second call found no track";
  program("CalcSamplePitch", sample);
  Finish();
  program("ClearSamplePitch", sample);
  EXPECT_EQ(watcher.finishedSent.size(), 2u) << "queued sends are delivered before an update";
  ZylPump(0);
  for (const Watcher* one : {&deaf, &replaced}) {
    EXPECT_TRUE(one->progressSent.empty() && one->finishedSent.empty() && one->updated.empty());
  }

  Listener padless;
  Watch(&padless);
  EXPECT_EQ(run(), 0) << "nothing is queued without a listener";
  auto dying = std::make_unique<Watcher>();
  Watch(&dying->algo);
  program("ClearSamplePitch", sample);
  program("CalcSamplePitch", sample);
  Finish();
  dying.reset();
  ZylPump(0);
  EXPECT_EQ(run(), 0);
}

TEST_F(PitchJobs, QueriesEditsAndCancelWhileAJobRuns) {
  const Frames tone = ToneOf(9000, 200);
  const std::string second = Store("second.wav", {tone}), third = Store("third.wav", {tone});
  const std::string removed = Store("removed.wav", {tone});
  RIOObject* first = Fill(0, 0, Store("first.wav", {NoiseOf(30000, 1)}));
  RIOObject* current = Fill(0, 1, second);
  RIOObject* waiting = Fill(0, 2, third);
  for (const int zone : {0, 1}) Fill(1, zone, removed);
  Watcher watcher;
  Watch(&watcher.algo);

  auto gate = Gate(second);
  program("CalcProgramPitch");
  AwaitCurrent({"second"});
  EXPECT_EQ(Read(first).size(), 30000u / 128 + 1);
  constexpr double kReported = (30000 - 4096) / 128 * 128;
  const auto ratio = [](int total) { return static_cast<int>(kReported * INT_MAX / total); };
  EXPECT_EQ(Ask("PitchDataProgressRatio"), ratio(30000 + 4 * 9000));
  for (const int zone : {0, 1}) program("ZoneSampleSet", 1, zone);
  EXPECT_EQ(Ask("PitchDataProgressRatio"), ratio(30000 + 3 * 9000))
      << "a sample that was queued twice is subtracted once";
  Await([&] { return Ask("PitchDataTimeTotal") > 0; }, "a second");
  EXPECT_LE(Ask("PitchDataTimeLeft"), Ask("PitchDataTimeTotal") + 1);
  EXPECT_TRUE(program("PitchDataCalcCancel").Ok());
  gate = {};
  Finish();
  ZylPump(0);
  EXPECT_EQ(watcher.finishedSent, (Names{"first", "second"}))
      << "an aborted analysis is reported too";
  EXPECT_EQ(Read(current).size() + Read(waiting).size(), 0u);

  // A job pins a sample's sound when it starts to analyse it.
  gate = Gate(second);
  program("CalcProgramPitch");
  AwaitCurrent({"second"});
  const std::byte* sound = findSampleFN(third.c_str(), 0, -1)->buffer;
  program("SampleSetValues", waiting, 0, 5000, 0);
  EXPECT_EQ(findSampleFN(third.c_str(), 0, -1)->buffer, sound) << "it is not pinned yet";
  program("SampleSize", waiting, 8000);
  program("SampleSampleRate", waiting, 22050);
  program("SampleName", waiting, "renamed");
  gate = {};
  Finish();
  watcher.finishedSent.clear();
  ZylPump(0);
  EXPECT_EQ(watcher.finishedSent, (Names{"second", "renamed"}));
  Frames edited(tone.begin(), tone.begin() + 8000);
  std::fill_n(edited.begin(), 5000, int16_t{0});
  EXPECT_EQ(Read(waiting), TrackOf({edited}, {}, 22050));
}

TEST_F(PitchJobs, ADiscardedSampleIsRemovedFromEveryJob) {
  const std::string path = Store("long.wav", {NoiseOf(2000000, 1)});
  const Frames tone = ToneOf(9000, 200);
  const std::string shortPath = Store("short.wav", {tone});
  Watcher watcher;
  Watch(&watcher.algo);
  for (const int zone : {0, 1, 3}) program("ZoneSampleSet", 0, zone, path);
  Fill(0, 2, shortPath);
  auto gate = Gate(path);
  program("CalcProgramPitch");
  program("CalcKeygroupPitch", 0);
  AwaitCurrent({"long", "long"});
  gate = {};
  for (const int zone : {0, 1, 3}) program("ZoneSampleSet", 0, zone);
  EXPECT_EQ(findSampleFN(path.c_str(), 0, -1), nullptr);
  for (const std::string& name : Current()) EXPECT_NE(name, "long");
  Finish();
  ZylPump(0);
  const auto count = [&](const char* name) {
    return std::ranges::count(watcher.finishedSent, std::string(name));
  };
  EXPECT_EQ(count("short"), 2);
  EXPECT_GE(count("long"), 2) << "an aborted analysis is reported too";
  EXPECT_LT(count("long"), 6) << "entries of the discarded sample are skipped";
  EXPECT_EQ(Read(program("SampleGet", 0, 2).Object()), TrackOf({tone}));
}

}  // namespace
}  // namespace zyl::test
