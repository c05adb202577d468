// A fixture with samples to edit through script methods, and helpers that read the results.
#pragma once

#include <string>
#include <vector>

#include "host/SoundOracle.h"
#include "support/ScriptSurface.h"

namespace zyl::test {

// Value `i % 100` at position i, negated in the second channel.
inline std::vector<Values> Counting(int positions, int channels) {
  std::vector<Values> made(static_cast<size_t>(channels));
  for (int i = 0; i < positions; ++i) {
    for (size_t c = 0; c < made.size(); ++c) made[c].push_back(c % 2 == 0 ? i % 100 : -(i % 100));
  }
  return made;
}

class EditTest : public ProgramTest {
 protected:
  void SetUp() override {
    ModuleTest::SetUp();
    program.Make();
  }
  void TearDown() override {
    program("DeleteTempSample");
    program.Delete();
    ModuleTest::TearDown();
  }

  RIOObject* Whole(const std::string& path) const {
    return program("ReadTempSample", path, -1).Object();
  }
  // Creates a file and assigns its first two channels to zones 0 and 1. Nothing is dirty
  // afterwards.
  void Open(int bits, const std::vector<Values>& channels) {
    program("DeleteTempSample");
    path = Path("sample" + std::to_string(++made_) + ".wav");
    StoreSound(path, SF_FORMAT_WAV, bits, channels);
    for (int c = 0; c < static_cast<int>(channels.size()) && c < 2; ++c) {
      program("ZoneSampleSet", 0, c, path);
      program("SampleChannel", 0, c, c);
    }
    first = program("SampleGet", 0, 0).Object();
    second = channels.size() > 1 ? program("SampleGet", 0, 1).Object() : nullptr;
    whole = Whole(path);
    Clean();
  }
  // The object of one channel, or of the whole sample for -1.
  RIOObject* Target(int channel) const {
    return channel == 0 ? first : channel == 1 ? second : whole;
  }
  void Clean() const {
    program("Dirty", false);
    for (int zone = 0; zone < 4; ++zone) program("SampleDirty", 0, zone, false);
  }
  // "P" if the program object is dirty, "R" if the record of the first zone is. Clears all flags.
  std::string TakeDirtyFlags() const {
    const bool record = program("SampleDirty", 0, 0).Bool();
    for (int zone = 0; zone < 4; ++zone) program("SampleDirty", 0, zone, false);
    const bool object = program("Dirty").Bool();  // counts the records of its zones too
    Clean();
    return std::string(object ? "P" : "") + (record ? "R" : "");
  }

  int Get(RIOObject* sample, const char* method) const { return program(method, sample).Int(); }
  int Handle(RIOObject* sample, int channel, int& positions) const {
    const ROCParamPtr buffer(newROCParam(-1));
    positions = program("SampleGetBuffer", sample, buffer.get(), channel).Int();
    return buffer->Int();
  }
  // The values in a channel's buffer.
  Values Read(RIOObject* sample, int channel) const {
    int positions = 0;
    const int handle = Handle(sample, channel, positions);
    const auto width = static_cast<size_t>(Get(sample, "SampleBits") + 7) / 8;
    std::string bytes, reason;
    if (positions > 0) {
      EXPECT_TRUE(qxBufferBytes(static_cast<uint32_t>(handle),
                                static_cast<size_t>(positions) * width, bytes, reason))
          << reason;
    }
    Values values;
    for (size_t at = 0; at + width <= bytes.size(); at += width) {
      uint32_t value = 0;
      for (size_t b = 0; b < width; ++b) {
        value |= uint32_t{static_cast<uint8_t>(bytes[at + b])} << (8 * (4 - width + b));
      }
      values.push_back(static_cast<int>(value) >> (8 * (4 - width)));
    }
    return values;
  }
  std::vector<Values> ReadAll(RIOObject* sample) const {
    std::vector<Values> all;
    for (int c = 0; c < Get(sample, "SampleChannelCount"); ++c) all.push_back(Read(sample, c));
    return all;
  }
  // Start and end, followed by start and end of each loop.
  Values Points(RIOObject* sample) const {
    Values points{Get(sample, "SampleStart"), Get(sample, "SampleEnd")};
    for (int i = 0; i < Get(sample, "SampleLoopCount"); ++i) {
      points.push_back(program("SampleLoopStart", sample, i).Int());
      points.push_back(program("SampleLoopEnd", sample, i).Int());
    }
    return points;
  }
  void SetPoints(RIOObject* sample, const Values& points) const {
    program("SampleStart", sample, points[0]);
    program("SampleEnd", sample, points[1]);
    program("SampleLoopCount", sample, static_cast<int>(points.size()) / 2 - 1);
    for (size_t i = 2; i < points.size(); i += 2) {
      const int loop = static_cast<int>(i) / 2 - 1;
      program("SampleLoopStart", sample, loop, points[i]);
      program("SampleLoopEnd", sample, loop, points[i + 1]);
    }
  }

  std::string path;
  RIOObject* first = nullptr;
  RIOObject* second = nullptr;
  RIOObject* whole = nullptr;

 private:
  int made_ = 0;
};

}  // namespace zyl::test
