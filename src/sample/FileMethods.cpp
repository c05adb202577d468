#include "sample/FileMethods.h"

#include <wx/filefn.h>
#include <wx/string.h>

#include <memory>
#include <vector>

#include "host/riff.h"

namespace {

struct MergedChannel {
  genericSample* record;
  int32_t channel;
};

// The pairs of "Sample" and "Channel" from position 2 on; those without a record are left out.
bool ReadPairs(Call& call, std::vector<MergedChannel>& channels) {
  while (call.position <= call.Count()) {
    OtherSample<"Sample", NullObject::kAllowed> sample;
    Arg<int32_t, "Channel"> channel;
    if (!sample.Read(call, sample) || !channel.Read(call, channel)) return false;
    if (sample.Record() != nullptr) channels.push_back({sample.Record(), *channel});
  }
  return true;
}

// The file object of a path's extension with the first sample's parameters; null for others.
std::unique_ptr<BasicSample> FileObjectFor(const std::string& extension,
                                           const genericSample& first) {
  const wxString lower = wxString::FromUTF8(extension).Lower();
  if (lower == "wav") {
    auto file = std::make_unique<WavSample>();
    first.writeValuesToWav(file.get());
    return file;
  }
  if (lower == "aif") {
    auto file = std::make_unique<AifSample>();
    first.writeValuesToAif(file.get());
    return file;
  }
  return nullptr;
}

}  // namespace

bool SampleWrite(Call& call) {
  SampleArg sample;
  Opt<std::string, "NewPath"> path;
  Opt<int32_t, "ChannelMask"> mask;
  if (!SampleArg::Read(call, sample) || !path.Read(call, path) || !mask.Read(call, mask)) {
    return false;
  }
  const char* target = path ? path.Text() : sample->filePath;
  call.Return(newROCParam(writeSample(sample.Record(), target, mask.ValueOr(0))));
  return true;
}

bool SampleWriteMerged(Call& call) {
  Arg<std::string, "NewPath"> path;
  if (!path.Read(call, path)) return false;
  const FileString parts(*path);
  if (parts.Extension().empty()) {
    call.Return(newROCParam(false));
    return true;
  }
  std::vector<MergedChannel> channels;
  if (!ReadPairs(call, channels)) return false;
  std::unique_ptr<BasicSample> file;
  if (!channels.empty()) file = FileObjectFor(parts.Extension(), *channels[0].record);
  if (file == nullptr) {
    call.Return(newROCParam(false));
    return true;
  }
  file->SetChannelCount(static_cast<unsigned>(channels.size()));
  file->SetName(parts.BaseName().c_str());
  for (unsigned i = 0; i < channels.size(); ++i) {
    const auto& [record, channel] = channels[i];
    file->SetLinBuffer(record->getChannelBuffer(channel),
                       static_cast<unsigned>(record->getChannelBytesPS(channel)),
                       static_cast<unsigned>(record->getChannelSize(channel)), i);
  }
  file->CreateInterleavedBuffer();
  if (file->IsValid()) {
    RiffFile target(path.Text(), file->FormatFlag());
    if (!file->Write(target) || !target.Close()) {
      ZylDiagnostic(std::string(path.Text()) + ": could not be written");
    }
  } else {
    ZylDiagnostic(std::string(path.Text()) + ": the channels do not fit into one file");
  }
  file->DetachLinBuffers();
  call.Return(newROCParam(true));
  return true;
}

void SampleCopyFile(ZylSProgram&, Arg<std::string, "Source"> source,
                    Arg<std::string, "Dest"> dest) {
  // Copied beside its destination and renamed over it, so that no half copy is ever seen there.
  const wxString from = wxString::FromUTF8(source.Text());
  const wxString to = wxString::FromUTF8(dest.Text());
  const wxString part = to + ".part";
  if (wxCopyFile(from, part) && wxRenameFile(part, to)) return;
  if (wxFileExists(part)) wxRemoveFile(part);
  ZylDiagnostic(std::string(source.Text()) + ": could not be copied to " + dest.Text());
}

int32_t GetChannelCount(ZylSProgram&, Arg<std::string, "Path"> path) {
  genericSample* record = loadSample(path.Text(), 0, 0, 0);
  if (record == nullptr) return 0;
  const int32_t count = record->getChannelCount();
  record->deleteSample();
  return count;
}
