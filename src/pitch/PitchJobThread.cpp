#include "pitch/PitchJobThread.h"

#include <wx/time.h>

#include <new>
#include <utility>
#include <vector>

#include "pitch/PitchJobManager.h"

PitchJobThread::PitchJobThread(PitchJobManager& manager, const zyl::PitchSettings& settings)
    : wxThread(wxTHREAD_JOINABLE),
      manager_(manager),
      settings_(settings),
      lastProgress_(ROCParam(PitchJobManager::kCalculating)) {}

void PitchJobThread::Queue(genericSample* sample) {
  jobs_.AddTail(sample);
  totalFrames_ += static_cast<uint32_t>(sample->shared().frameCount);
}

void PitchJobThread::ClearTracks() {
  for (const Jobs::Node* job = jobs_.Head(); job != nullptr; job = job->next) {
    job->item->clearPitchData();
  }
}

// Must not throw: wxWidgets would end the thread without parking it.
wxThread::ExitCode PitchJobThread::Entry() {
  const ZylReserveDraw draw(false);
  startTime_ = wxGetUTCTime();  // avoids the time zone lookup of local time
  for (const Jobs::Node* job = jobs_.Head(); job != nullptr; job = job->next) {
    {
      const wxMutexLocker hold(lock_);
      if (cancel_) break;
      currentSample_ = job->item;
    }
    if (currentSample_ == nullptr) continue;
    try {
      Analyze(*job);
    } catch (const std::bad_alloc&) {
      // The sample stays without a track, as after a cancel.
    }
    const wxMutexLocker hold(lock_);
    tracker_.reset();
    currentSample_ = nullptr;
    released_.Signal();
  }
  manager_.NotifyProgress(lastProgress_);
  const wxMutexLocker hold(lock_);
  parked_ = true;
  return nullptr;
}

void PitchJobThread::Analyze(const Jobs::Node& job) {
  const PinnedSound sound = currentSample_->Pin();
  std::vector<const std::byte*> channels;
  channels.reserve(sound.channels.size());
  for (const SampleBlock& block : sound.channels) channels.push_back(block.get());
  {
    const wxMutexLocker hold(lock_);
    tracker_.emplace(zyl::PitchSource{channels.data(), static_cast<int>(channels.size()),
                                      sound.bytesPerValue, sound.frameCount,
                                      static_cast<double>(sound.rateHz)});
    tracker_->abort = cancel_ || job.item == nullptr;
  }
  auto track = zyl::AnalyzePitch(*tracker_, settings_, this);
  if (track) currentSample_->setPitchData(std::move(*track));
  if (!sound.name.empty()) manager_.NotifyFinished(sound.name);
}

void PitchJobThread::AddDone(uint32_t frames) {
  doneFrames_ += frames;
  try {
    manager_.NotifyProgress();
  } catch (const std::bad_alloc&) {
    // The next report carries the same value.
  }
}

void PitchJobThread::StopNow() {
  const wxMutexLocker hold(lock_);
  cancel_ = true;
  if (tracker_) tracker_->abort = true;
}

bool PitchJobThread::IsParked() const {
  const wxMutexLocker hold(lock_);
  return parked_;
}

std::string PitchJobThread::CurrentName() const {
  const wxMutexLocker hold(lock_);
  const bool named = currentSample_ != nullptr && currentSample_->name != nullptr;
  return named ? currentSample_->name : "";
}

void PitchJobThread::RemoveSample(genericSample* sample) {
  const auto frames = static_cast<uint32_t>(sample->shared().frameCount);
  const bool finished = sample->hasPitchData();
  const wxMutexLocker hold(lock_);
  Jobs::Node* job = jobs_.Find(sample);
  if (job == nullptr) return;
  // A sample that several zones use is queued several times, and subtracted once.
  totalFrames_ -= frames;
  if (finished) doneFrames_ -= frames;
  for (; job != nullptr; job = job->next) {
    if (job->item == sample) job->item = nullptr;
  }
  if (currentSample_ == sample && tracker_) tracker_->abort = true;
  while (currentSample_ == sample) released_.Wait();
}
