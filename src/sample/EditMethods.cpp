#include "sample/EditMethods.h"

#include "frame/SampleRecords.h"
#include "host/qx.h"
#include "sample/SampleAccess.h"
#include "sample/SampleEdit.h"
#include "sample/ValueRanges.h"

namespace {

// Stores a new play position without clamping it. A different one dirties program and record.
int32_t PlayPosition(ZylSProgram& object, const SampleArg& sample, int32_t SampleParameters::*field,
                     const Opt<int32_t, "NewValue">& newValue) {
  SampleParameters& parameters = sample->shared();
  const int32_t before = parameters.*field;
  if (newValue) {
    if (*newValue != before) MarkDirty(object, sample.Record());
    parameters.*field = *newValue;
    sample->updateChannels();
  }
  return before;
}

// Clamps the range and edits it in every channel that an edit of the sample changes.
template <class Edit>
void EditRange(const SampleArg& sample, int32_t start, int32_t end, Edit edit) {
  if (zyl::ClampRange(sample->shared().frameCount, start, end)) {
    for (const zyl::ValueBuffer& channel : WritableChannels(*sample.Record())) {
      edit(channel, start, end);
    }
  }
  sample->shared().dirty = true;
}

}  // namespace

bool SampleCreate(ZylSProgram& object, LoadedProgram program, OneKeyGroup keygroup, OneZone zone,
                  Arg<std::string, "Extension"> extension,
                  OptInRange<"Channels", 1, kMaxChannels> channels) {
  const int type = getTypeFromExtension(extension.Text());
  if (type != 0) {
    zyl::SampleUse record(newSample());
    record->create(type, channels.ValueOr(1));
    record->shared().dirty = true;
    program->setSample(record.release(), *keygroup, *zone);
  }
  object.dirty = true;
  return type != 0;
}

int32_t SampleGetSize(ZylSProgram&, SampleArg sample) { return sample->shared().frameCount; }

int32_t SampleGetBuffer(ZylSProgram&, SampleArg sample, VarArg<int32_t, "Buffer"> buffer,
                        Opt<int32_t, "Channel"> channel) {
  int wanted = -1;  // the record's channel
  if (channel && *channel != sample->channel) {
    wanted = *channel;
    if (wanted < 0 || wanted >= sample->getChannelCount()) {
      buffer.param->SetInt(0);
      return 0;
    }
  }
  buffer.param->SetInt(sample->getBufferAdr(wanted));
  return sample->shared().frameCount;
}

std::optional<int32_t> SampleSize(Call& call, SampleArg sample, Opt<int32_t, "NewSize"> newSize) {
  if (newSize && !IsPossibleSize(*sample.Record(), *newSize)) return newSize.Reject(call);
  const int32_t before = sample->shared().frameCount;
  if (newSize) ResizeSample(*sample.Record(), *newSize);
  return before;
}

int32_t SampleStart(ZylSProgram& object, SampleArg sample, Opt<int32_t, "NewValue"> newValue) {
  return PlayPosition(object, sample, &SampleParameters::start, newValue);
}

int32_t SampleEnd(ZylSProgram& object, SampleArg sample, Opt<int32_t, "NewValue"> newValue) {
  const int32_t before = PlayPosition(object, sample, &SampleParameters::end, newValue);
  if (newValue) sample->shared().dirty = true;
  return before;
}

std::optional<int32_t> SampleBits(Call& call, SampleArg sample, Opt<int32_t, "NewValue"> newValue) {
  const int32_t before = sample->shared().bits;
  if (newValue && *newValue != before) {
    const auto bits = static_cast<uint16_t>(*newValue);
    if (bits < 1 || bits > 32) return newValue.Reject(call);
    sample->setBitsPerSample(bits);
    MarkDirty(call.program, sample.Record());
  }
  return before;
}

std::optional<int32_t> SampleChannelCount(Call& call, SampleArg sample,
                                          Opt<int32_t, "NewValue"> newValue) {
  const int32_t before = sample->getChannelCount();
  // Refused when out of range or when it would remove a channel in use.
  if (newValue && !sample->setChannelCount(*newValue)) return newValue.Reject(call);
  return before;
}

int32_t ChannelOfObject(ZylSProgram&, SampleArg sample, Opt<int32_t, "NewValue"> newValue) {
  const int32_t before = sample->channel;
  if (newValue) sample->setChannel(*newValue);
  return before;
}

int32_t ChannelOfZone(ZylSProgram& object, LoadedProgram program, OneKeyGroup keygroup,
                      OneZone zone, Opt<int32_t, "NewValue"> newValue) {
  const genericSample* record = ZoneSample(program, keygroup, zone);
  if (record == nullptr) return -1;
  const int32_t before = record->channel;
  if (newValue && program->setSampleChannel(*keygroup, *zone, *newValue)) {
    object.PurgeSampleObjects();
  }
  return before;
}

int32_t SampleValue(ZylSProgram& object, SampleArg sample, Arg<int32_t, "Index"> index,
                    Opt<int32_t, "NewValue"> newValue) {
  int32_t position = *index;
  int32_t before = 0;
  const bool found = zyl::ClampIndex(sample->shared().frameCount, position);
  if (found) before = zyl::GetValue(ReadableValues(*sample.Record()), position);
  if (newValue) {
    if (found) {
      for (const zyl::ValueBuffer& channel : WritableChannels(*sample.Record())) {
        zyl::SetValue(channel, position, *newValue);
      }
    }
    MarkDirty(object, sample.Record());
  }
  return before;
}

void SampleSetValues(ZylSProgram&, SampleArg sample, StartIndexArg start, EndIndexArg end,
                     Arg<int32_t, "Value"> value) {
  EditRange(sample, *start, *end, [&](const zyl::ValueBuffer& values, int32_t s, int32_t e) {
    zyl::SetValues(values, s, e, *value);
  });
}

void SampleMultiplyValues(ZylSProgram&, SampleArg sample, StartIndexArg start, EndIndexArg end,
                          Arg<double, "Value"> factor) {
  EditRange(sample, *start, *end, [&](const zyl::ValueBuffer& values, int32_t s, int32_t e) {
    zyl::MultiplyValues(values, s, e, *factor);
  });
}

void SampleOffsetValues(ZylSProgram&, SampleArg sample, StartIndexArg start, EndIndexArg end,
                        Arg<int32_t, "Value"> offset) {
  EditRange(sample, *start, *end, [&](const zyl::ValueBuffer& values, int32_t s, int32_t e) {
    zyl::OffsetValues(values, s, e, *offset);
  });
}

void SampleReverseValues(ZylSProgram&, SampleArg sample, StartIndexArg start, EndIndexArg end) {
  EditRange(sample, *start, *end, [&](const zyl::ValueBuffer& values, int32_t s, int32_t e) {
    zyl::ReverseValues(values, s, e);
  });
}

bool SampleExtract(ZylSProgram& object, SampleArg sample, StartIndexArg start, EndIndexArg end) {
  const bool done = ExtractRange(*sample.Record(), *start, *end);
  MarkDirty(object, sample.Record());
  return done;
}

bool SampleDelete(ZylSProgram& object, SampleArg sample, StartIndexArg start, EndIndexArg end) {
  const bool done = DeleteRange(*sample.Record(), *start, *end);
  MarkDirty(object, sample.Record());
  return done;
}

bool SampleCopyTo(ZylSProgram&, SampleArg sample, OtherSample<"CopyToSample"> other,
                  Opt<int32_t, "InsertIndex"> index) {
  return InsertSample(*sample.Record(), other.Record(), index.ValueOr(0));
}

bool SampleCopyFrom(ZylSProgram&, SampleArg sample, OtherSample<"CopyFromSample"> other,
                    Opt<int32_t, "StartIndex"> start, Opt<int32_t, "EndIndex"> end) {
  return CopyRangeFrom(*sample.Record(), other.Record(), start.ValueOr(0), end.ValueOr(0));
}
