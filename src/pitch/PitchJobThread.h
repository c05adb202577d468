// The worker of one request. It analyses the queued samples one by one and is then parked: its
// thread ends, while the object remains in the manager's list until a query joins the thread and
// deletes the object. The manager owns the worker.
//
// The worker pins the sound and name of each sample just before the analysis. It accesses a record
// only while that is the current sample; RemoveSample waits until the worker has released it.
//
// Failed allocations of wxThread use the reserve, which is constructed before the wxThread and
// destroyed after it. So the script thread constructs, runs and joins with a ZylReserveDraw(true).
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

  // Appends a sample. Call before the thread runs.
  void Queue(genericSample* sample);
  // Clears the pitch tracks of all queued samples. Call before the thread runs.
  void ClearTracks();

  // Called on the script thread:
  void StopNow();
  bool IsParked() const;
  std::string CurrentName() const;
  // Removes the sample from the queue. If it is being analysed, stops the analysis and waits for
  // its end. The worker no longer accesses the record afterwards.
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

  // Guards the members up to `parked_`. While the thread runs, the list's nodes don't change; the
  // item of a removed sample becomes null.
  mutable wxMutex lock_;
  wxCondition released_{lock_};  // the worker has released its current sample
  Jobs jobs_;
  genericSample* currentSample_ = nullptr;     // changed only by the worker
  std::optional<SamplePitchTracker> tracker_;  // of the current sample
  bool cancel_ = false;
  bool parked_ = false;

  uint32_t totalFrames_ = 0;  // script thread only
  std::atomic<uint32_t> doneFrames_{0};
  std::atomic<long> startTime_{0};  // seconds
};
