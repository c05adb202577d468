#include <algorithm>
#include <cstring>

#include "../akai.h"
#include "../base.h"
#include "../qx.h"
#include "../valueAccess.h"
#include "ProgramStore.h"
#include "SampleFile.h"

using zyl::SampleFile;

AkaiInfoDispatcher* g_pInfoDispatcher = nullptr;

void genericLoop::Init() { *this = genericLoop(); }

genericSample::genericSample() { new SampleFile(this); }

int32_t genericSample::NextRecordId() {
  static int32_t last = 0;
  last = last == INT32_MAX ? 1 : last + 1;
  return last;
}

SampleParameters& genericSample::shared() const { return file_->parameters; }
void genericSample::create(int, int channels) { file_->Create(this, channels); }
void genericSample::deleteSample() { file_->DropUse(this); }

genericSample* genericSample::createChannelRef(int channelIndex) {
  return zyl::AddUse(file_->Record(channelIndex)).release();
}

// Also updates the paths of all zones with this sample, where the next read of a program looks for
// it.
void genericSample::setFilePath(std::string_view path) {
  struct Zone {
    vendlKeyGroup* extension;
    int zone;
    std::string path;
  };
  std::vector<Zone> zones;
  for (akaiProgram* program : zyl::AllPrograms()) {
    for (int i = 0; i < kZones * program->AllocatedKeyGroups(); ++i) {
      const genericSample* sample = program->sampleTable[i];
      if (sample == nullptr || sample->file_ != file_) continue;
      zones.push_back({&program->keyGroupExtensions[i / kZones], i % kZones, std::string(path)});
    }
  }
  file_->SetPath(std::string(path));
  for (Zone& zone : zones) {
    zone.extension->TakeSamplePath(zone.zone, std::move(zone.path), true);
  }
}
void genericSample::setName(std::string_view text) { file_->SetName(std::string(text)); }

// The records read one set of parameters; workers read the rate that was published last.
void genericSample::updateChannels() { file_->PublishRate(); }

int genericSample::getChannelCount() const { return file_->ChannelCount(); }
bool genericSample::setChannelCount(int count) { return file_->SetChannelCount(count); }

bool genericSample::setChannel(int channelIndex) {
  if (channelIndex < 0 || channelIndex >= getChannelCount()) return false;
  file_->AssignChannel(this, channelIndex);
  return true;
}

int genericSample::getChannelBytesPS(int) const { return file_->BytesPerValue(); }

int genericSample::getChannelSize(int channelIndex) const {
  return channelIndex < getChannelCount() ? shared().frameCount : 0;
}

std::byte* genericSample::getChannelBuffer(int channelIndex) const {
  if (channelIndex < 0) return buffer;
  if (channelIndex >= getChannelCount()) return nullptr;
  return file_->Blocks()[static_cast<size_t>(channelIndex)].get();
}

int32_t genericSample::getBufferAdr(int channelIndex) const {
  return qxBufferHandle(getChannelBuffer(channelIndex), file_->ChannelBytes());
}

std::vector<int> genericSample::EditedChannels() const {
  if (channel >= 0) return {channel};
  std::vector<int> all(static_cast<size_t>(getChannelCount()));
  for (size_t c = 0; c < all.size(); ++c) all[c] = static_cast<int>(c);
  return all;
}

WritableSound genericSample::WritableChannels(const std::vector<int>& channelIndexes) {
  return file_->Writable(channelIndexes);
}
PinnedSound genericSample::Pin() const { return file_->Pin(); }

void genericSample::setBuffer(SampleBlock block, int bytesPerValue, int positions) {
  std::vector<SampleBlock> blocks(static_cast<size_t>(getChannelCount()));
  blocks[static_cast<size_t>(std::max(channel, 0))] = std::move(block);
  file_->SetBlocks(std::move(blocks), bytesPerValue, positions);
}

void genericSample::setBuffers(std::vector<SampleBlock> blocks, int bytesPerValue, int positions) {
  file_->SetBlocks(std::move(blocks), bytesPerValue, positions);
}

void genericSample::setBitsPerSample(int bits) { file_->SetBits(bits); }

template <int kBytes>
int32_t genericSample::GetValue(int32_t position) const {
  return zyl::ValueAccess<kBytes>::Read(buffer, position);
}
template <int kBytes>
void genericSample::SetValue(int32_t position, int32_t value) {
  const WritableSound sound = WritableChannels({std::max(channel, 0)});
  zyl::ValueAccess<kBytes>::Write(sound.channels[0], position, value);
}

genericSample::GetMethod genericSample::GetBufferGetMethod() const {
  return zyl::VisitWidth(file_->BytesPerValue(), [](auto access) -> GetMethod {
    return &genericSample::GetValue<decltype(access)::bytesPerValue>;
  });
}
genericSample::SetMethod genericSample::GetBufferSetMethod(int) const {
  return zyl::VisitWidth(file_->BytesPerValue(), [](auto access) -> SetMethod {
    return &genericSample::SetValue<decltype(access)::bytesPerValue>;
  });
}

void genericSample::setWavSample(BasicSample* file, unsigned) {
  std::unique_ptr<BasicSample> owned(file);
  file->CreateLinBuffers(kMaxChannels);  // so that Adopt can take ownership of every buffer
  file_->Adopt(std::move(owned));
  if (channel == 0 && getChannelCount() > 1) file_->AssignChannel(this, -1);
}
void genericSample::writeValuesToWav(WavSample* file) const { file_->CopyParametersTo(*file); }
void genericSample::writeValuesToAif(AifSample* file) const { file_->CopyParametersTo(*file); }

bool genericSample::hasPitchData() const { return pitchTrack() != nullptr; }
void genericSample::clearPitchData() { setPitchData({}); }

void genericSample::setPitchData(std::vector<float> track) {
  std::shared_ptr<const std::vector<float>> kept;
  if (!track.empty()) kept = std::make_shared<const std::vector<float>>(std::move(track));
  {
    const std::lock_guard<std::mutex> hold(file_->pitchMutex);
    file_->pitchTrack.swap(kept);
  }
  // Invalidate the handle before freeing the track.
  if (kept != nullptr) qxWithdrawBuffer(kept->data());
}

int32_t genericSample::PitchTrackHandle(int32_t& handle) const {
  const auto track = pitchTrack();
  handle = 0;
  if (track == nullptr) return 0;
  handle = qxBufferHandle(track->data(), track->size() * sizeof(float));
  // If a worker has replaced the track, it couldn't withdraw this handle.
  if (pitchTrack() != track) qxWithdrawBuffer(track->data());
  return static_cast<int32_t>(track->size());
}

std::shared_ptr<const std::vector<float>> genericSample::pitchTrack() const {
  const std::lock_guard<std::mutex> hold(file_->pitchMutex);
  return file_->pitchTrack;
}
