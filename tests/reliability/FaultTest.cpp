// Saving under faults: the n-th write, flush, rename or allocation of a save fails, for every n;
// the disk is full; the process is killed. The target is then the complete old or new file, and no
// temporary file is left.
//
// The linker redirects the system calls (--wrap in CMakeLists.txt), so the product needs no hooks.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <functional>

#include "akai.h"
#include "host/SampleFileTools.h"
#include "hostapp.h"
#include "support/AllocationWatch.h"

namespace {

// How many more wrapped calls succeed; negative: all.
int callsLeft = -1;
int failure = EIO;
// If not negative, a save writes to this pipe before it renames its file, and then waits forever.
int renamePipe = -1;

// Whether bytes or a new name have not been flushed, and the number of renames in that state.
bool unflushed = false;
int unflushedRenames = 0;

bool Fails() {
  if (callsLeft < 0 || callsLeft-- > 0) return false;
  callsLeft = -1;
  errno = failure;
  return true;
}

}  // namespace

extern "C" {
ssize_t __real_write(int handle, const void* bytes, size_t count);
int __real_fsync(int handle);
int __real_rename(const char* from, const char* to);
int __real_linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags);

ssize_t __wrap_write(int handle, const void* bytes, size_t count) {
  unflushed = true;
  return Fails() ? -1 : __real_write(handle, bytes, count);
}
int __wrap_fsync(int handle) {
  if (Fails()) return -1;
  unflushed = false;
  return __real_fsync(handle);
}
int __wrap_rename(const char* from, const char* to) {
  if (unflushed) ++unflushedRenames;
  unflushed = true;
  if (renamePipe >= 0 && __real_write(renamePipe, "r", 1) == 1) {
    for (;;) pause();
  }
  return Fails() ? -1 : __real_rename(from, to);
}
int __wrap_linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) {
  return Fails() ? -1 : __real_linkat(fromFolder, from, toFolder, to, flags);
}
}

namespace zyl::test {
namespace {

constexpr int kMostSteps = 3000;

// A fork of the process that does `work`. The destructor kills it, and so does the end of the test.
class Child {
 public:
  explicit Child(const std::function<void()>& work) {
    const pid_t parent = getpid();
    process_ = fork();
    EXPECT_GE(process_, 0);
    if (process_ != 0) return;
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() == parent) work();
    _exit(0);
  }
  ~Child() { Kill(); }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  void Kill() {
    if (process_ <= 0) return;
    ::kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    process_ = 0;
  }

 private:
  pid_t process_ = 0;
};

// A program with a sample, and the files that they are saved to.
class Saves : public testing::Test {
 protected:
  struct Target {
    std::string path;
    std::function<bool()> save;
    std::function<void(int)> change;  // makes a change that shows in the file, by number
  };

  void SetUp() override {
    ZylSetDiagnosticSink([](std::string_view) {});
    program_ = newAkaiProgram();
    program_->setDefault();
    for (int k = 1; k < 40; ++k) program_->newKeyGroup(k, program_, 0);
    sample_ = newSample();
    sample_->create(2, 1);
    // More than one block of the file's buffer.
    sample_->setBuffer(NewSampleBlock(kFrames * 2), 2, kFrames);
    const auto changeSample = [this](int number) {
      std::byte* sound = sample_->WritableChannels({0}).channels[0];
      for (int i = 0; i < 2 * kFrames; ++i) sound[i] = static_cast<std::byte>(i % 100 + number);
    };
    changeSample(0);
    const std::string path = folder_.File("program.zprg");
    targets_.push_back({path,
                        [=, this] { return writeAkaiProgram(program_, 0, path.c_str(), 51) != 0; },
                        [this](int number) { program_->poly = static_cast<uint8_t>(number); }});
    for (const std::string& sound : {folder_.File("sound.wav"), folder_.File("sound.aif")}) {
      targets_.push_back(
          {sound, [=, this] { return writeSample(sample_, sound.c_str(), 0); }, changeSample});
    }
  }
  void TearDown() override {
    callsLeft = -1;
    failure = EIO;
    sample_->deleteSample();
    deleteAkaiProgram(program_);
    ZylSetDiagnosticSink({});
  }

  // The contents of a target before and after a change.
  std::pair<Octets, Octets> OldAndNew(const Target& target) {
    target.change(2);
    EXPECT_TRUE(target.save());
    Octets changed = ReadBytes<Octets>(target.path);
    target.change(1);
    EXPECT_TRUE(target.save());
    Octets before = ReadBytes<Octets>(target.path);
    target.change(2);
    EXPECT_NE(before, changed);
    return {before, changed};
  }

  // Makes each step of a save fail in turn, until a save has fewer steps. `disarm` receives the
  // result of the save and returns whether a step failed.
  void FailEveryStep(const std::function<void(int)>& arm, const std::function<bool(bool)>& disarm) {
    for (const Target& target : targets_) {
      const auto [before, changed] = OldAndNew(target);
      const size_t entries = folder_.EntryCount();
      int steps = 0;
      for (;; ++steps) {
        ASSERT_LT(steps, kMostSteps);
        WriteBytes(target.path, before);
        arm(steps);
        const bool saved = target.save();
        if (!disarm(saved)) {
          EXPECT_TRUE(saved);
          break;
        }
        const Octets now = ReadBytes<Octets>(target.path);
        // A failure after the rename leaves the new file, whose name may not be on disk yet.
        EXPECT_TRUE(now == before || now == changed) << target.path << " at step " << steps;
        EXPECT_TRUE(!saved || now == changed)
            << "reported success although this step failed: " << steps;
        EXPECT_EQ(folder_.EntryCount(), entries) << target.path << " at step " << steps;
      }
      EXPECT_GE(steps, 4) << target.path << ": too few steps";
      EXPECT_EQ(ReadBytes<Octets>(target.path), changed) << "the object can still be saved";
    }
  }

  static constexpr int kFrames = 70000;
  TempFolder folder_;
  akaiProgram* program_ = nullptr;
  genericSample* sample_ = nullptr;
  std::vector<Target> targets_;
};

// After a save, a power failure leaves the complete new file.
TEST_F(Saves, AreFlushedBeforeAndAfterTheRename) {
  unflushedRenames = 0;
  for (const Target& target : targets_) {
    EXPECT_TRUE(target.save());
    EXPECT_EQ(unflushedRenames, 0) << target.path;
    EXPECT_FALSE(unflushed) << target.path << ": its new name";
  }
}

TEST_F(Saves, SurviveEveryFailingWriteFlushLinkAndRename) {
  for (const int error : {EIO, ENOSPC}) {
    failure = error;
    FailEveryStep([](int step) { callsLeft = step; },
                  [](bool) {
                    const bool failed = callsLeft < 0;
                    callsLeft = -1;
                    return failed;
                  });
  }
}

TEST_F(Saves, SurviveEveryFailingAllocation) {
  FailEveryStep([](int step) { AllocationWatch::FailAt(static_cast<uint64_t>(step) + 1); },
                [](bool) {
                  const bool failed = AllocationWatch::HasFailed();
                  AllocationWatch::FailAt(0);
                  return failed;
                });
}

// A file size limit acts like a full disk.
TEST_F(Saves, LeaveTheOldFileOnAFullDisk) {
  constexpr rlim_t kStepBytes = 1500;
  rlimit old{};
  getrlimit(RLIMIT_FSIZE, &old);
  const auto handler = signal(SIGXFSZ, SIG_IGN);
  FailEveryStep(
      [&](int step) {
        const rlimit small{kStepBytes * static_cast<rlim_t>(step), old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
      },
      [&](bool saved) {
        setrlimit(RLIMIT_FSIZE, &old);
        return !saved;
      });
  signal(SIGXFSZ, handler);
}

// A process killed between creating its file and renaming it leaves a stale file.
TEST_F(Saves, RemoveStaleFilesAndNoneInUse) {
  const Target& target = targets_[0];
  EXPECT_TRUE(target.save());
  const size_t entries = folder_.EntryCount();
  int atRename[2];
  ASSERT_EQ(pipe(atRename), 0);
  Child child([&] {
    renamePipe = atRename[1];
    target.save();
  });
  close(atRename[1]);
  char reported = 0;
  ASSERT_EQ(read(atRename[0], &reported, 1), 1) << "the save did not reach the rename";
  close(atRename[0]);
  EXPECT_EQ(folder_.EntryCount(), entries + 1);
  EXPECT_TRUE(target.save());
  EXPECT_EQ(folder_.EntryCount(), entries + 1) << "its process still runs";
  child.Kill();
  EXPECT_TRUE(target.save());
  EXPECT_EQ(folder_.EntryCount(), entries);
}

}  // namespace
}  // namespace zyl::test
