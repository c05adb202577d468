#include "frame/Arguments.h"

namespace argument {

bool CheckPath(Call& call, const std::string& path, int position) {
  return path.find('\0') == std::string::npos ||
         call.UserError("a path cannot hold a zero byte", position);
}

bool CheckRange(Call& call, const char* name, int position, int32_t value, int32_t first,
                int32_t last) {
  return (value >= first && value <= last) || call.ValueError(name, position);
}

bool ReadKeyGroup(Call& call, ROCParam*& param, int32_t& value) {
  if (!ReadValue(call, "KeyGroupIndex", true, param, value)) return false;
  const int32_t count = call.program.program->KeyGroupCount();
  return value < count || call.KeygroupRange(value, count);
}

bool ReadAlgo(Call& call, const char* name, Presence presence, NullObject null, ROCParam*& param,
              ROCParam& value) {
  const int position = call.position;
  if (!ReadTyped(call, name, kTypeObject, presence == Presence::kRequired, param)) return false;
  if (param == nullptr) return true;
  value = *param;
  const RIOObject* object = param->Object();
  if (object == nullptr) return null == NullObject::kAllowed || call.ValueError(name, position);
  return object->isROCAlgo() || call.ClassError(*object, "ROCAlgo", position);
}

bool SampleOf(Call& call, const char* name, NullObject null, const ROCParam& param,
              CSample*& sample) {
  const int position = call.position - 1;
  RIOObject* object = param.Object();
  if (object == nullptr) return null == NullObject::kAllowed || call.ValueError(name, position);
  if (!object->isCSample()) return call.ClassError(*object, "CSample", position);
  sample = static_cast<CSample*>(object);
  return true;
}

}  // namespace argument

bool OneKeyGroup::Read(Call& call, OneKeyGroup& self) {
  if (!argument::ReadValue(call, "KeyGroupIndex", true, self.param, self.value)) return false;
  const int32_t count = call.program.program->KeyGroupCount();
  return (*self >= 0 && *self < count) || call.KeygroupRange(*self, count);
}

bool OneZone::Read(Call& call, OneZone& self) {
  if (!argument::ReadValue(call, "ZoneIndex", true, self.param, self.value)) return false;
  return (*self >= 0 && *self < kZones) || call.ZoneRange(*self, kZones);
}

bool PadArg::Read(Call& call, PadArg& self) {
  const int position = call.position;
  ROCParam* param = nullptr;
  if (!argument::ReadTyped(call, "Pad", kTypeObject, true, param)) return false;
  RIOObject* pad = param->Object();
  if (pad == nullptr) return call.ValueError("Pad", position);
  if (!pad->isRODPad()) return call.ClassError(*pad, "RODPad", position);
  self.object = static_cast<RODPad*>(pad);
  return true;
}

bool SampleArg::Read(Call& call, SampleArg& self) {
  const int position = call.position;
  ROCParam* param = nullptr;
  if (!argument::ReadTyped(call, "Sample", kTypeObject, true, param) ||
      !argument::SampleOf(call, "Sample", NullObject::kRefused, *param, self.object)) {
    return false;
  }
  if (self.object->sample != nullptr) return true;
  call.program.ReleaseSampleObject(self.object);
  return call.ValueError("Sample", position);
}
