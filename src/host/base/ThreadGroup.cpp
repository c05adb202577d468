#include <algorithm>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <utility>
#include <vector>

#include "../base.h"
#include "Registry.h"
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

// A group that there is. The members may outlive it, in the hand of a thread that is just leaving;
// what is the module's own may not.
struct Group {
  const void* module;
  std::function<void()> stop;
  std::shared_ptr<ThreadMembers> members;
};

// Script thread only, also at the very end of the process.
std::vector<Group>& Groups() {
  static auto* groups = new std::vector<Group>;
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

void EndThreadsOf(const void* module) {
  for (const Group& group : Groups()) {
    if (group.module != module) continue;
    group.stop();
    group.members->WaitForAll();
  }
}

}  // namespace zyl

ZylThreadGroup::ZylThreadGroup(std::function<void()> stop)
    : members_(std::make_shared<zyl::ThreadMembers>()) {
  zyl::Groups().push_back({zyl::LoadingModule(), std::move(stop), members_});
}
ZylThreadGroup::~ZylThreadGroup() {
  std::erase_if(zyl::Groups(), [&](const zyl::Group& group) { return group.members == members_; });
}

void ZylThreadGroup::Enter() {
  members_->Join();
  const auto before = std::exchange(zyl::membership.members, members_);
  if (before != nullptr) before->Leave();
}
