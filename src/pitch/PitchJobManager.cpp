#include "pitch/PitchJobManager.h"

#include <wx/time.h>

#include <algorithm>
#include <cmath>
#include <utility>

PitchJobManager::PitchJobManager() {
  ZylBeforeUnload([this] { StopAll(); });
  g_pInfoDispatcher = this;
}

PitchJobManager::~PitchJobManager() {
  StopAll();
  g_pInfoDispatcher = nullptr;
}

void PitchJobManager::StopAll() {
  CancelAll();
  while (auto* node = threads_.Head()) Reap(node);
}

void PitchJobManager::QueueKeygroup(PitchJobThread& thread, const akaiProgram& program,
                                    int keygroup) {
  for (int z = 0; z < kZones; ++z) {
    genericSample* sample = program.sampleTable[kZones * keygroup + z];
    if (sample != nullptr && !sample->hasPitchData()) thread.Queue(sample);
  }
}

std::unique_ptr<PitchJobThread> PitchJobManager::MakeThread(const zyl::PitchSettings& settings) {
  const ZylReserveDraw draw(true);
  return std::make_unique<PitchJobThread>(*this, settings);
}

// Doesn't throw after adding the thread to the list.
void PitchJobManager::Start(std::unique_ptr<PitchJobThread> thread) {
  threads_.AddTail(thread.get());
  thread->ClearTracks();
  const ZylReserveDraw draw(true);
  if (thread->Create() == wxTHREAD_NO_ERROR && thread->Run() == wxTHREAD_NO_ERROR) {
    static_cast<void>(thread.release());
  } else {
    threads_.Remove(threads_.Tail());  // the system cannot start a thread: drop the request
  }
}

void PitchJobManager::StartSampleJob(genericSample* sample, const zyl::PitchSettings& settings) {
  auto thread = MakeThread(settings);
  thread->Queue(sample);
  Start(std::move(thread));
}

void PitchJobManager::StartKeygroupJob(const akaiProgram& program, int keygroup,
                                       const zyl::PitchSettings& settings) {
  auto thread = MakeThread(settings);
  QueueKeygroup(*thread, program, keygroup);
  Start(std::move(thread));
}

void PitchJobManager::StartProgramJob(const akaiProgram& program,
                                      const zyl::PitchSettings& settings) {
  auto thread = MakeThread(settings);
  for (int k = 0; k < program.KeyGroupCount(); ++k) QueueKeygroup(*thread, program, k);
  Start(std::move(thread));
}

void PitchJobManager::OnSampleDeleting(genericSample* sample) {
  for (auto* node = threads_.Head(); node != nullptr; node = node->next) {
    node->item->RemoveSample(sample);
  }
}

void PitchJobManager::CancelAll() {
  for (auto* node = threads_.Head(); node != nullptr; node = node->next) node->item->StopNow();
}

void PitchJobManager::ReapFinished() {
  for (auto* node = threads_.Head(); node != nullptr;) {
    auto* next = node->next;
    if (node->item->IsParked()) Reap(node);
    node = next;
  }
}

void PitchJobManager::Reap(PlexList<PitchJobThread*>::Node* node) {
  const ZylReserveDraw draw(true);
  const std::unique_ptr<PitchJobThread> thread(node->item);
  threads_.Remove(node);
  thread->Wait();
}

namespace {

int32_t ClampToInt32(double value) {
  return static_cast<int32_t>(std::clamp(value, 0.0, 2147483647.0));
}

}  // namespace

int32_t PitchJobManager::TimeLeft() {
  return SecondsFor([](uint32_t total, uint32_t done) { return total - done; });
}

int32_t PitchJobManager::TimeTotal() {
  return SecondsFor([](uint32_t total, uint32_t) { return total; });
}

// Sums the seconds that each worker needs for `frames(total, done)` frames at its average speed.
int32_t PitchJobManager::SecondsFor(uint32_t (*frames)(uint32_t total, uint32_t done)) {
  ReapFinished();
  double sum = 0;
  for (auto* node = threads_.Head(); node != nullptr; node = node->next) {
    const PitchJobThread& thread = *node->item;
    const uint32_t done = thread.DoneFrames();
    if (done == 0) continue;
    const auto elapsed = static_cast<double>(wxGetUTCTime() - thread.StartTime());
    sum += std::trunc(static_cast<double>(frames(thread.TotalFrames(), done)) / done * elapsed);
  }
  return ClampToInt32(sum);
}

int32_t PitchJobManager::ProgressRatio() {
  ReapFinished();
  uint32_t total = 0;
  uint32_t done = 0;
  for (auto* node = threads_.Head(); node != nullptr; node = node->next) {
    total += node->item->TotalFrames();
    done += node->item->DoneFrames();
  }
  return total == 0 ? 0 : ClampToInt32(done * 2147483647.0 / total);
}

int32_t PitchJobManager::CurrentSampleNames(ROCParam& array) {
  ReapFinished();
  const int32_t count = threads_.Count();
  array.SetSize(4 * count);
  int i = 0;
  for (auto* node = threads_.Head(); node != nullptr; node = node->next) {
    array.Element(i++).SetStr(node->item->CurrentName());
  }
  return count;
}

void PitchJobManager::SetProgressPad(ROCPad* pad) {
  const wxCriticalSectionLocker hold(padLock_);
  progressPad_.SetRIOPtr(pad);
}
void PitchJobManager::SetFinishedPad(ROCPad* pad) {
  const wxCriticalSectionLocker hold(padLock_);
  finishedPad_.SetRIOPtr(pad);
}

ROCParam PitchJobManager::PadOf(const ROCParam& pad) const {
  const wxCriticalSectionLocker hold(padLock_);
  return pad;
}

void PitchJobManager::NotifyProgress() {
  ZylSendStateThroughPad(PadOf(progressPad_), ROCParam(kCalculating));
}
void PitchJobManager::NotifyProgress(ZylReservedSend& send) noexcept {
  send.Send(PadOf(progressPad_));
}

void PitchJobManager::NotifyFinished(const std::string& name) {
  ZylSendThroughPad(PadOf(finishedPad_), ROCParam(std::string_view(name)));
}

void PitchJobManager::NotifyCleared(const char* name) {
  // The cast is safe: SetFinishedPad stores only pads.
  auto* pad = static_cast<ROCPad*>(finishedPad_.Object());
  if (name == nullptr || pad == nullptr || pad->Value()->Type() != kTypeString) return;
  pad->Value()->SetStr(name);
  if (pad->Owner() != nullptr) pad->UpdateOwner();
}
