#include "sample/FileMethods.h"

#include <wx/filefn.h>
#include <wx/log.h>
#include <wx/string.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <vector>

#include "host/qx.h"
#include "host/riff.h"
#include "sample/SampleAccess.h"

namespace fs = std::filesystem;

namespace {

struct MergedChannel {
  genericSample* record;
  int32_t channel;
};

std::vector<MergedChannel> WithRecord(const MergedChannels& pairs) {
  std::vector<MergedChannel> channels;
  for (const auto& [sample, channel] : pairs.groups) {
    if (sample.Record() != nullptr) channels.push_back({sample.Record(), *channel});
  }
  return channels;
}

// A file object for the extension, with the parameters of the first sample. Null for an unsupported
// extension.
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

// Lends the channels to the file object. Returns false if a channel does not exist or there are too
// many.
bool LendChannels(const std::vector<MergedChannel>& channels, BasicSample& file) {
  file.SetChannelCount(static_cast<unsigned>(channels.size()));
  unsigned bits = 0;
  for (unsigned i = 0; i < channels.size(); ++i) {
    const auto& [record, channel] = channels[i];
    LendChannel(*record, channel, file, i);
    bits = std::max<unsigned>(bits, record->shared().bits);
  }
  file.SetBitsPerValue(bits);
  return file.ChannelCount() == channels.size() && file.CreateInterleavedBuffer();
}

// Converts file names so that names that are not valid UTF-8 keep their bytes. wxCopyFile converts
// through the global wxConvFileName, which is replaced while this object exists.
class FileNameBytes {
 public:
  FileNameBytes() { wxConvFileName = &bytes_; }
  ~FileNameBytes() { wxConvFileName = before_; }
  FileNameBytes(const FileNameBytes&) = delete;
  FileNameBytes& operator=(const FileNameBytes&) = delete;
  wxString operator()(const std::string& name) const { return {name.c_str(), bytes_}; }

 private:
  wxMBConvUTF8 bytes_{wxMBConvUTF8::MAP_INVALID_UTF8_TO_PUA};
  wxMBConv* const before_ = wxConvFileName;
};

// Copies the file and its mode. Replaces `dest` completely or leaves it unchanged.
bool CopyFile(const std::string& source, const std::string& dest, std::string& reason) {
  std::error_code failed;
  // Opening a named pipe would block until it has a writer.
  if (!fs::is_regular_file(source, failed)) {
    reason = source + ": is not a regular file";
    return false;
  }
  if (fs::equivalent(source, dest, failed)) return true;
  const FileNameBytes name;
  const wxLogNull quiet;
  const auto copy = [&](const std::string& temporary) {
    return wxCopyFile(name(source), name(temporary));
  };
  if (qxReplaceFile(dest, copy, reason)) return true;
  if (reason.empty()) reason = source + ": could not be copied to " + dest;
  return false;
}

}  // namespace

bool SampleWrite(ZylSProgram&, SampleArg sample, OptPath<"NewPath"> path,
                 Opt<int32_t, "ChannelMask"> mask) {
  const char* target = path ? path.Text() : sample->filePath;
  return writeSample(sample.Record(), target, mask.ValueOr(0));
}

std::optional<bool> SampleWriteMerged(Call& call, PathArg<"NewPath"> path,
                                      Deferred<MergedChannels> pairs) {
  const FileString parts(*path);
  // Without an extension the pairs are not read, so errors in them are not reported.
  if (parts.Extension().empty()) return false;
  if (!pairs.ReadNow(call)) return {};
  const std::vector<MergedChannel> channels = WithRecord(pairs.value);
  std::unique_ptr<BasicSample> file;
  if (!channels.empty()) file = FileObjectFor(parts.Extension(), *channels[0].record);
  if (file == nullptr) return false;
  file->SetName(parts.BaseName().c_str());
  if (LendChannels(channels, *file) && file->IsValid()) {
    RiffFile target(path.Text(), file->FormatFlag());
    if (!file->Write(target) || !target.Close()) {
      ZylDiagnostic(std::string(path.Text()) + ": could not be written");
    }
  } else {
    ZylDiagnostic(std::string(path.Text()) + ": the channels do not fit into one file");
  }
  file->DetachLinBuffers();
  return true;
}

void SampleCopyFile(ZylSProgram&, PathArg<"Source"> source, PathArg<"Dest"> dest) {
  std::string reason;
  if (!CopyFile(*source, *dest, reason)) ZylDiagnostic(reason);
}

int32_t GetChannelCount(ZylSProgram&, PathArg<"Path"> path) {
  genericSample* record = loadSample(path.Text(), 0, 0, 0);
  if (record == nullptr) return 0;
  const int32_t count = record->getChannelCount();
  record->deleteSample();
  return count;
}
