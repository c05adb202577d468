// The texts in which parameter values are shown and typed.
//
// A shown text is "" where a value has none. A typed text is a script's own value: it is replaced
// by the text of what it stands for, so that the caller sees it as the editor will show it.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "host/base.h"
#include "params/Parameter.h"

// The index of the name that a typed text stands for, -1 for an empty text. Letter by letter, names
// that differ from the text are given up, as long as two are left; the first one that is left is
// meant, and replaces the text. So every text stands for some name.
int32_t MatchText(std::span<const char* const> names, ROCParam& typed);

// The text of a value, and the value of a typed text (kNoValue: none).
std::string ValueText(const TextForm& form, int32_t value);
int32_t ValueFromText(const TextForm& form, ROCParam& typed);

// An individual output, counted from 0 and shown from 1; below 0 is "Off". A typed output at or
// beyond `outputs` is replaced by `outputs`, also when that is 0 or less, and gives `outputs` - 1.
std::string OutputText(int32_t output);
int32_t OutputFromText(ROCParam& typed, int32_t outputs);

// The name of a channel of a sample with this many channels, "" when it has none.
std::string_view ChannelText(int32_t channel, int32_t channels);
// The channel that a typed name means: the one that is shown so (of several the current one), the
// first one whose text begins so, and only then the name's place in the table of channel names. -1
// when the sample has no such channel; the text is left alone then.
int32_t TypedChannel(ROCParam& typed, int32_t channels, int32_t current);

// A number of bytes, in the unit that suits it.
std::string MemoryText(int32_t bytes);
std::string PercentText(double percent);

// The decimal number with which a text begins, after blanks; 0 for none. Held to 32 bits.
int32_t DecimalValue(const std::string& text);
