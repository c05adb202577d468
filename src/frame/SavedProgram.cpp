// The state of a program object, for rolling back changes.
//
// Contains the attached record's contents and the object's dirty flag, channel, number of outputs
// and notification flag. Restoring attaches the same record again and restores its contents in
// place, so that other objects that share the record see them, too. Samples are shared with the
// record, not copied; sample objects, registered modules and pitch jobs are unaffected.
#include <optional>

#include "frame/ZylSProgram.h"

namespace {

class SavedProgram final : public ZylState {
 public:
  explicit SavedProgram(const ZylSProgram& object)
      : ZylState(object.owner),
        midiChannel_(object.midiChannel),
        maxIndyOut_(object.maxIndyOut),
        dirty_(object.dirty),
        enableRegisterCall_(object.enableRegisterCall) {
    if (object.program != nullptr) snapshot_.emplace(object.program);
  }

  bool Restore() noexcept override {
    ZylSProgram* object = ZylSProgram::FromObject(Object());
    if (object == nullptr || restored_) return false;
    restored_ = true;
    object->Detach();
    object->midiChannel = midiChannel_;
    object->Attach(snapshot_ ? snapshot_->Restore() : nullptr);
    object->LockAttached();
    object->maxIndyOut = maxIndyOut_;
    object->dirty = dirty_;
    object->enableRegisterCall = enableRegisterCall_;
    return true;
  }

 private:
  std::optional<zyl::ProgramSnapshot> snapshot_;
  int32_t midiChannel_;
  int32_t maxIndyOut_;
  bool dirty_;
  bool enableRegisterCall_;
  bool restored_ = false;
};

}  // namespace

std::unique_ptr<ZylState> ZylSProgram::SaveState() { return std::make_unique<SavedProgram>(*this); }
