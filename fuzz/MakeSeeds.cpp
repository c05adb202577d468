// Writes the seeds of the fuzzers: small files of each format from the project's writers, and a few
// hand-made ones with content that these never write. make-seeds FOLDER
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "akai.h"
#include "byteOrder.h"
#include "hostapp.h"
#include "riff.h"

namespace {

namespace fs = std::filesystem;
using zyl::ByteOrder;
using zyl::Bytes;
using zyl::FieldWriter;

fs::path corpus;

std::string Place(const std::string& harness, const std::string& name) {
  fs::create_directories(corpus / harness);
  return (corpus / harness / name).string();
}

void Store(const std::string& harness, const std::string& name, const Bytes& bytes) {
  std::ofstream(Place(harness, name), std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
}

struct Part {
  const char* id;
  Bytes data;
};

Bytes Form(const char* form, const char* type, const std::vector<Part>& parts) {
  const ByteOrder order = std::string(form) == "FORM" ? ByteOrder::kBig : ByteOrder::kLittle;
  FieldWriter body(order);
  body.Text(type);
  for (const Part& part : parts) {
    body.Text(part.id).U32(static_cast<uint32_t>(part.data.size()));
    body.Raw(part.data.data(), part.data.size());
    if (part.data.size() % 2 != 0) body.U8(0);
  }
  FieldWriter file(order);
  file.Text(form).U32(static_cast<uint32_t>(body.block.size()));
  file.Raw(body.block.data(), body.block.size());
  return file.block;
}

FieldWriter Little() { return FieldWriter(ByteOrder::kLittle); }
FieldWriter Big() { return FieldWriter(ByteOrder::kBig); }

// ---- Samples from the project's writers ----

struct Kind {
  const char* name;
  int channels;
  unsigned bytesPerValue;
  int loops;
  int playbackType;
  const char* title;
};

constexpr Kind kKinds[] = {{"mono16", 1, 2, 0, 2, ""},
                           {"stereo16-loop", 2, 2, 1, 0, "a title"},
                           {"mono8-loops", 1, 1, 3, 1, ""},
                           {"stereo24-own", 2, 3, 2, 3, "odd"},
                           {"mono32-sixteen", 1, 4, 16, 0, ""}};

void StoreSample(const Kind& kind, BasicSample& sample, const std::string& path) {
  constexpr unsigned kFrames = 12;
  std::vector<Bytes> sound(static_cast<size_t>(kind.channels));
  sample.SetChannelCount(static_cast<unsigned>(kind.channels));
  for (unsigned c = 0; c < sound.size(); ++c) {
    for (unsigned i = 0; i < kFrames * kind.bytesPerValue; ++i) {
      sound[c].push_back(static_cast<std::byte>(i * 37 + c));
    }
    sample.SetLinBuffer(sound[c].data(), kind.bytesPerValue, kFrames, c);
  }
  RiffParameters& parameters = sample.parameters;
  parameters.key = 57;
  parameters.tune = -30;
  parameters.playbackType = kind.playbackType;
  if (kind.playbackType == 3) parameters.start = 2;
  for (int i = 0; i < kind.loops; ++i) {
    const auto start = static_cast<uint32_t>(i % 8);
    parameters.loops.push_back({start, start + 3, 0x40000000u, static_cast<uint32_t>(i), 0});
  }
  sample.SetName(kind.title);
  if (sample.CreateInterleavedBuffer()) {
    RiffFile file(path, sample.FormatFlag());
    if (sample.Write(file)) file.Close();
  }
  sample.DetachLinBuffers();
}

void StoreSamples() {
  for (const Kind& kind : kKinds) {
    WavSample wave;
    StoreSample(kind, wave, Place("wave", std::string(kind.name) + ".wav"));
    AifSample aiff;
    StoreSample(kind, aiff, Place("aiff", std::string(kind.name) + ".aif"));
  }
}

// ---- Hand-made samples ----

Bytes WaveFormat(unsigned tag, unsigned channels, unsigned bits) {
  const unsigned frameBytes = channels * ((bits + 7) / 8);
  return Little()
      .U16(tag)
      .U16(channels)
      .U32(44100)
      .U32(44100 * frameBytes)
      .U16(frameBytes)
      .U16(bits)
      .block;
}

Bytes Sampler(unsigned loops) {
  FieldWriter out = Little();
  out.U32(1).U32(2).U32(22675).U32(61).U32(0x80000000u).U32(25).U32(7).U32(loops).U32(4);
  for (unsigned i = 0; i < loops; ++i) out.U32(i).U32(0).U32(i % 4).U32(i % 4 + 2).U32(0).U32(0);
  return out.Text("data").block;
}

void StoreHandMadeSamples() {
  const Bytes sound = Little().U32(0x00010002).U32(0x7FFF8000).U32(0x12345678).U32(0).block;
  const Part format{"fmt ", WaveFormat(1, 1, 16)};
  const Bytes title =
      Little().Text("INFOIART").U32(2).Text("me").Text("INAM").U32(4).Text("here").block;
  Store("wave", "chunks.wav",
        Form("RIFF", "WAVE",
             {format,
              {"fact", Little().U32(8).block},
              {"odd ", Little().Text("abc").block},
              {"data", sound},
              {"smpl", Sampler(1)},
              {"LIST", title},
              {"inst", Little().U32(0x7F000A3C).U32(0x007F007F).block}}));
  Store("wave", "surplus-loops.wav",
        Form("RIFF", "WAVE", {format, {"data", sound}, {"smpl", Sampler(19)}}));
  Store("wave", "inst.wav",
        Form("RIFF", "WAVE",
             {format, {"inst", Little().U32(0x7F00F030).U32(0x007F007F).block}, {"data", sound}}));
  Bytes extensible = WaveFormat(0xFFFE, 2, 16);
  const Bytes more =
      Little().U16(22).U16(14).U32(3).U32(1).U16(0).U16(0x10).U32(0xAA000080).U32(0x719B3800).block;
  extensible.insert(extensible.end(), more.begin(), more.end());
  Store("wave", "extensible.wav", Form("RIFF", "WAVE", {{"fmt ", extensible}, {"data", sound}}));
  Store("wave", "float.wav",
        Form("RIFF", "WAVE", {{"fmt ", WaveFormat(3, 1, 32)}, {"data", sound}}));
  Store("wave", "mu-law.wav",
        Form("RIFF", "WAVE", {{"fmt ", WaveFormat(7, 1, 8)}, {"data", sound}}));
  Store(
      "wave", "two-data.wav",
      Form("RIFF", "WAVE", {format, {"data", sound}, {"data", {}}, {"fmt ", WaveFormat(1, 2, 8)}}));
  Store("wave", "long.wav",
        Form("RF64", "WAVE",
             {{"ds64", Little().U64(80).U64(sound.size()).U64(8).U32(0).block},
              format,
              {"data", sound}}));

  const Bytes common = Big().U16(1).U32(8).U16(16).U16(0x400E).U32(0xAC440000).U32(0).block;
  Bytes swapped = common;
  const Bytes kind = Big().Text("sowt").U8(3).Text("low").block;
  swapped.insert(swapped.end(), kind.begin(), kind.end());
  Bytes block(8);
  block.insert(block.end(), sound.begin(), sound.end());
  const Bytes marks = Big()
                          .U16(3)
                          .U16(1)
                          .U32(1)
                          .U8(1)
                          .Text("a")
                          .U16(2)
                          .U32(5)
                          .U8(2)
                          .Text("bc")
                          .U8(0)
                          .U16(9)
                          .U32(3)
                          .U8(0)
                          .U8(0)
                          .block;
  const Bytes instrument =
      Big().U8(60).U8(0xF0).U32(0x007F017F).U16(3).U16(1).U16(1).U16(2).U16(2).U16(9).U16(2).block;
  Store("aiff", "chunks.aif",
        Form("FORM", "AIFF",
             {{"COMM", common},
              {"MARK", marks},
              {"INST", instrument},
              {"SSND", block},
              {"NAME", Big().Text("name").block},
              {"odd ", Big().Text("abc").block}}));
  Store("aiff", "swapped.aifc",
        Form("FORM", "AIFC",
             {{"FVER", Big().U32(0xA2805140).block}, {"COMM", swapped}, {"SSND", block}}));
  Store("sample_file", "chunks.aif", Form("FORM", "AIFF", {{"COMM", common}, {"SSND", block}}));
  Store("sample_file", "plain.wav", Form("RIFF", "WAVE", {format, {"data", sound}}));
  const Bytes looped = Form("RIFF", "WAVE", {format, {"smpl", Sampler(1)}, {"data", sound}});
  Store("sample_file", "tagged.wav",
        Big()
            .Text("ID3")
            .U16(0x0400)
            .U8(0)
            .U32(4)
            .Text("abcd")
            .Raw(looped.data(), looped.size())
            .block);
  Store("sample_file", "sound.au",
        Big().Text(".snd").U32(24).U32(16).U32(3).U32(8000).U32(1).Raw(sound.data(), 16).block);
}

// ---- SoundFonts ----

void StoreSoundFonts() {
  FieldWriter headers = Little();
  for (const char* name : {"Grand Piano", "A name of just 20 ch", "EOP"}) {
    std::string field = name;
    field.resize(20, '\0');
    headers.Text(field).U16(0).U16(0).U16(0).U32(0).U32(0).U32(0);
  }
  const auto list = [](const char* type, const std::vector<Part>& parts) {
    const Bytes form = Form("LIST", type, parts);
    return Bytes(form.begin() + 8, form.end());
  };
  const Bytes version = Little().U16(2).U16(1).block;
  const Part info{"LIST", list("INFO", {{"ifil", version}})};
  Store("sound_font", "two.sf2",
        Form("RIFF", "sfbk",
             {info,
              {"LIST", list("sdta", {{"smpl", version}})},
              {"LIST", list("pdta", {{"phdr", headers.block}, {"pbag", version}})}}));
  Store("sound_font", "none.sf2",
        Form("RIFF", "sfbk", {info, {"LIST", list("pdta", {{"phdr", Bytes(38)}})}}));
}

// ---- Programs ----

void StorePrograms() {
  akaiProgram* program = newAkaiProgram();
  program->setDefault();
  const auto store = [&](const char* name, int mode) {
    writeAkaiProgram(program, 0, Place("program_file", name).c_str(), mode);
  };
  store("default.zprg", 0);
  program->newKeyGroup(-1, program, 0);
  program->EnableTolmoChunk();
  // Paths that do not depend on the folder in which the seeds are written.
  program->setSample("/no/such/piano.wav", 0, 0, 1, 0);
  program->setSample("/no/such/piano.aif", 1, 3, -1, 0);
  store("full.zprg", kWriteAbsolutePaths);
  program->deleteKeyGroup(0);
  program->deleteKeyGroup(0);
  store("empty.zprg", 0);
  deleteAkaiProgram(program);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("make-seeds FOLDER\n", stderr);
    return 2;
  }
  corpus = argv[1];
  ZylSetDiagnosticSink([](std::string_view) {});
  StoreSamples();
  StoreHandMadeSamples();
  StoreSoundFonts();
  StorePrograms();
  return 0;
}
