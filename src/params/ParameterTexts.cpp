#include "params/ParameterTexts.h"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr const char* kChannels[] = {"Left center", "Left",     "Center", "Right center",
                                     "Right",       "Surround", "Mono"};
constexpr const char* kOff = "Off";

using Names = std::span<const char* const>;

char Lower(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}
std::string Lowered(std::string_view text) {
  std::string lowered(text);
  std::transform(lowered.begin(), lowered.end(), lowered.begin(), Lower);
  return lowered;
}
// Implements MatchText without replacing the text.
int32_t MatchingName(Names names, const char* text) {
  if (*text == '\0') return -1;
  size_t longest = 0;
  for (const std::string_view name : names) longest = std::max(longest, name.size());
  uint32_t remaining = ~uint32_t{0} >> (32 - names.size());  // a bit for each candidate
  // Letters beyond the longest name eliminate nothing.
  for (size_t i = 0; i < longest && text[i] != '\0'; ++i) {
    for (size_t n = 0; n < names.size() && !std::has_single_bit(remaining); ++n) {
      const std::string_view name = names[n];
      if (name.size() > i && Lower(name[i]) != Lower(text[i])) remaining &= ~(uint32_t{1} << n);
    }
  }
  return std::countr_zero(remaining);
}

// The typed text up to a NUL, in lower case.
std::string LoweredTyped(const ROCParam& typed) { return Lowered(typed.Str().c_str()); }
bool Contains(const std::string& text, const char* part) {
  return text.find(part) != std::string::npos;
}

int32_t FromKeywords(const TextForm& form, ROCParam& typed) {
  const std::string text = LoweredTyped(typed);
  for (const Keyword& keyword : form.keywords) {
    if (!Contains(text, keyword.part)) continue;
    typed.SetStr(keyword.canonical);
    const bool slash = keyword.valueWithSlash != kNoValue && Contains(text, "/");
    return slash ? keyword.valueWithSlash : keyword.value;
  }
  if (form.unmatched != nullptr) typed.SetStr(form.unmatched);
  return kNoValue;
}

int32_t NumberOrOff(ROCParam& typed) {
  const std::string text = LoweredTyped(typed);
  if (Contains(text, "o")) {
    typed.SetStr(kOff);
    return 0;
  }
  return text.empty() ? kNoValue : static_cast<uint8_t>(DecimalValue(text));
}

}  // namespace

int32_t MatchText(Names names, ROCParam& typed) {
  const int32_t match = MatchingName(names, typed.Str().c_str());
  if (match >= 0) typed.SetStr(names[static_cast<size_t>(match)]);
  return match;
}

std::string ValueText(const TextForm& form, int32_t value) {
  switch (form.numbers) {
    case TextForm::Numbers::kFromOne:
      return std::to_string(value + 1);
    case TextForm::Numbers::kOffAtZero:
      return value == 0 ? kOff : std::to_string(value);
    case TextForm::Numbers::kNone:
      break;
  }
  const bool named = value >= 0 && static_cast<size_t>(value) < form.names.size();
  return named ? form.names[static_cast<size_t>(value)] : form.otherwise;
}

int32_t ValueFromText(const TextForm& form, ROCParam& typed) {
  switch (form.numbers) {
    case TextForm::Numbers::kFromOne:
      return static_cast<uint8_t>(static_cast<uint32_t>(DecimalValue(typed.Str())) - 1u);
    case TextForm::Numbers::kOffAtZero:
      return NumberOrOff(typed);
    case TextForm::Numbers::kNone:
      break;
  }
  return form.keywords.empty() ? MatchText(form.names, typed) : FromKeywords(form, typed);
}

std::string OutputText(int32_t output) {
  return output < 0 ? kOff : std::to_string(int64_t{output} + 1);
}

int32_t OutputFromText(ROCParam& typed, int32_t outputs) {
  const std::string text = LoweredTyped(typed);
  // Wrap to a signed byte, the type of the field.
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
  // The rank of a channel: 0 no match, 1 prefix, 2 full name, 3 full name of the current channel.
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
  return MatchText(kChannels, typed);
}

namespace {

// Not wxString::Format, which terminates the process if memory is short.
std::string OneDecimal(double value) {
  char text[400];  // the longest double has 309 digits before its point
  std::snprintf(text, sizeof text, "%3.1f", value);
  return text;
}

}  // namespace

std::string MemoryText(int32_t bytes) {
  constexpr int32_t kKilo = 1024;
  constexpr int32_t kMega = 1024 * 1024;
  if (bytes > kMega) return OneDecimal(double{1} * bytes / kMega) + " MB";
  if (bytes > kKilo) return OneDecimal(double{1} * bytes / kKilo) + " KB";
  return std::to_string(bytes) + " byte";
}
std::string PercentText(double percent) { return OneDecimal(percent) + " %"; }

int32_t DecimalValue(const std::string& text) {
  const long long value = std::strtoll(text.c_str(), nullptr, 10);
  return static_cast<int32_t>(std::clamp<long long>(value, INT32_MIN, INT32_MAX));
}
