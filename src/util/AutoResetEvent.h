// One thread waits, another signals. A signal that comes before the wait is kept for it; each wait
// takes one signal.
#pragma once

#include <wx/thread.h>

class AutoResetEvent {
 public:
  AutoResetEvent() : condition_(mutex_) {}

  void Signal() {
    const wxMutexLocker hold(mutex_);
    signalled_ = true;
    condition_.Signal();
  }

  void Wait() {
    const wxMutexLocker hold(mutex_);
    while (!signalled_) condition_.Wait();
    signalled_ = false;
  }

 private:
  wxMutex mutex_;
  wxCondition condition_;
  bool signalled_ = false;
};
