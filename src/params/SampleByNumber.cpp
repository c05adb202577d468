// The parameters of a zone's sample by number: a row for each number, with the functions that read
// and store its value.
#include <algorithm>
#include <iterator>
#include <utility>

#include "frame/ChangeNotice.h"
#include "frame/SampleRecords.h"
#include "params/ByNumber.h"
#include "params/ParameterNumbers.h"
#include "params/ParameterTable.h"
#include "params/ParameterTexts.h"
#include "pitch/PitchJobManager.h"

namespace {

// A zone and its current sample.
class SampleZone {
 public:
  SampleZone(ZylSProgram& object, int keygroup, int zone)
      : object(object), program_(LoadedProgram::Of(object)), keygroup_(keygroup), zone_(zone) {}

  // Null if the zone has no sample, or if a called script has removed the zone or the program.
  genericSample* Sample() const {
    const bool exists = program_.IsAttachedTo(object) && keygroup_ < program_->KeyGroupCount();
    return exists ? program_->sampleTable[kZones * keygroup_ + zone_] : nullptr;
  }

  void Reattach(int32_t channel) {
    if (program_->setSampleChannel(keygroup_, zone_, channel)) object.PurgeSampleObjects();
  }

  // Notifies the modules before the sound data or the pitch track of the sample changes.
  void NotifyDeleting(const genericSample& sample) {
    if (CSample* listed = object.sampleObjects.FindBySample(&sample)) listed->NotifyDeleting();
  }
  void SetBits(genericSample& sample, int32_t bits) {
    const zyl::SampleUse keepAlive = zyl::AddUse(&sample);
    NotifyDeleting(sample);
    sample.setBitsPerSample(bits);
  }

  ZylSProgram& object;

 private:
  LoadedProgram program_;
  int keygroup_;
  int zone_;
};

int32_t BytesPerValue(const genericSample& sample) { return (sample.shared().bits + 7) / 8; }

// Clamps a start position to the range 0 to `last`; a position after a negative `last` becomes
// `last`.
int32_t ClampStart(int32_t position, int32_t last) {
  return position > last ? last : std::max(position, 0);
}
// Clamps an end position to the range `first` to the last frame; a position before `first` becomes
// `first`, even if that is after the last frame.
int32_t ClampEnd(int32_t position, int32_t first, int32_t frameCount) {
  if (position < first) return first;
  return position >= frameCount ? frameCount - 1 : position;
}

template <auto kField>
int32_t Read(const genericSample& sample) {
  return static_cast<int32_t>(sample.shared().*kField);
}
template <auto kField>
int32_t ReadLoop(const genericSample& sample) {
  const SampleParameters& parameters = sample.shared();
  return parameters.loopCount > 0 ? static_cast<int32_t>(parameters.loops[0].*kField) : 0;
}

template <auto kField>
void WriteByte(SampleZone&, genericSample& sample, int32_t value) {
  sample.shared().*kField = static_cast<uint8_t>(value);
}

void WriteLoopStart(SampleZone&, genericSample& sample, int32_t value) {
  SampleParameters& parameters = sample.shared();
  parameters.loopCount = std::max(parameters.loopCount, 1u);
  genericLoop& loop = parameters.loops[0];
  loop.loopStart = ClampStart(value, loop.loopEnd);
}
void WriteLoopEnd(SampleZone&, genericSample& sample, int32_t value) {
  SampleParameters& parameters = sample.shared();
  if (value > parameters.start) parameters.loopCount = std::max(parameters.loopCount, 1u);
  genericLoop& loop = parameters.loops[0];
  loop.loopEnd = ClampEnd(value, loop.loopStart, parameters.frameCount);
}

// The value to store for a new value; also written to the caller's variable.
int32_t ValueToStore(int32_t number, int32_t value) {
  return number == number::kBytesPerValue ? std::clamp(value, 1, 4) : value;
}
void WriteBytesPerValue(SampleZone& zone, genericSample& sample, int32_t value) {
  zone.SetBits(sample, 8 * value);
}

void WritePitchData(SampleZone& zone, genericSample& sample, int32_t value) {
  const ScreenCursor busy(9);
  const zyl::SampleUse keepAlive = zyl::AddUse(&sample);
  zone.NotifyDeleting(sample);
  if (value == 0) {
    sample.clearPitchData();
    return;
  }
  const ZylSProgram& object = zone.object;
  PitchJobs().StartSampleJob(&sample, {object.minPeriod, object.maxPeriod, object.smoothLength,
                                       object.findPitchLen, object.rmsThres});
}

struct SampleRow {
  int32_t (*read)(const genericSample& sample);  // null: no value
  void (*write)(SampleZone& zone, genericSample& sample, int32_t value);
};

using P = SampleParameters;
using L = genericLoop;
constexpr SampleRow kNoRow = {nullptr, nullptr};

// Indexed by the number minus kFirstSample.
constexpr SampleRow kRows[] = {
    {Read<&P::key>, WriteByte<&P::key>},
    {Read<&P::playbackType>, WriteByte<&P::playbackType>},
    {ReadLoop<&L::loopStart>, WriteLoopStart},
    {ReadLoop<&L::loopEnd>, WriteLoopEnd},
    {Read<&P::holdLoopTuneOff>,
     [](SampleZone&, genericSample& sample, int32_t value) {
       sample.shared().holdLoopTuneOff = static_cast<int8_t>(value);
     }},
    {Read<&P::tune>, [](SampleZone&, genericSample& sample,
                        int32_t value) { sample.shared().tune = static_cast<int16_t>(value); }},
    {[](const genericSample& sample) { return sample.channel; },
     [](SampleZone& zone, genericSample&, int32_t value) { zone.Reattach(value); }},
    kNoRow,  // the file's name
    {ReadLoop<&L::loopFineLen>,
     [](SampleZone&, genericSample& sample, int32_t value) {
       sample.shared().loops[0].loopFineLen = static_cast<uint32_t>(value);
     }},
    {Read<&P::start>,
     [](SampleZone&, genericSample& sample, int32_t value) {
       sample.shared().start = ClampStart(value, sample.shared().end);
     }},
    {Read<&P::end>,
     [](SampleZone&, genericSample& sample, int32_t value) {
       P& parameters = sample.shared();
       parameters.end = ClampEnd(value, parameters.start, parameters.frameCount);
     }},
    {Read<&P::sampleRate>,
     [](SampleZone&, genericSample& sample, int32_t value) { sample.shared().sampleRate = value; }},
    kNoRow,  // the file's path
    {Read<&P::bits>, [](SampleZone& zone, genericSample& sample,
                        int32_t value) { zone.SetBits(sample, static_cast<uint16_t>(value)); }},
    {BytesPerValue, WriteBytesPerValue},
    {[](const genericSample& sample) -> int32_t { return sample.hasPitchData(); }, WritePitchData},
};

std::string PlaybackText(const SampleZone& zone, genericSample& sample, TypedText typed) {
  SampleParameters& parameters = sample.shared();
  const int32_t before = parameters.playbackType;
  if (typed != nullptr) {
    parameters.playbackType = std::max(ValueFromText(text_form::kPlaybackType, *typed) - 1, 0);
    sample.updateChannels();
    if (parameters.playbackType != before) MarkDirty(zone.object, zone.Sample());
  }
  return before == INT32_MAX ? "" : ValueText(text_form::kPlaybackType, before + 1);
}

std::string ChannelName(SampleZone& zone, const genericSample& sample, TypedText typed) {
  const int32_t before = sample.channel;
  const int32_t channels = sample.getChannelCount();
  if (typed != nullptr) {
    zone.Reattach(TypedChannel(*typed, channels, before));
    const genericSample* now = zone.Sample();
    if (now != nullptr && now->channel != before) MarkDirty(zone.object, zone.Sample());
  }
  return std::string(ChannelText(before, channels));
}

std::string FileNameText(const genericSample& sample) {
  std::string text = sample.filePath == nullptr ? "" : FileString(sample.filePath).FileName();
  if (sample.copyCount >= 2) text += " (" + std::to_string(sample.copyCount) + ")";
  return text;
}

// The width in bits and the width in bytes are both shown and typed in bits.
std::string BitsText(SampleZone& zone, genericSample& sample, int32_t number, TypedText typed) {
  const zyl::SampleUse keepAlive = zyl::AddUse(&sample);
  std::string text = std::to_string(sample.shared().bits);
  if (typed == nullptr) return text;
  int32_t bits = DecimalValue(typed->Str());
  if (number == number::kBytesPerValue) {
    bits = 8 * static_cast<int32_t>(std::clamp((int64_t{bits} + 7) / 8, int64_t{1}, int64_t{4}));
  } else if (bits <= 0) {
    return text;
  }
  // Created first, since nothing may fail after the change. Short texts don't allocate.
  ROCParam shown{std::string_view()};
  zone.SetBits(sample, bits);
  shown.SetStr(std::to_string(sample.shared().bits));
  *typed = std::move(shown);
  return text;
}

}  // namespace

int32_t SampleParamValue(ZylSProgram& object, int32_t number, int keygroup, int zone,
                         ROCParam* newValue) {
  SampleZone place(object, keygroup, zone);
  genericSample* sample = place.Sample();
  const int64_t at = int64_t{number} - number::kFirstSample;
  if (sample == nullptr || at < 0 || at >= std::ssize(kRows)) return -1;
  const SampleRow& row = kRows[at];
  if (row.read == nullptr) return -1;
  const int32_t value = row.read(*sample);
  if (newValue != nullptr) {
    const int32_t stored = ValueToStore(number, newValue->Int());
    row.write(place, *sample, stored);
    // After the step that may throw, and only if clamped: a callback may have set the variable.
    if (number == number::kBytesPerValue) newValue->SetInt(stored);
  }
  return value;
}

int32_t SampleIntValue(ZylSProgram& object, LoadedProgram, OneKeyGroup keygroup, OneZone zone,
                       Arg<int32_t, "Index"> number, OptVar<int32_t, "NewValue"> newValue) {
  const SampleZone place(object, *keygroup, *zone);
  std::optional<ChangeNotice> notice;
  if (newValue) {
    notice.emplace(object, number.param, newValue.param, keygroup.param, zone.param);
  }
  const int32_t value = SampleParamValue(object, *number, *keygroup, *zone, newValue.param);
  genericSample* sample = place.Sample();
  if (newValue && ValueToStore(*number, *newValue) != value && sample != nullptr) {
    MarkDirty(object, sample);
    sample->updateChannels();
    notice->Send();
  }
  return value;
}

std::string SampleParamText(ZylSProgram& object, int32_t number, int keygroup, int zone,
                            TypedText newText) {
  SampleZone place(object, keygroup, zone);
  genericSample* sample = place.Sample();
  if (sample == nullptr) return {};
  switch (number) {
    case number::kPlaybackType:
      return PlaybackText(place, *sample, newText);
    case number::kChannel:
      return ChannelName(place, *sample, newText);
    case number::kFileName:
      return FileNameText(*sample);
    case number::kFilePath:
      return sample->filePath == nullptr ? "" : sample->filePath;
    case number::kBits:
    case number::kBytesPerValue:
      return BitsText(place, *sample, number, newText);
    default:
      return {};
  }
}

std::string SampleStringValue(ZylSProgram& object, LoadedProgram, OneKeyGroup keygroup,
                              OneZone zone, Arg<int32_t, "Index"> number,
                              OptVar<std::string, "NewString"> newText) {
  return SampleParamText(object, *number, *keygroup, *zone, newText.param);
}
