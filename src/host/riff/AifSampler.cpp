#include "AifSampler.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace zyl {
namespace {

constexpr double kTunePerCent = 2.56;
constexpr size_t kInstrumentBytes = 20;
constexpr unsigned kTopMarkerId = 32767;

using Marks = std::pair<uint16_t, uint16_t>;

AifMarker* FindMarker(std::vector<AifMarker>& markers, uint16_t id) {
  const auto found = std::find_if(markers.begin(), markers.end(),
                                  [id](const AifMarker& marker) { return marker.id == id; });
  return id == 0 || found == markers.end() ? nullptr : &*found;
}

const AifMarker* FindMarker(const std::vector<AifMarker>& markers, uint16_t id) {
  return FindMarker(const_cast<std::vector<AifMarker>&>(markers), id);
}

// Converts a loop's inclusive end to the position of its end marker.
uint32_t EndMarkerPosition(uint32_t end) { return end == UINT32_MAX ? end : end + 1; }

void Resolve(const Marks& marks, const std::vector<AifMarker>& markers, AifLoop& loop) {
  const AifMarker* first = FindMarker(markers, marks.first);
  const AifMarker* second = FindMarker(markers, marks.second);
  if (first == nullptr || second == nullptr || first->position >= second->position) {
    loop = AifLoop();
    return;
  }
  loop.present = true;
  loop.start = first->position;
  loop.end = second->position - 1;
}

AifLoop ToAifLoop(const RiffLoop& loop, bool looping) {
  AifLoop result;
  result.present = true;
  result.playMode = static_cast<int16_t>(!looping ? 0 : loop.type == 1 ? 2 : 1);
  result.start = loop.start;
  result.end = loop.end;
  return result;
}

RiffLoop FromAifLoop(const AifLoop& loop) {
  RiffLoop result;
  result.start = loop.start;
  result.end = loop.end;
  result.type = loop.playMode == 2 ? 1 : 0;
  return result;
}

bool SamePlace(const AifLoop& a, const AifLoop& b) {
  return a.present && b.present && a.start == b.start && a.end == b.end;
}

// Index of the loop that continues after key release, or -1.
int ReleaseLoop(const RiffParameters& parameters) {
  if (parameters.playbackType != 0 || parameters.loops.empty()) return -1;
  return parameters.loops.size() > 1 ? 1 : 0;
}

// Assigns markers to loops, reusing existing ones, and removes loop markers that are no longer
// used.
class MarkerPlacer {
 public:
  explicit MarkerPlacer(AifKept& kept) : kept_(kept) {
    for (const Marks& marks : kept.loopMarks) {
      ofLoops_.insert(marks.first);
      ofLoops_.insert(marks.second);
    }
    for (const AifMarker& marker : kept.markers) taken_.insert(marker.id);
  }

  uint16_t Place(uint16_t id, uint32_t position, const std::string& name) {
    AifMarker* marker = FindMarker(kept_.markers, id);
    if (marker != nullptr && (placed_.count(id) == 0 || marker->position == position)) {
      marker->position = position;
      placed_.insert(id);
      return id;
    }
    while (nextId_ <= kTopMarkerId && taken_.count(static_cast<uint16_t>(nextId_)) != 0) ++nextId_;
    if (nextId_ > kTopMarkerId) return 0;
    const auto fresh = static_cast<uint16_t>(nextId_);
    kept_.markers.push_back({fresh, position, name});
    taken_.insert(fresh);
    placed_.insert(fresh);
    return fresh;
  }

  void DropUnplaced() {
    std::erase_if(kept_.markers, [this](const AifMarker& marker) {
      return ofLoops_.count(marker.id) != 0 && placed_.count(marker.id) == 0;
    });
  }

 private:
  AifKept& kept_;
  std::set<uint16_t> ofLoops_;
  std::set<uint16_t> taken_;
  std::set<uint16_t> placed_;
  unsigned nextId_ = 1;
};

}  // namespace

AifSampler ToAifSampler(const RiffParameters& parameters) {
  AifSampler sampler;
  int64_t key = parameters.key;
  int64_t tune = parameters.tune;
  if (tune < -128 || tune > 128) {
    const int64_t pitch = key * 256 + tune;
    key = (pitch + 127) >> 8;
    tune = pitch - key * 256;
  }
  sampler.note = static_cast<int8_t>(std::clamp<int64_t>(key, 0, 127));
  sampler.cents = static_cast<int8_t>(std::lround(static_cast<double>(tune) / kTunePerCent));
  if (parameters.loops.empty()) return sampler;
  const bool looping = parameters.playbackType == 0 || parameters.playbackType == 1;
  sampler.sustain = ToAifLoop(parameters.loops[0], looping);
  const int release = ReleaseLoop(parameters);
  if (release >= 0) {
    sampler.release = ToAifLoop(parameters.loops[static_cast<size_t>(release)], true);
  }
  return sampler;
}

void FromAifSampler(const AifSampler& sampler, RiffParameters& parameters) {
  parameters.key = sampler.note;
  parameters.tune = static_cast<int32_t>(std::lround(sampler.cents * kTunePerCent));
  parameters.holdLoopTuneOff = 0;
  parameters.loops.clear();
  const AifLoop& sustain = sampler.sustain;
  const AifLoop& release = sampler.release;
  if (sustain.present) parameters.loops.push_back(FromAifLoop(sustain));
  if (release.present && !SamePlace(sustain, release)) {
    parameters.loops.push_back(FromAifLoop(release));
  }
  parameters.playbackType = 2;
  if (sustain.present && sustain.playMode != 0) parameters.playbackType = 1;
  if (release.present && release.playMode != 0) parameters.playbackType = 0;
}

bool ReadMarkers(const Bytes& bytes, AifKept& kept) {
  FieldReader in(bytes, ByteOrder::kBig);
  const unsigned count = in.U16();
  if (!in.Good()) return false;
  for (unsigned i = 0; i < count; ++i) {
    AifMarker marker;
    marker.id = in.U16();
    marker.position = in.U32();
    const size_t length = in.U8();
    marker.name = in.Text(length);
    if (!in.Good()) break;
    if (length % 2 == 0 && in.Left() > 0) in.U8();
    kept.markers.push_back(std::move(marker));
  }
  return true;
}

bool ReadInstrument(const Bytes& bytes, AifKept& kept, AifSampler& sampler,
                    InstrumentMarks& marks) {
  if (bytes.size() < kInstrumentBytes) return false;
  FieldReader in(bytes, ByteOrder::kBig);
  const int8_t note = in.I8();
  sampler.note = note < 0 ? int8_t{60} : note;
  sampler.cents = in.I8();
  for (uint8_t& byte : kept.instrument) byte = in.U8();
  sampler.sustain.playMode = in.I16();
  marks.sustain.first = in.U16();
  marks.sustain.second = in.U16();
  sampler.release.playMode = in.I16();
  marks.release.first = in.U16();
  marks.release.second = in.U16();
  return true;
}

void ResolveLoops(const InstrumentMarks& marks, AifKept& kept, AifSampler& sampler) {
  Resolve(marks.sustain, kept.markers, sampler.sustain);
  Resolve(marks.release, kept.markers, sampler.release);
  if (sampler.sustain.present) kept.loopMarks.push_back(marks.sustain);
  if (sampler.release.present && !SamePlace(sampler.sustain, sampler.release)) {
    kept.loopMarks.push_back(marks.release);
  }
}

bool MarkersAgree(const OwnChunk& own, const AifKept& kept) {
  for (size_t i = 0; i < own.parameters.loops.size(); ++i) {
    const RiffLoop& loop = own.parameters.loops[i];
    const AifMarker* first = FindMarker(kept.markers, own.loopMarks[i].first);
    const AifMarker* second = FindMarker(kept.markers, own.loopMarks[i].second);
    if (first == nullptr || first->position != loop.start) return false;
    if (second == nullptr || second->position != EndMarkerPosition(loop.end)) return false;
  }
  return true;
}

AifKept PlaceMarkers(const RiffParameters& parameters, const FileOrigin* origin) {
  AifKept kept = origin != nullptr ? origin->aif : AifKept();
  MarkerPlacer placer(kept);
  std::vector<Marks> loopMarks;
  for (size_t i = 0; i < parameters.loops.size() && i < kMaxLoops; ++i) {
    const RiffLoop& loop = parameters.loops[i];
    const Marks old = i < kept.loopMarks.size() ? kept.loopMarks[i] : Marks();
    const std::string name = "loop " + std::to_string(i + 1);
    const uint16_t first = placer.Place(old.first, loop.start, name + " start");
    loopMarks.emplace_back(first,
                           placer.Place(old.second, EndMarkerPosition(loop.end), name + " end"));
  }
  placer.DropUnplaced();
  kept.loopMarks = std::move(loopMarks);
  return kept;
}

Bytes MakeMarkers(const AifKept& kept) {
  const size_t count = std::min<size_t>(kept.markers.size(), UINT16_MAX);
  FieldWriter out(ByteOrder::kBig);
  out.U16(static_cast<uint32_t>(count));
  for (size_t i = 0; i < count; ++i) {
    const AifMarker& marker = kept.markers[i];
    out.U16(marker.id).U32(marker.position);
    out.U8(static_cast<uint32_t>(marker.name.size())).Text(marker.name);
    if (marker.name.size() % 2 == 0) out.U8(0);
  }
  return std::move(out.block);
}

Bytes MakeInstrument(const RiffParameters& parameters, const AifKept& kept) {
  const AifSampler sampler = ToAifSampler(parameters);
  const int release = ReleaseLoop(parameters);
  FieldWriter out(ByteOrder::kBig);
  out.U8(static_cast<uint8_t>(sampler.note)).U8(static_cast<uint8_t>(sampler.cents));
  out.Raw(kept.instrument.data(), kept.instrument.size());
  const auto put = [&](const AifLoop& loop, int index) {
    const Marks marks = loop.present ? kept.loopMarks[static_cast<size_t>(index)] : Marks();
    out.U16(static_cast<uint16_t>(loop.playMode)).U16(marks.first).U16(marks.second);
  };
  put(sampler.sustain, 0);
  put(sampler.release, release);
  return std::move(out.block);
}

}  // namespace zyl
