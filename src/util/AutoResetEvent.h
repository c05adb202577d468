// One thread waits, another signals. A signal before the wait ends the next wait at once; several
// such signals count as one.
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
