#include <condition_variable>
#include <mutex>
#include <utility>
#include <vector>

#include "../base.h"
#include "Threads.h"

namespace zyl {

class ThreadMembers {
 public:
  void Join() {
    const std::lock_guard<std::mutex> hold(mutex_);
    ++count_;
  }
  void Leave() {
    const std::lock_guard<std::mutex> hold(mutex_);
    --count_;
    left_.notify_all();
  }
  void WaitForAll() {
    std::unique_lock<std::mutex> hold(mutex_);
    left_.wait(hold, [&] { return count_ == 0; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable left_;
  int count_ = 0;
};

namespace {

// Groups whose module has let go of them. Script thread only, also at the very end of the process.
std::vector<std::shared_ptr<ThreadMembers>>& Abandoned() {
  static auto* groups = new std::vector<std::shared_ptr<ThreadMembers>>;
  return *groups;
}

// The system destroys a thread's own objects after its start routine. This one lives in the host's
// library, which stays when a module goes.
struct Membership {
  std::shared_ptr<ThreadMembers> members;
  ~Membership() {
    if (members != nullptr) members->Leave();
  }
};
thread_local Membership membership;

}  // namespace

void WaitForAbandonedThreads() {
  for (const auto& members : std::exchange(Abandoned(), {})) members->WaitForAll();
}

}  // namespace zyl

ZylThreadGroup::ZylThreadGroup() : members_(std::make_shared<zyl::ThreadMembers>()) {}
ZylThreadGroup::~ZylThreadGroup() { zyl::Abandoned().push_back(members_); }

void ZylThreadGroup::Enter() {
  members_->Join();
  const auto before = std::exchange(zyl::membership.members, members_);
  if (before != nullptr) before->Leave();
}
