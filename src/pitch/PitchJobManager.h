// The module's one keeper of pitch jobs. It starts a worker for each request, answers queries,
// cancels, tells a script-chosen module of progress and finished samples through two of its pads,
// and takes samples that the program library discards out of every queue.
//
// `threads` belongs to the script thread. Workers reach only the notifications; what they send is
// delivered on the script thread.
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

  // Each starts a worker, also when there is nothing to queue. Samples of keygroups and programs
  // that have a pitch track already are left out.
  void StartSampleJob(genericSample* sample, const zyl::PitchSettings& settings);
  void StartKeygroupJob(const akaiProgram& program, int keygroup,
                        const zyl::PitchSettings& settings);
  void StartProgramJob(const akaiProgram& program, const zyl::PitchSettings& settings);

  void CancelAll();
  // Cancels, and waits until every worker has ended.
  void StopAll();
  int ThreadCount() const { return threads_.Count(); }
  // Deletes the workers that are parked; the queries below do so first.
  void ReapFinished();
  int32_t TimeLeft();  // seconds, by the speed so far
  int32_t TimeTotal();
  int32_t ProgressRatio();  // 0 to 2147483647
  // Fills the array with the names of the samples under analysis, one for each worker.
  int32_t CurrentSampleNames(ROCParam& array);

  // The value of a progress notification: workers are listed. A worker sends it while it is listed
  // itself, so it is the only one.
  static constexpr int32_t kCalculating = 1;
  // The pads that hear of progress and of finished samples; null for none.
  void SetProgressPad(ROCPad* pad);
  void SetFinishedPad(ROCPad* pad);
  // From workers; the second one cannot fail.
  void NotifyProgress();
  void NotifyProgress(ZylReservedSend& send) noexcept;
  void NotifyFinished(const std::string& name);
  void NotifyCleared(const char* name);  // from the script thread

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

// The module's one manager; defined in frame/entry/Module.cpp.
PitchJobManager& PitchJobs();
