// Limits: where files are written, the size of the pad queue, short memory, what rewrites preserve.
#include <filesystem>
#include <map>
#include <thread>

#include "host/riff.h"
#include "support/AllocationWatch.h"
#include "support/ProgramRecord.h"
#include "support/ScriptSurface.h"

namespace zyl::test {
namespace {

namespace fs = std::filesystem;

class Bounds : public ModuleTest {
 protected:
  // Every file below the test's folder with its bytes.
  std::map<std::string, std::string> Tree() const {
    std::map<std::string, std::string> tree;
    for (const auto& entry : fs::recursive_directory_iterator(Path(""))) {
      if (!entry.is_regular_file()) continue;
      tree[fs::relative(entry.path(), Path("")).generic_string()] = ReadBytes(entry.path());
    }
    return tree;
  }
  Program program;
};

TEST_F(Bounds, AProgramFileNeverChoosesWhatIsWritten) {
  for (const char* folder : {"home", "home/programs", "elsewhere"})
    fs::create_directory(Path(folder));
  WriteWave(Path("elsewhere/absolute.wav"), {{1, 2, 3, 4}});
  WriteWave(Path("home/up.wav"), {{5, 6, 7, 8}});
  program.Make(2);
  program("ZoneSampleSet", 0, 0, Path("elsewhere/absolute.wav"));
  program("ZoneSampleSet", 0, 1, Path("home/programs/../up.wav"));
  program("ZoneSampleSet", 1, 0, Path("elsewhere/absent.wav"));
  ASSERT_TRUE(program("Write", Path("home/programs/hostile.zprg"), 49).Bool());
  Program victim;
  const auto before = Tree();
  ASSERT_TRUE(victim("Read", Path("home/programs/hostile.zprg")).Bool());
  EXPECT_EQ(victim("SampleGetSize", victim("SampleGet", 0, 1).Object()).Int(), 4) << "it is read";
  for (const int mode : {51, 3, 18, 34}) {
    ASSERT_TRUE(victim("Write", Path("home/programs/mine.zprg"), mode).Bool());
  }
  auto after = Tree();
  EXPECT_EQ(after.erase("home/programs/mine.zprg"), 1u);
  EXPECT_EQ(after, before);

  // A name isn't a path: a sample without a file is always stored next to the program.
  ASSERT_TRUE(victim("SampleCreate", 1, 0, "wav", 1).Bool());
  RIOObject* made = victim("SampleGet", 1, 0).Object();
  victim("SampleSize", made, 5);
  victim("SampleName", made, "../../elsewhere/escaped");
  ASSERT_TRUE(victim("Write", Path("home/programs/mine.zprg"), 51).Bool()) << diagnostics;
  EXPECT_FALSE(victim("SampleDirty", 1, 0).Bool());
  after = Tree();
  for (const auto& [path, bytes] : before) {
    EXPECT_EQ(after[path], bytes) << path;
    after.erase(path);
  }
  EXPECT_EQ(after.size(), 2u);
  for (const auto& [path, bytes] : after) EXPECT_TRUE(path.starts_with("home/programs/")) << path;
}

TEST_F(Bounds, AnOverlongPathIsKept) {
  std::string endless;
  for (int i = 0; i < 200000; ++i) endless += "a/../";
  program.Make(1);
  program("ZoneSampleSet", 0, 0, endless);
  ASSERT_TRUE(program("Write", Path("long.zprg"), 49).Bool());
  Program again;
  ASSERT_TRUE(again("Read", Path("long.zprg")).Bool());
  EXPECT_EQ(again("ZoneSamplePath", 0, 0).Text(), endless);
}

TEST_F(Bounds, AnUndeliveredQueueOfStatesStaysSmall) {
  struct Last : ROCPadListener {
    void OnSend(ROCPad&, const ROCParam& value) override { last = value.Int(); }
    void OnUpdate(ROCPad&, const ROCParam&) override {}
    int last = 0;
  } listener;
  Listener algo;
  ROCPad* pads[] = {algo.AddPad("one", newROCParam(0)), algo.AddPad("two", newROCParam(0))};
  pads[0]->SetListener(&listener);
  for (int round = 0; round < 2; ++round) {
    const ROCParam one(pads[0]);
    const ROCParam two(pads[1]);
    std::thread worker([&] {
      for (int i = 1; i <= 50000; ++i) ZylSendStateThroughPad(one, ROCParam(int32_t{i}));
      ZylSendStateThroughPad(two, ROCParam(int32_t{7}));
    });
    worker.join();
    EXPECT_EQ(ZylPump(0), 1001);
    EXPECT_EQ(listener.last, 50000) << "the newest";
    EXPECT_EQ(pads[1]->Value()->Int(), 7);
  }
}

TEST_F(Bounds, ARewriteKeepsSurplusLoopsAndUpdatesInst) {
  // These fuzzer seeds have content that our writers never produce.
  const fs::path seeds = fs::path(SourcePath()) / "fuzz" / "corpus";
  fs::copy(seeds / "wave" / "surplus-loops.wav", Path("loops.wav"));
  fs::copy(seeds / "wave" / "chunks.wav", Path("chunks.wav"));
  const auto sizeOf = [&](const char* file, const char* id) {
    for (const ChunkInfo& chunk : ListFileChunks(Path(file))) {
      if (chunk.id == id) return chunk.size;
    }
    return uint64_t{0};
  };
  const uint64_t before = sizeOf("loops.wav", "smpl");
  RIOObject* loops = program("ReadTempSample", Path("loops.wav")).Object();
  program("SampleplaybackType", loops, 1);
  ASSERT_TRUE(program("SampleWrite", loops).Bool());
  EXPECT_EQ(sizeOf("loops.wav", "smpl"), before);
  program("SampleLoopCount", loops, 3);
  ASSERT_TRUE(program("SampleWrite", loops).Bool());
  EXPECT_LT(sizeOf("loops.wav", "smpl"), before);

  // An "inst" chunk is updated with key and tune.
  RIOObject* wave = program("ReadTempSample", Path("chunks.wav")).Object();
  program("Samplekey", wave, 40);
  program("Sampletune", wave, -64);
  ASSERT_TRUE(program("SampleWrite", wave).Bool());
  std::string inst;
  for (const ChunkInfo& chunk : ListFileChunks(Path("chunks.wav"))) {
    if (chunk.id == "inst") inst = ReadBytes(Path("chunks.wav")).substr(chunk.offset, 2);
  }
  EXPECT_EQ(inst, "\x28\xE7") << "40 and -25 cents";
}

TEST_F(Bounds, AProgramObjectIsNullWithoutMemory) {
  std::vector<std::unique_ptr<ROCAlgo>> made;
  // More than one block of the module's list of program objects.
  while (made.size() < 12) {
    bool failed = true;
    for (uint64_t n = 2; failed; ++n) {  // the first allocation is the host's
      ROCAlgo* algo = nullptr;
      AllocationWatch::FailAt(n);
      EXPECT_NO_THROW(algo = ZylNewScriptObject("ZylSProgram"));
      failed = AllocationWatch::HasFailed();
      AllocationWatch::FailAt(0);
      EXPECT_EQ(algo == nullptr, failed);
      if (!failed) made.emplace_back(algo);
    }
  }
}

}  // namespace
}  // namespace zyl::test
