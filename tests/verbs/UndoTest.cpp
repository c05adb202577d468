// zyl undo: restoring batches, and refusing to.
#include <sys/stat.h>

#include <chrono>
#include <map>

#include "verbs/VerbTools.h"

namespace zyl::test {
namespace {

namespace fs = std::filesystem;

class Undo : public Verbs {
 protected:
  static constexpr int kPrograms = 24;
  void SetUp() override {
    Verbs::SetUp();
    fs::create_directories(Path("in"));
    const Program program;
    for (int i = 0; i < kPrograms; ++i) {
      program.Make(1 + i % 3);
      ASSERT_TRUE(program("Write", Path(Name(i))).Bool());
      fs::permissions(Path(Name(i)), i % 2 == 0 ? fs::perms{0600} : fs::perms{0644});
      fs::last_write_time(Path(Name(i)), fs::file_time_type::clock::now() - std::chrono::hours(i));
    }
    before_ = State();
  }
  static std::string Name(int i) { return "in/p" + std::to_string(10 + i) + ".zprg"; }
  // Content, mode and time of each file.
  std::map<std::string, std::string> State() const {
    std::map<std::string, std::string> state;
    for (const auto& file : fs::directory_iterator(Path("in"))) {
      struct stat status {};
      stat(file.path().c_str(), &status);
      state[file.path().filename()] = FileBytes(file.path()) + std::to_string(status.st_mode) +
                                      " " + std::to_string(status.st_mtim.tv_sec) + "." +
                                      std::to_string(status.st_mtim.tv_nsec);
    }
    return state;
  }
  std::string All() const { return Path("in") + "/*.zprg "; }
  std::map<std::string, std::string> before_;
};

TEST_F(Undo, RestoresEveryFileAndCanBeUndone) {
  EXPECT_EQ(Zyl("edit " + All() + "poly=3").status, 0);
  EXPECT_EQ(Zyl("view " + Quoted(Name(0)) + " -o " + Quoted("in/new.png")).status, 0);
  const auto edited = State();
  EXPECT_FALSE(edited == before_);
  EXPECT_EQ(Zyl("undo --dry-run --last").status, 0);
  EXPECT_TRUE(State() == edited);
  EXPECT_EQ(Zyl("undo --last").out, "1 file removed\n");  // the picture
  EXPECT_EQ(Zyl("undo --last").out, "24 files restored\n");
  EXPECT_TRUE(State() == before_);
  EXPECT_EQ(Zyl("undo --last").status, 2) << "nothing is left";
  const Finished again = Zyl("undo 1", true);
  EXPECT_EQ(again.status, 4);
  EXPECT_EQ(again.out, "zyl undo: batch 1 is already undone\n");
  const std::string list = Zyl("undo").out;
  EXPECT_TRUE(Has(list, "undone") && Has(list, "undo of 1")) << list;
  EXPECT_EQ(Zyl("undo --redo").status, 0);
  EXPECT_EQ(Zyl("undo --redo").status, 0);
  EXPECT_TRUE(State() == edited);
  EXPECT_EQ(Zyl("undo --redo").status, 2);
  EXPECT_TRUE(Has(Zyl("undo").out, "redo of 2"));
  EXPECT_EQ(Zyl("undo --last").out, "1 file removed\n");
  EXPECT_EQ(Number(Zyl("undo --json").out, "files"), kPrograms);
  // A write that fails or changes nothing is no batch.
  EXPECT_EQ(Zyl("edit poly=3 " + Quoted(Name(0))).status, 0);
  EXPECT_EQ(Zyl("undo 8").status, 2);
}

TEST_F(Undo, RemovesCreatedFoldersThatAreEmpty) {
  for (const bool keeps : {false, true}) {
    EXPECT_EQ(Zyl("collect -o " + Quoted("new/deep") + " " + Quoted(Name(0))).status, 0);
    if (keeps) std::ofstream(Path("new/other")) << "text";
    EXPECT_EQ(Zyl("undo --last").status, 0);
    EXPECT_EQ(fs::exists(Path("new")), keeps);
    EXPECT_FALSE(fs::exists(Path("new/deep")));
  }
}

TEST_F(Undo, InterruptedVerbsSayWhatTheyWrote) {
  std::ofstream(Path("stop.lua")) << "local cli, json = require 'cli', require 'json'\n"
                                     "cli.parse { verb = 'stop', about = '', options = {} }\n"
                                     "local printer = cli.printer(true)\n"
                                     "printer.result(1, json.object('a', 1))\n"
                                     "require 'disk'.write(arg[1], 'new')\n"
                                     "io.popen('kill -INT $PPID'):close()\n"
                                     "for _ = 1, 1e8 do end\n";
  const std::string command = "run " + Quoted("stop.lua") + " " + Quoted(Name(0));
  const Finished run = Zyl(command);
  EXPECT_EQ(run.status, 130);
  EXPECT_EQ(run.out, "[\n {\"a\": 1}\n]\n");
  EXPECT_EQ(Zyl("undo --last").status, 0);
  EXPECT_TRUE(State() == before_);
  EXPECT_TRUE(Has(Zyl(command, true).out, "1 file was written; 'zyl undo --last' restores it"));
}

TEST_F(Undo, RefusesFilesThatHaveChanged) {
  EXPECT_EQ(Zyl("edit " + All() + "poly=3").status, 0);
  EXPECT_EQ(Zyl("edit " + Quoted(Name(4)) + " poly=4").status, 0);
  fs::remove(Path(Name(5)));
  const auto changed = State();
  const Finished refused = Zyl("undo 1", true);
  EXPECT_EQ(refused.status, 4);
  EXPECT_TRUE(Has(refused.out, Name(4) + ": has changed") && Has(refused.out, Name(5)) &&
              !Has(refused.out, Name(6)))
      << refused.out;
  EXPECT_TRUE(State() == changed);
  EXPECT_EQ(Zyl("undo 1 --keep-changed").status, 4);
  auto others = before_;
  others.erase("p15.zprg");
  others["p14.zprg"] = changed.at("p14.zprg");
  EXPECT_TRUE(State() == others);
  EXPECT_EQ(Zyl("undo 1 --force").status, 0);
  EXPECT_TRUE(State() == before_);
}

TEST_F(Undo, RecognisesAnInterruptedBatch) {
  std::ofstream(Path("half.lua")) << "local journal = require 'journal'\n"
                                     "local disk = require 'disk'\n"
                                     "disk.write(arg[1], 'new')\n"
                                     "journal.keep(arg[2])\n"
                                     "host.writeFile(arg[2], 'half')\n"
                                     "os.execute('kill -9 $PPID')\n";
  Zyl("run " + Quoted("half.lua") + " " + Quoted(Name(0)) + " " + Quoted(Name(1)));
  EXPECT_TRUE(Has(Zyl("undo").out, "interrupted"));
  const Finished refused = Zyl("undo 1", true);
  EXPECT_EQ(refused.status, 4);
  EXPECT_TRUE(Has(refused.out, Name(1) + ": was being written")) << refused.out;
  EXPECT_EQ(Zyl("undo 1 --force").status, 0);
  EXPECT_TRUE(State() == before_);
  // A line that was cut, and a kept file that another program has changed.
  EXPECT_EQ(Zyl("edit poly=3 " + Quoted(Name(0))).status, 0);
  std::ofstream(Path("state/zyl/undo/3/index"), std::ios::app) << "keep\t2\t/nowhe";
  std::ofstream(Path("state/zyl/undo/3/1.old"), std::ios::app) << "x";
  const Finished damaged = Zyl("undo 3", true);
  EXPECT_TRUE(Has(damaged.out, "missing or damaged") && !Has(damaged.out, "nowhe")) << damaged.out;
}

TEST_F(Undo, ParallelProcessesAndTheLimitKeepBatchesComplete) {
  Shell("for i in 1 2 3 4 5 6; do " ZYL_PROGRAM " edit " + Path("in") +
            "/p1$i.zprg poly=$i & done; wait",
        true);
  for (int batch = 1; batch <= 6; ++batch) {
    EXPECT_EQ(Zyl("undo " + std::to_string(batch)).status, 0) << batch;
  }
  EXPECT_TRUE(State() == before_);
  const std::string limited = "ZYL_UNDO_LIMIT=60K " ZYL_PROGRAM " ";
  for (const char* poly : {"3", "4", "5"}) {
    EXPECT_EQ(Shell(limited + "edit " + All() + "poly=" + poly, true).status, 0);
  }
  EXPECT_EQ(Zyl("undo 1").status, 2) << "the oldest batches are removed";
  const Finished large =
      Shell("ZYL_UNDO_LIMIT=1K " ZYL_PROGRAM " edit --quiet " + All() + "poly=6", true);
  EXPECT_EQ(large.status, 0);
  EXPECT_LT(large.out.find("cannot be undone"), large.out.find("PRGpoly")) << large.out;
  EXPECT_EQ(Zyl("undo --last").status, 4);  // batch 15, after which the files have changed
  const Finished none =
      Shell("env -u HOME -u XDG_STATE_HOME " ZYL_PROGRAM " edit " + All() + "poly=7", true);
  EXPECT_EQ(none.out.find("cannot be undone"), none.out.rfind("cannot be undone"));
  EXPECT_TRUE(Has(none.out, "HOME")) << none.out;
}

}  // namespace
}  // namespace zyl::test
