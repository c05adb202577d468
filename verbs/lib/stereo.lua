-- Stereo samples in programs. A zone plays one channel of a file, so a stereo sample is a pair of
-- zones: left (channel 0, panned left) and right (channel 1, panned right).
local stereo = { LEFT = -50, CENTRE = 0, RIGHT = 50 }

-- How the channels of a file are played, by the value of --mono: the zones of a file with two
-- channels or more, and the channels taken, for messages.
local MODES = {
  pair = { { channel = 0, pan = stereo.LEFT }, { channel = 1, pan = stereo.RIGHT },
           taken = "channels 1 and 2 are" },
  left = { { channel = 0, pan = stereo.CENTRE }, taken = "channel 1 is" },
  right = { { channel = 1, pan = stereo.CENTRE }, taken = "channel 2 is" },
  mix = { { channel = 0, pan = stereo.CENTRE }, { channel = 1, pan = stereo.CENTRE },
          taken = "channels 1 and 2 are" },
}
local MONO = { { channel = 0, pan = stereo.CENTRE } }

-- Whether the text is a value of --mono.
function stereo.isMono(text) return text ~= "pair" and MODES[text] ~= nil end

-- The zones for a file with that many channels: a list of { channel, pan }. With more than two
-- channels also returns which are taken. `mono` is "left", "right", "mix", or nil for a pair.
function stereo.parts(channels, mono)
  if channels < 2 then return MONO end
  local parts = MODES[mono or "pair"]
  return parts, channels > 2 and parts.taken .. " taken" or nil
end

-- The parts of a recording in two mono files: those of one file with two channels, where `left` and
-- `right` play instead of the channels.
function stereo.ofFiles(parts, left, right)
  local list = {}
  for i, part in ipairs(parts) do
    list[i] = { channel = 0, pan = part.pan, sample = part.channel == 0 and left or right }
  end
  return list
end

-- Finds the pairs among the zones of a keygroup, each { low, high, path, channel, pan, tune }. Sets `pair`
-- of either zone to the other one, and isRight of the right one.
function stereo.pair(zones)
  for _, left in ipairs(zones) do
    for _, right in ipairs(zones) do
      if not left.pair and not right.pair and left.channel == 0 and right.channel == 1
          and left.pan < 0 and right.pan == -left.pan and left.path == right.path
          and left.low == right.low and left.high == right.high and left.tune == right.tune then
        left.pair, right.pair, right.isRight = right, left, true
      end
    end
  end
end

-- What a zone plays: "stereo" for the left zone of a pair, otherwise the channel ("1"), or "all".
function stereo.name(zone)
  return zone.pair and "stereo" or zone.channel >= 0 and tostring(zone.channel + 1) or "all"
end

return stereo
