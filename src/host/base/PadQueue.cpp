// Pad sends, and the queue that transfers calls from other threads to the script thread.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <iostream>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "../hostapp.h"

namespace {

// A call to be made on the script thread. Numbers ascend in the queue.
struct QueuedCall {
  uint64_t number;
  ROCParam pad;  // the pad that the call sends on, or a null object
  std::function<void()> call;
};

std::mutex queueMutex;
std::condition_variable queueFilled;
std::list<QueuedCall> queue;
uint64_t lastNumber = 0;

std::atomic<std::thread::id> scriptThread;

std::mutex sinkMutex;
std::function<void(std::string_view)> diagnosticSink;

// Appends the list's only call without allocating.
void Append(std::list<QueuedCall>& call) noexcept {
  {
    const std::lock_guard<std::mutex> hold(queueMutex);
    call.front().number = ++lastNumber;
    queue.splice(queue.end(), call);
  }
  queueFilled.notify_one();
}

void Post(const ROCParam& pad, std::function<void()> call) {
  std::list<QueuedCall> added;
  added.push_back({0, pad, std::move(call)});
  Append(added);
}

// Runs the queued calls up to `number` in order and returns how many it ran. Removes each call
// before running it, so that a nested pump continues with the next one.
int RunQueuedCalls(uint64_t number) {
  for (int made = 0;; ++made) {
    std::list<QueuedCall> taken;
    {
      const std::lock_guard<std::mutex> hold(queueMutex);
      if (queue.empty() || queue.front().number > number) return made;
      taken.splice(taken.begin(), queue, queue.begin());
    }
    taken.front().call();
  }
}

// The number of the pad's last queued send, or 0.
uint64_t LastNumberOf(const ROCPad* pad) {
  const std::lock_guard<std::mutex> hold(queueMutex);
  const auto own = std::find_if(queue.rbegin(), queue.rend(), [&](const QueuedCall& queued) {
    return queued.pad.Object() == pad;
  });
  return own == queue.rend() ? 0 : own->number;
}

}  // namespace

ROCPadListener::~ROCPadListener() = default;

ROCPad::ROCPad(std::string name, ROCAlgo* owner, ROCParam* value)
    : name_(std::move(name)), owner_(owner), value_(value), self_(this) {}
ROCPad::~ROCPad() { deleteROCParam(value_); }
const char* ROCPad::GetTypeName() const { return "ROCPad"; }

void ROCPad::Send(int, int) {
  if (ZylIsScriptThread()) {
    if (listener_ != nullptr) listener_->OnSend(*this, *value_);
    return;
  }
  Post(self_, [self = self_, value = *value_] {
    // The cast is safe: self_ refers to a ROCPad or, after its destruction, is null.
    auto* pad = static_cast<ROCPad*>(self.Object());
    if (pad != nullptr && pad->listener_ != nullptr) pad->listener_->OnSend(*pad, value);
  });
}

namespace {

// The queued states of one pad.
struct QueuedStates {
  ROCParam pad;
  int count = 0;
  std::shared_ptr<ROCParam> newest;
};
constexpr int kMaxQueuedStates = 1000;
std::mutex statesMutex;
std::vector<QueuedStates> states;  // one entry per live pad with queued states

void SendNow(const ROCParam& pad, const ROCParam& value) {
  auto* target = dynamic_cast<ROCPad*>(pad.Object());
  if (target == nullptr || target->Value()->Type() != value.Type()) return;
  *target->Value() = value;
  target->Send(0, 1);
}

}  // namespace

void ZylSendThroughPad(const ROCParam& pad, const ROCParam& value) {
  if (pad.Object() == nullptr) return;
  Post(pad, [pad, value] { SendNow(pad, value); });
}

struct ZylReservedSend::Reserved {
  std::list<QueuedCall> call;
  std::shared_ptr<ROCParam> pad = std::make_shared<ROCParam>();
};

ZylReservedSend::ZylReservedSend(const ROCParam& value) : reserved_(std::make_unique<Reserved>()) {
  reserved_->call.push_back({0, {}, [pad = reserved_->pad, value] { SendNow(*pad, value); }});
}
ZylReservedSend::~ZylReservedSend() = default;

void ZylReservedSend::Send(const ROCParam& pad) noexcept {
  if (pad.Object() == nullptr) return;
  *reserved_->pad = pad;
  reserved_->call.front().pad = pad;
  Append(reserved_->call);
}

void ZylSendStateThroughPad(const ROCParam& pad, const ROCParam& value) {
  if (pad.Object() == nullptr) return;
  const auto newest = std::make_shared<ROCParam>(value);
  {
    const std::lock_guard<std::mutex> hold(statesMutex);
    auto own = std::ranges::find(states, pad, &QueuedStates::pad);
    if (own == states.end()) own = states.insert(states.end(), {pad, 0, nullptr});
    if (own->count == kMaxQueuedStates) {
      *own->newest = value;
      return;
    }
    ++own->count;
    own->newest = newest;
  }
  Post(pad, [pad, newest] {
    ROCParam sent;
    {
      const std::lock_guard<std::mutex> hold(statesMutex);
      std::erase_if(states, [&](QueuedStates& queued) {
        return queued.pad.Object() == nullptr || (queued.pad == pad && --queued.count == 0);
      });
      sent = *newest;
    }
    SendNow(pad, sent);
  });
}

void ROCPad::UpdateOwner() {
  if (const uint64_t last = LastNumberOf(this); last != 0) {
    // Queued sends change the pad's value, and their callbacks may delete the pad.
    const ROCParam self(self_);
    const ROCParam updated(*value_);
    RunQueuedCalls(last);
    if (self.Object() == nullptr) return;
    *value_ = updated;
  }
  if (listener_ != nullptr) listener_->OnUpdate(*this, *value_);
}

void ZylSetScriptThread() { scriptThread = std::this_thread::get_id(); }
bool ZylIsScriptThread() { return scriptThread.load() == std::this_thread::get_id(); }

int ZylPump(double seconds) {
  uint64_t last;
  {
    std::unique_lock<std::mutex> hold(queueMutex);
    if (queue.empty() && seconds > 0) {
      // Limited to a day to prevent overflow in clock arithmetic.
      const auto limit = std::chrono::duration<double>(std::min(seconds, 86400.0));
      queueFilled.wait_for(hold, limit, [] { return !queue.empty(); });
    }
    last = lastNumber;
  }
  return RunQueuedCalls(last);
}

void ZylSetDiagnosticSink(std::function<void(std::string_view)> sink) {
  const std::lock_guard<std::mutex> hold(sinkMutex);
  diagnosticSink = std::move(sink);
}

void ZylDiagnostic(std::string_view line) {
  std::function<void(std::string_view)> sink;
  {
    // Call the sink without the lock: it may write diagnostics itself.
    const std::lock_guard<std::mutex> hold(sinkMutex);
    sink = diagnosticSink;
  }
  if (sink) {
    sink(line);
  } else {
    std::cerr << "zylhost: " + std::string(line) + "\n";
  }
}
