// A checksum of everything that a call through one program object could change: the object's
// fields, its record's bytes, paths and table, and its samples' parameters and sound.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <string_view>

#include "frame/ZylSProgram.h"
#include "host/akai.h"

namespace zyl::test {

class ProgramSnapshot {
 public:
  // kAddresses distinguishes equal records at different addresses. kCounts instead includes the
  // counts of uses, locks and list entries, and is comparable between equal programs.
  enum Identity { kAddresses, kCounts };

  explicit ProgramSnapshot(const ZylSProgram& object, Identity identity = kAddresses)
      : identity_(identity) {
    AddReference("the object", object.program);
    if (identity_ == kCounts) AddLists(object);
    for (const int32_t field :
         {static_cast<int32_t>(object.dirty), static_cast<int32_t>(object.enableRegisterCall),
          object.maxIndyOut, object.midiChannel, object.minPeriod, object.maxPeriod,
          object.smoothLength, object.findPitchLen}) {
      Add("the object", &field, sizeof field);
    }
    Add("the object", &object.rmsThres, sizeof object.rmsThres);
    if (object.program != nullptr) AddRecord(*object.program);
  }

  // Describes the difference; empty if there is none.
  std::string DifferenceFrom(const ProgramSnapshot& other) const {
    for (size_t i = 0; i < parts_.size(); ++i) {
      if (parts_[i].count != other.parts_[i].count || parts_[i].sum != other.parts_[i].sum) {
        return parts_[i].name;
      }
    }
    return {};
  }

 private:
  // The checksum of one part.
  struct Part {
    const char* name = "";
    uint64_t count = 0;
    uint64_t sum = 0;
  };

  void Add(const char* name, const void* bytes, size_t count) {
    size_t i = 0;
    while (parts_[i].name[0] != '\0' && std::string_view(parts_[i].name) != name) ++i;
    Part& part = parts_[i];
    part.name = name;
    part.count += count;
    const auto* from = static_cast<const std::byte*>(bytes);
    for (; count >= 8; count -= 8, from += 8) Mix(part, from, 8);
    if (count > 0) Mix(part, from, count);
  }
  static void Mix(Part& part, const std::byte* from, size_t count) {
    uint64_t word = 0;
    std::memcpy(&word, from, count);
    part.sum = (part.sum ^ word) * 0x9E3779B97F4A7C15u;
    part.sum ^= part.sum >> 29;
  }
  void AddText(const char* name, std::string_view text) { Add(name, text.data(), text.size()); }
  void AddNumbers(const char* name, std::initializer_list<int64_t> numbers) {
    for (const int64_t number : numbers) Add(name, &number, sizeof number);
  }
  void AddReference(const char* name, const void* address) {
    const int64_t identity =
        identity_ == kAddresses ? reinterpret_cast<intptr_t>(address) : address != nullptr;
    AddNumbers(name, {identity});
  }

  void AddLists(const ZylSProgram& object) {
    AddNumbers("the lists", {object.registeredModules.Count(), object.sampleObjects.Count()});
    for (auto* node = object.sampleObjects.Head(); node != nullptr; node = node->next) {
      AddNumbers("the sample objects", {node->item->refCount, node->item->locked});
      if (node->item->sample != nullptr) AddSample(*node->item->sample);
    }
  }

  void AddRecord(const akaiProgram& record) {
    Add("the header", static_cast<const akaiProgramHdrImage*>(&record),
        sizeof(akaiProgramHdrImage));
    const int count = record.AllocatedKeyGroups();
    Add("the count", &count, sizeof count);
    const auto keygroups = static_cast<size_t>(count);
    Add("the keygroups", record.keyGroupArray, keygroups * sizeof(akaiKeyGroup));
    for (size_t i = 0; i < kZones * keygroups; ++i) {
      AddReference("the sample table", record.sampleTable[i]);
    }
    if (record.tolmoChunk != nullptr) {
      Add("the organ chunk", record.tolmoChunk.get(), sizeof(TolmoChunk));
    }
    AddText("the file name", record.GetFileName());
    const genericSample* last = nullptr;
    for (int k = 0; k < count; ++k) {
      const vendlKeyGroup& extension = record.keyGroupExtensions[k];
      Add("the extensions", static_cast<const vendlKeyGroupImage*>(&extension),
          sizeof(vendlKeyGroupImage));
      Add("the channels", extension.pathChannel, sizeof extension.pathChannel);
      for (int z = 0; z < kZones; ++z) {
        const char* path = extension.SamplePath(z);
        AddText("the paths", path == nullptr ? "" : path);
        const genericSample* sample = record.sampleTable[kZones * k + z];
        if (sample != nullptr && sample != last) AddSample(*sample);
        last = sample;
      }
    }
  }

  void AddSample(const genericSample& sample) {
    constexpr size_t kMostBytes = 2048;  // of a channel's sound
    const SampleParameters& p = sample.shared();
    AddNumbers(
        "a sample's parameters",
        {p.dirty, p.sampleRate, p.bits, p.key, p.tune, p.playbackType, p.frameCount,
         p.holdLoopTuneOff, p.start, p.end, p.loopCount, sample.channel, sample.getChannelCount()});
    if (identity_ == kCounts) {
      AddNumbers("a sample's uses and locks",
                 {sample.useCount, sample.lockValue, sample.memLocked, sample.copyCount});
    }
    Add("a sample's loops", p.loops, sizeof p.loops);
    AddText("a sample's name", sample.name == nullptr ? "" : sample.name);
    AddText("a sample's path", sample.filePath == nullptr ? "" : sample.filePath);
    for (int c = 0; c < sample.getChannelCount(); ++c) {
      const std::byte* sound = sample.getChannelBuffer(c);
      const size_t bytes =
          static_cast<size_t>(p.frameCount) * static_cast<size_t>(sample.getChannelBytesPS(-1));
      if (sound != nullptr) Add("a sample's sound", sound, std::min(bytes, kMostBytes));
    }
  }

  const Identity identity_;
  std::array<Part, 24> parts_;
};

}  // namespace zyl::test
