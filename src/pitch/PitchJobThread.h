// The worker of one request: it analyses the queued samples one by one, then parks until it is
// reaped. A detached thread, which destroys itself when its entry function has returned.
//
// What a job needs of its sample (sound, length, rate, name) is taken when it is queued, on the
// script thread; the worker touches the record itself only to store the finished track, and only
// while it is the current sample, which its removal waits for. Fields that cross threads are
// atomic, or stand under `lock_`, which is never held across a wait or an analysis.
#pragma once

#include <wx/thread.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/akai.h"
#include "pitch/SamplePitchTracker.h"
#include "util/AutoResetEvent.h"
#include "util/PlexList.h"

class PitchJobManager;

class PitchJobThread final : public wxThread, private zyl::PitchProgress {
 public:
  PitchJobThread(PitchJobManager& manager, const zyl::PitchSettings& settings);
  ~PitchJobThread() override;

  // Clears the sample's pitch track and appends it; before the thread runs.
  void Queue(genericSample* sample);

  // From the script thread:
  void StopNow();
  bool IsParked() const;
  // Lets a parked thread end; it must not be touched afterwards.
  void Release();
  std::string CurrentName() const;
  // Takes the sample out of the queue; one under analysis is waited for. Afterwards the worker uses
  // the record no more.
  void RemoveSample(genericSample* sample);

  uint32_t TotalFrames() const { return totalFrames_; }
  uint32_t DoneFrames() const { return doneFrames_; }
  long StartTime() const { return startTime_; }

 protected:
  ExitCode Entry() override;

 private:
  // A queued sample; `sample` is cleared when the record goes away.
  struct Job {
    genericSample* sample;           // under lock_
    std::vector<SampleBlock> sound;  // the worker takes it when the job's turn comes
    int bytesPerValue;
    int32_t frameCount;
    double rateHz;
    std::string name;
    bool named;
  };

  void AddDone(uint32_t frames) override;
  void Analyze(Job& job);
  void LetGo();
  void Park();

  PitchJobManager& manager_;
  const zyl::PitchSettings settings_;
  PlexList<Job*> jobs_;  // not changed once the thread runs

  mutable wxCriticalSection lock_;
  Job* currentJob_ = nullptr;
  PitchAnalyzer* currentAnalyzer_ = nullptr;
  AutoResetEvent* removeDone_ = nullptr;     // while a removal waits for the current sample
  std::unique_ptr<AutoResetEvent> release_;  // while the thread is parked

  std::atomic<uint32_t> totalFrames_{0};
  std::atomic<uint32_t> doneFrames_{0};
  std::atomic<long> startTime_{0};  // seconds
  std::atomic<bool> cancel_{false};
};
