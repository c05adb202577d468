#include <algorithm>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <utility>
#include <vector>

#include "../base.h"
#include "../platform/Platform.h"
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

struct Group {
  const void* module;
  std::function<void()> stop;
  ThreadMembers* members;
};

// The groups that there are, and the members of all that ever were: a thread that is just leaving
// may outlive its group. Script thread only, also at the very end of the process.
std::vector<Group>& Groups() {
  static auto* groups = new std::vector<Group>;
  return *groups;
}
std::deque<ThreadMembers>& AllMembers() {
  static auto* members = new std::deque<ThreadMembers>;
  return *members;
}

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
    : members_(&zyl::AllMembers().emplace_back()) {
  zyl::Groups().push_back({zyl::LoadingModule(), std::move(stop), members_});
}
ZylThreadGroup::~ZylThreadGroup() {
  std::erase_if(zyl::Groups(), [&](const zyl::Group& group) { return group.members == members_; });
}

void ZylThreadGroup::Enter() {
  members_->Join();
  zyl::CallAtThreadEnd([](void* members) { static_cast<zyl::ThreadMembers*>(members)->Leave(); },
                       members_);
}
