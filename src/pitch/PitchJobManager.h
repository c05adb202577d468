// The module's one keeper of pitch jobs. It starts a worker for each request, answers queries,
// cancels, tells a script-chosen module of progress and finished samples through two of its pads,
// and takes samples that the program library discards out of every queue.
//
// `threads` belongs to the script thread. Workers reach only the notifications; what they send is
// delivered on the script thread.
#pragma once

#include <wx/thread.h>

#include <atomic>
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

  // Each starts a worker, also when there is nothing to queue. Samples of keygroups and programs
  // that have a pitch track already are left out.
  void StartSampleJob(genericSample* sample, const zyl::PitchSettings& settings);
  void StartKeygroupJob(const akaiProgram& program, int keygroup,
                        const zyl::PitchSettings& settings);
  void StartProgramJob(const akaiProgram& program, const zyl::PitchSettings& settings);

  void CancelAll();
  // Cancels, and waits until every worker is gone. What wxWidgets then still does on their threads
  // is waited for by the host.
  void StopAll();
  int ThreadCount() const { return threads_.Count(); }
  // Lets the workers end that have done their jobs; the queries below do so first.
  void ReapFinished();
  int32_t TimeLeft();  // seconds, by the speed so far
  int32_t TimeTotal();
  int32_t ProgressRatio();  // 0 to 2147483647
  // Fills the array with the names of the samples under analysis, one for each worker.
  int32_t CurrentSampleNames(ROCParam& array);

  // The pads that hear of progress and of finished samples; null for none.
  void SetProgressPad(ROCPad* pad);
  void SetFinishedPad(ROCPad* pad);
  void NotifyProgress();                         // from workers
  void NotifyFinished(const std::string& name);  // from workers
  void NotifyCleared(const char* name);          // from the script thread

  // A worker is made, runs on its own thread, and destroys itself.
  void ThreadMade();
  void ThreadBegun() { systemThreads_.Enter(); }
  void ThreadEnded();

 private:
  int32_t SecondsFor(uint32_t (*frames)(uint32_t total, uint32_t done));
  void QueueKeygroup(PitchJobThread& thread, const akaiProgram& program, int keygroup);
  void Start(std::unique_ptr<PitchJobThread> thread);
  ROCParam PadOf(const ROCParam& pad) const;

  PlexList<PitchJobThread*> threads_;
  std::atomic<int> listed_{0};  // how many threads there are, for workers

  mutable wxCriticalSection padLock_;  // guards the two values
  ROCParam progressPad_;
  ROCParam finishedPad_;

  wxMutex endedMutex_;
  wxCondition ended_;
  int living_ = 0;  // under endedMutex_
  ZylThreadGroup systemThreads_{[this] { StopAll(); }};
};

// The module's one manager; defined in frame/entry/Module.cpp.
PitchJobManager& PitchJobs();
