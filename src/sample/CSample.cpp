#include "sample/CSample.h"

#include <new>

#include "frame/ZylSProgram.h"

CSample::~CSample() {
  if (sample == nullptr) return;
  NotifyDeleting();
  if (locked) unlockSample(sample);
  sample->deleteSample();
}

RIOObject* CSample::Factory(RIOObject*) {
  constexpr int kWave = 2;
  genericSample* record = newSample();
  record->create(kWave, 2);
  auto* made = new (std::nothrow) CSample(nullptr, record);
  if (made == nullptr) record->deleteSample();
  return made;
}

void CSample::NotifyDeleting() {
  if (parentProgram == nullptr) return;
  ROCParams arguments;
  arguments.AddTail(newROCParam(parentProgram->owner));
  arguments.AddTail(newROCParam(this));
  parentProgram->CallRegistered("OnDeletingSmpl", arguments, false);
}
