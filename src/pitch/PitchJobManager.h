// Owns the pitch jobs of the module: starts and cancels the worker of each request, and reports
// their progress. Sends progress and the names of finished samples through two pads that the script
// selects. Removes samples from all queues before the program library destroys them.
//
// Script thread only, except the functions for workers, whose notifications are queued for the
// script thread.
#pragma once

#include <wx/thread.h>

#include <cstdint>
#include <memory>
#include <string>

#include "host/akai.h"
#include "host/base.h"
#include "pitch/PitchJobThread.h"
#include "util/PlexList.h"

class PitchJobManager final : public AkaiInfoDispatcher {
 public:
  PitchJobManager();
  virtual ~PitchJobManager();
  PitchJobManager(const PitchJobManager&) = delete;
  PitchJobManager& operator=(const PitchJobManager&) = delete;

  void OnSampleDeleting(genericSample* sample) override;

  // Each starts a worker, even without samples to queue. Samples of keygroups and programs that
  // already have a pitch track are skipped.
  void StartSampleJob(genericSample* sample, const zyl::PitchSettings& settings);
  void StartKeygroupJob(const akaiProgram& program, int keygroup,
                        const zyl::PitchSettings& settings);
  void StartProgramJob(const akaiProgram& program, const zyl::PitchSettings& settings);

  void CancelAll();
  // Cancels all workers and joins them.
  void StopAll();
  int ThreadCount() const { return threads_.Count(); }
  // Joins and deletes the parked workers. The queries below call it first.
  void ReapFinished();
  int32_t TimeLeft();  // seconds, extrapolated from the elapsed time
  int32_t TimeTotal();
  int32_t ProgressRatio();  // 0 to 2147483647
  // Fills the array with the names of the samples under analysis, one for each worker.
  int32_t CurrentSampleNames(ROCParam& array);

  // The value of progress notifications: 1 while the list of workers is not empty. Only workers in
  // the list send it, so it is always 1.
  static constexpr int32_t kCalculating = 1;
  // The pads for progress and for the names of finished samples; null for none.
  void SetProgressPad(ROCPad* pad);
  void SetFinishedPad(ROCPad* pad);
  // Called by workers. The second one cannot fail.
  void NotifyProgress();
  void NotifyProgress(ZylReservedSend& send) noexcept;
  void NotifyFinished(const std::string& name);
  void NotifyCleared(const char* name);  // called on the script thread

 private:
  int32_t SecondsFor(uint32_t (*frames)(uint32_t total, uint32_t done));
  void QueueKeygroup(PitchJobThread& thread, const akaiProgram& program, int keygroup);
  std::unique_ptr<PitchJobThread> MakeThread(const zyl::PitchSettings& settings);
  void Start(std::unique_ptr<PitchJobThread> thread);
  void Reap(PlexList<PitchJobThread*>::Node* node);
  ROCParam PadOf(const ROCParam& pad) const;

  PlexList<PitchJobThread*> threads_;

  mutable wxCriticalSection padLock_;  // guards the two values
  ROCParam progressPad_;
  ROCParam finishedPad_;
};

// The module's manager, defined in frame/entry/Module.cpp.
PitchJobManager& PitchJobs();
