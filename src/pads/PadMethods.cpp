#include "pads/PadMethods.h"

#include <climits>
#include <cstring>
#include <list>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include "pads/PadSlots.h"
#include "pads/WaveImage.h"
#include "params/ByNumber.h"

namespace {

PadBytes BytesOf(ROCParam& data) { return {data.Data(), static_cast<size_t>(data.GetSize())}; }

void SetBytes(ROCParam& data, const std::vector<std::byte>& bytes) {
  if (bytes.size() > INT_MAX) throw std::length_error("too many bytes for a pad");
  data.SetData(bytes.data(), static_cast<int>(bytes.size()));
}

}  // namespace

bool ParamWord::Read(Call& call, ParamWord& self) {
  const ROCParam* param = call.Argument(call.position++);
  if (param == nullptr) return true;
  uint64_t word = 0;
  if (param->Type() == kTypeInteger) {
    word = static_cast<uint32_t>(param->Int());
  } else if (param->Type() == kTypeBool) {
    word = param->Bool() ? 1 : 0;
  } else if (param->Type() == kTypeDouble) {
    const double value = param->Double();
    std::memcpy(&word, &value, sizeof word);
  }
  self.number = static_cast<uint16_t>(word);
  return true;
}

void WriteDataToPad(ZylSProgram& object, LoadedProgram, PadArg pad, Arg<int32_t, "SlotID"> slotId,
                    Repeated<ParamWord> numbers) {
  std::vector<zyl::PadEntry> entries;
  const auto words = std::move(numbers.groups);
  entries.reserve(words.size());
  for (const auto& [word] : words) {
    if (!word.number) continue;
    ROCParam number(int32_t{*word.number});
    const int32_t value = ProgramParamValue(object, &number, nullptr);
    entries.push_back({*word.number, static_cast<int16_t>(value)});
  }
  const auto id = static_cast<uint32_t>(*slotId);
  const std::vector<std::byte> slot = zyl::MakePadSlot(id, entries);
  ROCParam& data = *pad->DataValue();
  const PadBytes buffer = BytesOf(data);
  const PadBytes old = zyl::PadSlot(id, buffer);
  if (old.size() == slot.size()) {
    std::memcpy(data.Data() + (old.data() - buffer.data()), slot.data(), slot.size());
    return;
  }
  // A slot whose size changes moves to the end.
  std::vector<std::byte> rebuilt = zyl::WithoutPadSlot(buffer, old, slot.size());
  rebuilt.insert(rebuilt.end(), slot.begin(), slot.end());
  SetBytes(data, rebuilt);
}

void ReadDataFromPad(ZylSProgram& object, LoadedProgram program, PadArg pad,
                     Arg<int32_t, "SlotID"> slotId) {
  const PadBytes slot = zyl::PadSlot(static_cast<uint32_t>(*slotId), BytesOf(*pad->DataValue()));
  // Prepare all changes before applying the first one: if memory is short, nothing changes. A
  // notified module may write or delete the pad, or detach the program, which ends the transfer.
  std::list<ProgramChange> changes;
  for (const zyl::PadEntry& entry : zyl::EntriesOfPadSlot(slot)) {
    const ROCParamPtr number(newROCParam(int32_t{entry.number}));
    const ROCParamPtr value(newROCParam(int32_t{entry.value}));
    changes.emplace_back(object, number.get(), value.get());
  }
  for (ProgramChange& change : changes) {
    if (!program.IsAttachedTo(object)) return;
    change.Apply();
  }
}

void EmptyPadData(ZylSProgram&, PadArg pad) { pad->DataValue()->SetSize(0); }

void RemoveDataFromPad(ZylSProgram&, LoadedProgram, PadArg pad, Arg<int32_t, "SlotID"> slotId) {
  ROCParam& data = *pad->DataValue();
  const PadBytes buffer = BytesOf(data);
  const PadBytes slot = zyl::PadSlot(static_cast<uint32_t>(*slotId), buffer);
  if (!slot.empty()) SetBytes(data, zyl::WithoutPadSlot(buffer, slot));
}

void WriteSampleToPad(Call& call, PadArg pad, SampleArg sample) {
  zyl::WaveImage image = zyl::ImageOfSample(*sample.Record());
  if (image.length == 0) {
    call.Failure("%s: The sample can not be written into a pad!");
    return;
  }
  pad->DataValue()->TakeData(std::move(image.bytes), image.length);
}

CSample* ReadSampleFromPad(ZylSProgram&, PadArg pad, OptPath<"Path"> path) {
  zyl::SampleUse record = zyl::SampleOfImage(BytesOf(*pad->DataValue()));
  if (record == nullptr) return nullptr;
  if (path) record->setFilePath(path.Text());
  auto created = std::make_unique<CSample>(nullptr, std::move(record));
  TempSamples().AddIfAbsent(created.get());
  return created.release();
}
