#include "sample/FileMethods.h"

#include <wx/file.h>
#include <wx/filefn.h>
#include <wx/filename.h>
#include <wx/log.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <vector>

#include "host/riff.h"
#include "sample/SampleAccess.h"

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

// Lends the channels to the file object. False when it cannot take them all: there is no such
// channel, or there are too many.
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

namespace fs = std::filesystem;

// The file that a copy replaces: behind symbolic links, also where it is not there yet.
fs::path CopyTarget(const fs::path& dest) {
  constexpr int kMaxLinks = 32;
  fs::path target = dest;
  for (int links = 0; fs::is_symlink(fs::symlink_status(target)); ++links) {
    if (links == kMaxLinks) return {};
    target = target.parent_path() / fs::read_symlink(target);
  }
  return target;
}

// Copies beside the destination and renames over it: the old file or the whole new one is there at
// any moment.
bool CopyWhole(const fs::path& source, const fs::path& dest) {
  const wxLogNull quiet;
  const fs::path target = CopyTarget(dest);
  const bool exists = fs::exists(target);
  if (!fs::is_regular_file(source) || target.filename().empty()) return false;
  if (exists && !fs::is_regular_file(target)) return false;
  if (exists && fs::equivalent(source, target)) return true;
  const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
  const wxString part =
      wxFileName::CreateTempFileName(wxString::FromUTF8((folder / ".zyl-copy-").string()));
  if (part.empty()) return false;
  std::error_code failure = std::make_error_code(std::errc::io_error);
  if (wxCopyFile(wxString::FromUTF8(source.string()), part) && wxFile(part).Flush()) {
    fs::rename(fs::path(part.utf8_string()), target, failure);
  }
  if (failure) wxRemoveFile(part);
  return !failure;
}

}  // namespace

bool SampleWrite(ZylSProgram&, SampleArg sample, Opt<std::string, "NewPath"> path,
                 Opt<int32_t, "ChannelMask"> mask) {
  const char* target = path ? path.Text() : sample->filePath;
  return writeSample(sample.Record(), target, mask.ValueOr(0));
}

std::optional<bool> SampleWriteMerged(Call& call, Arg<std::string, "NewPath"> path,
                                      Deferred<MergedChannels> pairs) {
  const FileString parts(*path);
  // Without an extension the pairs are not looked at.
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

void SampleCopyFile(ZylSProgram&, Arg<std::string, "Source"> source,
                    Arg<std::string, "Dest"> dest) {
  std::error_code failure;
  try {
    if (CopyWhole(*source, *dest)) return;
  } catch (const fs::filesystem_error& error) {
    failure = error.code();
  }
  ZylDiagnostic(std::string(source.Text()) + ": could not be copied to " + dest.Text() +
                (failure ? ": " + failure.message() : ""));
}

int32_t GetChannelCount(ZylSProgram&, Arg<std::string, "Path"> path) {
  genericSample* record = loadSample(path.Text(), 0, 0, 0);
  if (record == nullptr) return 0;
  const int32_t count = record->getChannelCount();
  record->deleteSample();
  return count;
}
