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
  ThreadMembers(const void* module, std::function<void()> stop)
      : module_(module), stop_(std::move(stop)) {}

  bool IsOf(const void* module) const { return module_ == module; }
  void Join() {
    const std::lock_guard<std::mutex> hold(mutex_);
    ++count_;
  }
  void Leave() {
    const std::lock_guard<std::mutex> hold(mutex_);
    --count_;
    left_.notify_all();
  }
  void End() {
    stop_();
    std::unique_lock<std::mutex> hold(mutex_);
    left_.wait(hold, [&] { return count_ == 0; });
  }

 private:
  const void* module_;
  std::function<void()> stop_;
  std::mutex mutex_;
  std::condition_variable left_;
  int count_ = 0;
};

namespace {

// The groups that there are. Script thread only, also at the very end of the process.
std::vector<std::shared_ptr<ThreadMembers>>& Groups() {
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

void EndThreadsOf(const void* module) {
  const auto groups = Groups();
  for (const auto& members : groups) {
    if (members->IsOf(module)) members->End();
  }
}

}  // namespace zyl

ZylThreadGroup::ZylThreadGroup(std::function<void()> stop)
    : members_(std::make_shared<zyl::ThreadMembers>(zyl::LoadingModule(), std::move(stop))) {
  zyl::Groups().push_back(members_);
}
ZylThreadGroup::~ZylThreadGroup() { std::erase(zyl::Groups(), members_); }

void ZylThreadGroup::Enter() {
  members_->Join();
  const auto before = std::exchange(zyl::membership.members, members_);
  if (before != nullptr) before->Leave();
}
