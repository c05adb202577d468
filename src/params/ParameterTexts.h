// Formats parameter values as texts and parses typed texts.
//
// A value without a text is formatted as "". Parsing changes the script's text: it becomes the text
// of the value, as the editor shows it.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "host/base.h"
#include "params/Parameter.h"

// Returns the index of the name that a typed text matches, or -1 for an empty text. Compares letter
// by letter and eliminates the names that differ while at least two remain; the first remaining
// name is the match, and replaces the text. So every non-empty text matches a name.
int32_t MatchText(std::span<const char* const> names, ROCParam& typed);

// Format a value, and parse a typed text; ValueFromText returns kNoValue if the text has no value.
std::string ValueText(const TextForm& form, int32_t value);
int32_t ValueFromText(const TextForm& form, ROCParam& typed);

// An individual output, counted from 0 and shown from 1; negative is "Off". A typed output at or
// beyond `outputs` is replaced with `outputs`, even if that is 0 or less, and returns `outputs`
// - 1.
std::string OutputText(int32_t output);
int32_t OutputFromText(ROCParam& typed, int32_t outputs);

// The name of a channel in a sample with this many channels, "" if it has none.
std::string_view ChannelText(int32_t channel, int32_t channels);
// Returns the channel of a typed name: the channel with that name (the current one if several have
// it), else the first channel whose name starts with the text, else the index of the name that
// matches in the table of channel names. Returns -1 and keeps the text if the sample has no such
// channel.
int32_t TypedChannel(ROCParam& typed, int32_t channels, int32_t current);

// A number of bytes in MB, KB or bytes, by its size.
std::string MemoryText(int32_t bytes);
std::string PercentText(double percent);

// The decimal number at the start of a text, after blanks; 0 if there is none. Clamped to 32 bits.
int32_t DecimalValue(const std::string& text);
