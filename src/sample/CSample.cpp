#include "sample/CSample.h"

#include <utility>

#include "frame/ZylSProgram.h"

CSample::CSample(ZylSProgram* parent, zyl::SampleUse record)
    : sample(record.get()), parentProgram(parent) {
  // This also creates the object's anchor, so that later values refer to it without allocating.
  const ROCParamPtr self(newROCParam(this));
  if (parent != nullptr) {
    deletingArguments_.AddTail(newROCParam(parent->owner));
    self->AddReference();
    deletingArguments_.AddTail(self.get());
  }
  static_cast<void>(record.release());
}

CSample::~CSample() {
  if (sample == nullptr) return;
  NotifyDeleting();
  if (locked) unlockSample(sample);
  sample->deleteSample();
}

RIOObject* CSample::Factory(RIOObject*) {
  constexpr int kWave = 2;
  zyl::SampleUse record(newSample());
  record->create(kWave, 2);
  return new CSample(nullptr, std::move(record));
}

void CSample::NotifyDeleting() {
  if (parentProgram == nullptr) return;
  parentProgram->CallRegistered("OnDeletingSmpl", deletingArguments_, false);
}
