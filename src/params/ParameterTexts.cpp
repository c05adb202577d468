#include "params/ParameterTexts.h"

#include <wx/string.h>

#include <algorithm>
#include <bit>
#include <cstdlib>

namespace {

constexpr const char* kPlaybackTypes[] = {"As sample", "Loop Rel", "Loop >Rel", "No loops",
                                          "To end"};
constexpr const char* kFilterTypes[] = {"LP2",   "LP2 R", "LP4",   "LP4 R", "LP6",
                                        "LP6 R", "HP2",   "HP2 R", "HP4",   "HP4 R",
                                        "BP2",   "BP2 R", "BP4",   "BP4 R"};
constexpr const char* kPriorities[] = {"Low", "Norm", "High", "Hold"};
constexpr const char* kWaveforms[] = {"Triangle", "Sawtooth", "Square", "Random"};
constexpr const char* kModSourceNames[] = {
    "No Mod",    "Modwheel",   "Bend",      "Pressure",  "External1", "Velocity",
    "Key",       "LFO1",       "LFO2",      "Env1",      "Env2",      "!Modwheel",
    "!Bend",     "!External1", "Env3",      "External2", "External3", "External4",
    "External5", "External6",  "External7", "External8", "External9", "External10"};
static_assert(std::size(kModSourceNames) == kModSources);
constexpr const char* kChannels[] = {"Left center", "Left",     "Center", "Right center",
                                     "Right",       "Surround", "Mono"};
constexpr const char* kConstantPitches[] = {"Track",     "Const",   "Pitch",
                                            "Ptch/cnst", "Stretch", "Str/cnst"};
constexpr const char* kPitchPlays[] = {"Resample", "PitchShift", "Formant", "Robot"};
constexpr const char* kInvalid = "<invalid>";
constexpr const char* kOff = "Off";

using Names = std::span<const char* const>;

std::string NameOf(Names names, int32_t value, const char* otherwise = "") {
  const bool named = value >= 0 && static_cast<size_t>(value) < names.size();
  return named ? names[static_cast<size_t>(value)] : otherwise;
}

char Lower(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}
std::string Lowered(std::string_view text) {
  std::string lowered(text);
  std::transform(lowered.begin(), lowered.end(), lowered.begin(), Lower);
  return lowered;
}
// The index of the name that a text stands for, -1 for an empty text: the rule of MatchText.
int32_t MatchingName(Names names, const char* text) {
  if (*text == '\0') return -1;
  size_t longest = 0;
  for (const std::string_view name : names) longest = std::max(longest, name.size());
  uint32_t left = ~uint32_t{0} >> (32 - names.size());  // a bit for each candidate
  // No name has a letter beyond the longest one's end.
  for (size_t i = 0; i < longest && text[i] != '\0'; ++i) {
    for (size_t n = 0; n < names.size() && !std::has_single_bit(left); ++n) {
      const std::string_view name = names[n];
      if (name.size() > i && Lower(name[i]) != Lower(text[i])) left &= ~(uint32_t{1} << n);
    }
  }
  return std::countr_zero(left);
}

// What was typed, up to a NUL, in lower case.
std::string LoweredTyped(const ROCParam& typed) { return Lowered(typed.Str().c_str()); }
bool Contains(const std::string& text, const char* part) {
  return text.find(part) != std::string::npos;
}

// Forms that are typed by a part of a word, whose letters may be of either case: the first keyword
// that the text contains decides.
struct Keyword {
  const char* part;
  int32_t value;
  const char* canonical;
  int32_t valueWithSlash = kNoValue;  // of a text that also contains a "/"
};

int32_t FromKeywords(std::span<const Keyword> keywords, ROCParam& typed) {
  const std::string text = LoweredTyped(typed);
  for (const Keyword& keyword : keywords) {
    if (!Contains(text, keyword.part)) continue;
    typed.SetStr(keyword.canonical);
    const bool slash = keyword.valueWithSlash != kNoValue && Contains(text, "/");
    return slash ? keyword.valueWithSlash : keyword.value;
  }
  return kNoValue;
}

constexpr Keyword kTypedReassignment[] = {{"o", 0, "Oldest"}, {"q", 1, "Quietest"}};
constexpr Keyword kTypedPitchBendMode[] = {{"h", 1, "Held"}, {"n", 0, "Normal"}};
constexpr Keyword kTypedOnOff[] = {{"of", 0, kOff}, {"on", 1, "On"}};
constexpr Keyword kTypedConstantPitch[] = {
    {"str", 4, "Stretch", 5}, {"tr", 0, "Track"}, {"co", 1, "Const"}, {"pi", 2, "Pitch", 3}};
constexpr Keyword kTypedPitchPlay[] = {
    {"re", 0, "Resample"}, {"pi", 1, "PitchShift"}, {"fo", 2, "Formant"}, {"ro", 3, "Robot"}};

int32_t PitchPlayFromText(ROCParam& typed) {
  const int32_t value = FromKeywords(kTypedPitchPlay, typed);
  if (value == kNoValue) typed.SetStr(kInvalid);
  return value;
}

// Stored from 0, shown from 1.
std::string VoicesText(int32_t value) { return std::to_string(value + 1); }
int32_t VoicesFromText(ROCParam& typed) {
  return static_cast<uint8_t>(static_cast<uint32_t>(DecimalValue(typed.Str())) - 1u);
}

std::string MuteGroupText(int32_t value) { return value == 0 ? kOff : std::to_string(value); }
int32_t MuteGroupFromText(ROCParam& typed) {
  const std::string text = LoweredTyped(typed);
  if (Contains(text, "o")) {
    typed.SetStr(kOff);
    return 0;
  }
  return text.empty() ? kNoValue : static_cast<uint8_t>(DecimalValue(text));
}

// Both directions of a form.
struct Form {
  std::string (*text)(int32_t value);
  int32_t (*fromText)(ROCParam& typed);
};

Form RulesOf(TextForm form) {
  switch (form) {
    case TextForm::kPriority:
      return {PriorityText, PriorityFromText};
    case TextForm::kReassignment:
      return {[](int32_t value) -> std::string { return value == 0 ? "Oldest" : "Quietest"; },
              [](ROCParam& typed) { return FromKeywords(kTypedReassignment, typed); }};
    case TextForm::kPitchBendMode:
      return {[](int32_t value) -> std::string { return value == 0 ? "Normal" : "Held"; },
              [](ROCParam& typed) { return FromKeywords(kTypedPitchBendMode, typed); }};
    case TextForm::kWaveform:
      return {WaveformText, WaveformFromText};
    case TextForm::kModSource:
      return {ModSourceText, ModSourceFromText};
    case TextForm::kPlaybackType:
      return {PlaybackTypeText, PlaybackTypeFromText};
    case TextForm::kFilterType:
      return {FilterTypeText, FilterTypeFromText};
    case TextForm::kOnOff:
      return {[](int32_t value) -> std::string { return value == 0 ? kOff : "On"; },
              [](ROCParam& typed) { return FromKeywords(kTypedOnOff, typed); }};
    case TextForm::kConstantPitch:
      return {[](int32_t value) { return NameOf(kConstantPitches, value, kConstantPitches[0]); },
              [](ROCParam& typed) { return FromKeywords(kTypedConstantPitch, typed); }};
    case TextForm::kPitchPlay:
      return {[](int32_t value) { return NameOf(kPitchPlays, value, kInvalid); },
              PitchPlayFromText};
    case TextForm::kVoices:
      return {VoicesText, VoicesFromText};
    case TextForm::kMuteGroup:
      return {MuteGroupText, MuteGroupFromText};
    case TextForm::kNone:
      break;
  }
  return {[](int32_t) { return std::string(); }, [](ROCParam&) { return kNoValue; }};
}

}  // namespace

int32_t MatchText(Names names, ROCParam& typed) {
  const int32_t match = MatchingName(names, typed.Str().c_str());
  if (match >= 0) typed.SetStr(names[static_cast<size_t>(match)]);
  return match;
}

std::string PlaybackTypeText(int32_t value) { return NameOf(kPlaybackTypes, value); }
std::string FilterTypeText(int32_t value) { return NameOf(kFilterTypes, value); }
std::string PriorityText(int32_t value) { return NameOf(kPriorities, value); }
std::string WaveformText(int32_t value) { return NameOf(kWaveforms, value); }
std::string ModSourceText(int32_t value) { return NameOf(kModSourceNames, value); }
int32_t PlaybackTypeFromText(ROCParam& typed) { return MatchText(kPlaybackTypes, typed); }
int32_t FilterTypeFromText(ROCParam& typed) { return MatchText(kFilterTypes, typed); }
int32_t PriorityFromText(ROCParam& typed) { return MatchText(kPriorities, typed); }
int32_t WaveformFromText(ROCParam& typed) { return MatchText(kWaveforms, typed); }
int32_t ModSourceFromText(ROCParam& typed) { return MatchText(kModSourceNames, typed); }
int32_t ChannelFromText(ROCParam& typed) { return MatchText(kChannels, typed); }

std::string ValueText(TextForm form, int32_t value) { return RulesOf(form).text(value); }
int32_t ValueFromText(TextForm form, ROCParam& typed) { return RulesOf(form).fromText(typed); }

std::string OutputText(int32_t output) {
  return output < 0 ? kOff : std::to_string(int64_t{output} + 1);
}

int32_t OutputFromText(ROCParam& typed, int32_t outputs) {
  const std::string text = LoweredTyped(typed);
  // A signed byte holds an output, as the field does.
  const int32_t output =
      text.empty() ? 0 : static_cast<int8_t>(static_cast<uint32_t>(DecimalValue(text)) - 1u);
  if (output < 0 || Contains(text, "o")) {
    typed.SetStr(kOff);
    return -1;
  }
  if (output < outputs) return output;
  typed.SetStr(std::to_string(outputs));
  return static_cast<int32_t>(static_cast<uint32_t>(outputs) - 1u);
}

std::string_view ChannelText(int32_t channel, int32_t channels) {
  switch (channel) {
    case 0:
      return channels <= 1 ? "Mono" : channels == 6 ? "Left center" : "Left";
    case 1:
      return channels == 4 ? "Center" : channels == 6 ? "Left" : "Right";
    case 4:
      return "Right";
    case 5:
      return "Surround";
    default:
      return "";
  }
}

int32_t TypedChannel(ROCParam& typed, int32_t channels, int32_t current) {
  const std::string text = LoweredTyped(typed);
  // How well a channel's text fits: not, by its beginning, whole, whole and chosen already.
  const auto fit = [&](int32_t channel) {
    const std::string shown = Lowered(ChannelText(channel, channels));
    if (text.empty() || !shown.starts_with(text)) return 0;
    return shown != text ? 1 : channel != current ? 2 : 3;
  };
  int32_t best = -1;
  int bestFit = 0;
  for (int32_t channel = 0; channel < channels; ++channel) {
    if (fit(channel) <= bestFit) continue;
    best = channel;
    bestFit = fit(channel);
  }
  if (best >= 0) {
    typed.SetStr(ChannelText(best, channels));
    return best;
  }
  const int32_t place = MatchingName(kChannels, typed.Str().c_str());
  if (place >= channels) return -1;
  return ChannelFromText(typed);
}

std::string MemoryText(int32_t bytes) {
  constexpr int32_t kKilo = 1024;
  constexpr int32_t kMega = 1024 * 1024;
  if (bytes > kMega) return wxString::Format("%3.1f MB", double{1} * bytes / kMega).utf8_string();
  if (bytes > kKilo) return wxString::Format("%3.1f KB", double{1} * bytes / kKilo).utf8_string();
  return wxString::Format("%d byte", bytes).utf8_string();
}
std::string PercentText(double percent) {
  return wxString::Format("%3.1f %%", percent).utf8_string();
}

int32_t DecimalValue(const std::string& text) {
  const long long value = std::strtoll(text.c_str(), nullptr, 10);
  return static_cast<int32_t>(std::clamp<long long>(value, INT32_MIN, INT32_MAX));
}
