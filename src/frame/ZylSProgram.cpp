#include "frame/ZylSProgram.h"

#include <cstdlib>
#include <exception>
#include <string>
#include <utility>

#include "frame/Call.h"

ZylSProgram::ZylSProgram() { Registry().AddTail(this); }

ZylSProgram::~ZylSProgram() {
  auto& registry = Registry();
  if (auto* node = registry.Find(this)) registry.Remove(node);
  Detach();
  for (auto* node = registeredModules.Head(); node != nullptr; node = node->next) {
    deleteROCParam(node->item);
  }
  registeredModules.RemoveAll();
  sampleObjects.DeleteAll();
}

const char* ZylSProgram::GetClassName() const { return "ZylSProgram"; }
const char* ZylSProgram::GetBaseClassName() const { return "ZylDisplayObject"; }

int ZylSProgram::RunCall(const char* method, void (*run)(Call&), ROCParams* arguments,
                         ROCParam** result) noexcept {
  Call call(*this, method, arguments, result);
  ++runningCalls_;
  try {
    run(call);
  } catch (const std::exception& failure) {
    call.Exception(failure.what());
  }
  if (--runningCalls_ == 0 && destroyed_) delete this;
  return call.status;
}

// A notified module may delete the object that sent the notification.
void ZylSProgram::Destroy() {
  if (runningCalls_ == 0) {
    delete this;
  } else {
    destroyed_ = true;
    owner = nullptr;
  }
}

ZylSProgram* ZylSProgram::FromObject(RIOObject* object) {
  ZylDispatch* dispatch = object == nullptr ? nullptr : object->GetDispatch(true);
  return ZylIsKindOf(dispatch, "ZylSProgram") ? static_cast<ZylSProgram*>(dispatch) : nullptr;
}

void ZylSProgram::Detach() {
  if (program == nullptr) return;
  midiChannel = kDetaching;
  UpdateChannelMask();
  if (LocksRecords()) unlockAkaiProgram(program);
  akaiProgram* record = program;
  program = nullptr;
  deleteAkaiProgram(record);
}

void ZylSProgram::Attach(akaiProgram* record) {
  program = record;
  ++attachment;
}

void ZylSProgram::LockAttached() {
  if (program != nullptr && LocksRecords()) lockAkaiProgram(program);
}

int32_t ZylSProgram::SetMidiChannel(int32_t channel) {
  if (channel < 0) {
    midiChannel = kOmni;
  } else if (channel < kChannels) {
    midiChannel = channel;
  }
  if (program != nullptr) {
    program->midiChannel = static_cast<int8_t>(midiChannel);
    UpdateChannelMask();
  }
  return midiChannel;
}

void ZylSProgram::SetMidiChannelText(ROCParam* text) {
  const std::string typed(text->Str(), 0, text->Str().find('\0'));
  if (typed.empty()) return;
  if (typed.find_first_of("oO") != std::string::npos) {
    text->SetStr("Omni");
    SetMidiChannel(kOmni);
    return;
  }
  const long long number = std::strtoll(typed.c_str(), nullptr, 10);
  // An invalid number keeps the current channel.
  const bool valid = number >= 1 && number <= kChannels;
  const int32_t channel = valid ? static_cast<int32_t>(number) - 1 : midiChannel;
  text->SetStr(std::to_string(int64_t{channel} + 1));
  midiChannel = channel;
  if (program != nullptr) {
    program->midiChannel = static_cast<int8_t>(midiChannel);
    UpdateChannelMask();
  }
}

std::string ZylSProgram::GetMidiChannelText() const {
  return midiChannel < 0 ? "Omni" : std::to_string(int64_t{midiChannel} + 1);
}

void ZylSProgram::UpdateChannelMask() {
  if (program == nullptr) return;
  uint32_t mask = 0;
  const auto& registry = Registry();
  for (auto* node = registry.Head(); node != nullptr; node = node->next) {
    const ZylSProgram& other = *node->item;
    if (other.program != program) continue;
    if (other.midiChannel == kOmni) {
      mask = 0xFFFFFFFFu;
      break;
    }
    if (other.midiChannel >= 0 && other.midiChannel < kChannels) mask |= 1u << other.midiChannel;
  }
  program->tmMidiChannel = mask;
}

void ZylSProgram::CallRegistered(const char* method, ROCParams& arguments, bool dropDead) {
  const DeferredRemoval deferred(*this);
  for (auto* node = registeredModules.Head(); node != nullptr; node = node->next) {
    if (node->item == nullptr) continue;
    RIOObject* object = node->item->Object();
    ZylDispatch* dispatch = object == nullptr ? nullptr : object->GetDispatch(true);
    if (dispatch != nullptr) {
      ZylCallVirtualMethodVoidIfExists(dispatch, method, &arguments);
    } else if (dropDead) {
      deleteROCParam(std::exchange(node->item, nullptr));
    }
  }
}

ZylSProgram::DeferredRemoval::~DeferredRemoval() {
  if (--program.iterations_ > 0) return;
  PlexList<ROCParam*>& entries = program.registeredModules;
  while (auto* node = entries.Find(nullptr)) entries.Remove(node);
}

void ZylSProgram::ReleaseSampleObject(CSample*& object) {
  if (object == nullptr) return;
  CSample* released = object;
  object = nullptr;
  sampleObjects.RemoveAndRelease(released);
}
