// The worker of one request. It analyses the queued samples one by one and then parks: its thread
// ends, while the object keeps its place in the manager's list until a query reaps it. The manager
// owns it and joins the thread.
//
// A sample's sound and name are pinned when its turn comes. The worker uses a record only while it
// is the current sample; removing that one waits until the worker has dropped it.
//
// Failed allocations of wxThread draw from the reserve, which exists before the wxThread does and
// until after it is destroyed. So the script thread constructs, runs and joins with a
// ZylReserveDraw(true).
#pragma once

#include <wx/thread.h>

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>

#include "host/akai.h"
#include "host/base.h"
#include "host/memoryReserve.h"
#include "pitch/SamplePitchTracker.h"
#include "util/PlexList.h"

class PitchJobManager;

class PitchJobThread final : private ZylMemoryReserve, public wxThread, private zyl::PitchProgress {
 public:
  PitchJobThread(PitchJobManager& manager, const zyl::PitchSettings& settings);

  // Appends a sample; before the thread runs.
  void Queue(genericSample* sample);
  // Clears the pitch tracks of all queued samples; before the thread runs.
  void ClearTracks();

  // From the script thread:
  void StopNow();
  bool IsParked() const;
  std::string CurrentName() const;
  // Takes the sample out of the queue; one under analysis is stopped and waited for. Afterwards the
  // worker does not use the record any more.
  void RemoveSample(genericSample* sample);

  uint32_t TotalFrames() const { return totalFrames_; }
  uint32_t DoneFrames() const { return doneFrames_; }
  long StartTime() const { return startTime_; }

 protected:
  ExitCode Entry() override;

 private:
  using Jobs = PlexList<genericSample*>;

  void AddDone(uint32_t frames) override;
  void Analyze(const Jobs::Node& job);

  PitchJobManager& manager_;
  const zyl::PitchSettings settings_;
  ZylReservedSend lastProgress_;

  // Guards all up to `parked_`. The nodes do not change once the thread runs, only their items:
  // null for a sample that was removed.
  mutable wxMutex lock_;
  wxCondition dropped_{lock_};  // the worker has dropped its current sample
  Jobs jobs_;
  genericSample* currentSample_ = nullptr;     // changed by the worker alone
  std::optional<SamplePitchTracker> tracker_;  // of the current sample
  bool cancel_ = false;
  bool parked_ = false;

  uint32_t totalFrames_ = 0;  // script thread only
  std::atomic<uint32_t> doneFrames_{0};
  std::atomic<long> startTime_{0};  // seconds
};
