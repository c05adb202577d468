-- Random file names: reading them raises no error, every sample is mapped or left out, and keys and
-- velocities are covered without gaps.
package.path = arg[1] .. "/verbs/lib/?.lua;" .. package.path
local filenames, keymap = require "filenames", require "keymap"

math.randomseed(3)
local PARTS = { "C", "c", "#", "b", "-", "1", "2", "127", "_", " ", "v", "vel", "pp", "♭", "s", "A",
                "g", "9", "note", "\xff", "(", ")", "%", "sharp", ".wav", "/",
                "300000000000000000000" }

local function name()
  local parts = {}
  for i = 1, math.random(1, 9) do parts[i] = PARTS[math.random(#PARTS)] end
  return table.concat(parts)
end

for _ = 1, 3000 do
  local names, samples, left, zones = {}, {}, 0, 0
  for i = 1, math.random(0, 6) do names[i] = name() end
  for i, read in ipairs(filenames.read(names)) do
    if read.key and read.key >= 0 and read.key <= 127 then
      samples[#samples + 1] = { key = read.key, layer = read.layer, path = names[i] }
    end
  end
  local keygroups = keymap.layers(samples, function() left = left + 1 end)
  keymap.ranges(keygroups, 127)
  local key = -1
  for _, group in ipairs(keygroups) do
    assert(group.low == key + 1 and group.low <= group.key and group.key <= group.high, group.key)
    key = group.high
    local velocity = -1
    for _, zone in ipairs(group.zones) do
      assert(zone.low == velocity + 1 and zone.high >= zone.low, zone.low)
      velocity = zone.high
    end
    assert(velocity == 127 and #group.zones <= 4)
    zones = zones + #group.zones
  end
  assert(zones + left == #samples and (#samples == 0 or key == 127))
end
