#include "pitch/PitchJobThread.h"

#include <wx/time.h>

#include <algorithm>
#include <new>
#include <utility>

#include "pitch/PitchJobManager.h"

PitchJobThread::PitchJobThread(PitchJobManager& manager, const zyl::PitchSettings& settings)
    : wxThread(wxTHREAD_DETACHED), manager_(manager), settings_(settings) {
  manager_.ThreadMade();
}

PitchJobThread::~PitchJobThread() {
  for (auto* node = jobs_.Head(); node != nullptr; node = node->next) delete node->item;
  manager_.ThreadEnded();
}

void PitchJobThread::Queue(genericSample* sample) {
  sample->clearPitchData();
  const SampleParameters& parameters = sample->shared();
  jobs_.AddTail(new Job{sample, sample->PinChannels(), sample->getChannelBytesPS(-1),
                        parameters.frameCount, static_cast<double>(parameters.sampleRate),
                        sample->name == nullptr ? "" : sample->name, sample->name != nullptr});
  totalFrames_ += static_cast<uint32_t>(parameters.frameCount);
}

wxThread::ExitCode PitchJobThread::Entry() {
  manager_.ThreadBegun();
  startTime_ = wxGetUTCTime();  // seconds of any zone; the local one costs a look at it
  for (auto* node = jobs_.Head(); node != nullptr; node = node->next) {
    try {
      Analyze(*node->item);
    } catch (const std::bad_alloc&) {
      // The sample stays without a track, as after a cancel.
    }
  }
  manager_.NotifyProgress();
  Park();
  return nullptr;
}

void PitchJobThread::Analyze(Job& job) {
  // The sound is held no longer than its job lasts: parked workers hold none.
  const std::vector<SampleBlock> sound = std::move(job.sound);
  if (cancel_) return;
  std::vector<const std::byte*> channels;
  channels.reserve(sound.size());
  for (const SampleBlock& block : sound) channels.push_back(block.get());
  zyl::PitchSource source;
  source.channelBuffers = channels.data();
  source.channelCount = static_cast<int>(channels.size());
  source.bytesPerSample = job.bytesPerValue;
  source.frameCount = job.frameCount;
  source.rateHz = job.rateHz;
  SamplePitchTracker tracker(source);
  // On every way out the sample is let go before its analyser is destroyed.
  struct Current {
    PitchJobThread& thread;
    ~Current() { thread.LetGo(); }
  } const current{*this};
  {
    // The sample is taken and its analyser shown in one step: a removal or a cancel comes either
    // before it, and nothing starts, or after it, and finds whom to stop.
    const wxCriticalSectionLocker hold(lock_);
    if (job.sample == nullptr || cancel_) return;
    currentJob_ = &job;
    currentAnalyzer_ = &tracker;
  }
  auto track = zyl::AnalyzePitch(tracker, settings_, this);
  if (track) job.sample->setPitchData(std::move(*track));
  if (job.named) manager_.NotifyFinished(job.name);
}

void PitchJobThread::LetGo() {
  const wxCriticalSectionLocker hold(lock_);
  currentJob_ = nullptr;
  currentAnalyzer_ = nullptr;
  if (removeDone_ != nullptr) removeDone_->Signal();
}

void PitchJobThread::Park() {
  AutoResetEvent* release = nullptr;
  {
    const wxCriticalSectionLocker hold(lock_);
    release_ = std::make_unique<AutoResetEvent>();
    release = release_.get();
  }
  release->Wait();
  const wxCriticalSectionLocker hold(lock_);
  release_.reset();
}

void PitchJobThread::AddDone(uint32_t frames) {
  doneFrames_ += frames;
  manager_.NotifyProgress();
}

void PitchJobThread::StopNow() {
  cancel_ = true;
  const wxCriticalSectionLocker hold(lock_);
  if (currentAnalyzer_ != nullptr) currentAnalyzer_->abort = true;
}

bool PitchJobThread::IsParked() const {
  const wxCriticalSectionLocker hold(lock_);
  return release_ != nullptr;
}

void PitchJobThread::Release() {
  const wxCriticalSectionLocker hold(lock_);
  if (release_ != nullptr) release_->Signal();
}

std::string PitchJobThread::CurrentName() const {
  const wxCriticalSectionLocker hold(lock_);
  return currentJob_ == nullptr ? "" : currentJob_->name;
}

void PitchJobThread::RemoveSample(genericSample* sample) {
  AutoResetEvent done;
  bool current = false;
  const bool finished = sample->hasPitchData();
  {
    const wxCriticalSectionLocker hold(lock_);
    // A sample that several zones use stands in the queue several times.
    for (auto* node = jobs_.Head(); node != nullptr; node = node->next) {
      Job& job = *node->item;
      if (job.sample != sample) continue;
      const auto frames = static_cast<uint32_t>(job.frameCount);
      totalFrames_ -= frames;
      if (finished) {
        // Fewer frames were reported than the sample has: the count ends at 0, not below.
        uint32_t reported = doneFrames_;
        while (
            !doneFrames_.compare_exchange_weak(reported, reported - std::min(reported, frames))) {
        }
      }
      if (&job == currentJob_) {
        current = true;
        currentAnalyzer_->abort = true;
        removeDone_ = &done;
      } else {
        job.sample = nullptr;
      }
    }
  }
  if (!current) return;
  done.Wait();
  const wxCriticalSectionLocker hold(lock_);
  removeDone_ = nullptr;
  for (auto* node = jobs_.Head(); node != nullptr; node = node->next) {
    if (node->item->sample == sample) node->item->sample = nullptr;
  }
}
