-- Names of drums. Random file names: reading them raises no error, every sample is mapped or left out,
-- keys and velocities are covered without gaps, and the zones of a sample share a keygroup.
package.path = arg[1] .. "/verbs/lib/?.lua;" .. package.path
local filenames, keymap, namemarks = require "filenames", require "keymap", require "namemarks"

math.randomseed(3)
local PARTS = { "C", "c", "#", "b", "-", "1", "2", "127", "_", " ", "v", "vel", "pp", "♭", "s", "A",
                "g", "9", "note", "\xff", "(", ")", "%", "sharp", ".wav", "/",
                "300000000000000000000" }

local function name()
  local parts = {}
  for i = 1, math.random(1, 9) do parts[i] = PARTS[math.random(#PARTS)] end
  return table.concat(parts)
end

for file, drum in pairs { ["Kick-01-Soft"] = "kick", ["Snare v1_rr2"] = "snare", ["Snare (2)"] = "snare",
                          ["Tom 3 (hard)"] = "tom", ["808 Kick"] = "808 kick", ["Hat_C1"] = "hat c1",
                          ["12"] = "12", ["pp"] = "pp", ["Ride2"] = "ride",
                          ["BongoHi-Softest"] = "bongohi" } do
  assert(namemarks.drum(file) == drum, file .. ": " .. namemarks.drum(file))
end

local last = 0
for word in ("Softest softer soft med hard Harder hardest"):gmatch("%a+") do
  local velocity = namemarks.layer("Bongo-" .. word).velocity
  assert(velocity > last, word)
  last = velocity
end

for _ = 1, 3000 do
  local names, samples, left, zones = {}, {}, 0, 0
  for i = 1, math.random(0, 6) do names[i] = name() end
  for i, read in ipairs((filenames.read(names))) do
    assert(read.name == "" or namemarks.drum(read.name) ~= "", read.name)
    if read.key and read.key >= 0 and read.key <= 127 then
      samples[#samples + 1] = { key = read.key, layer = read.layer, path = names[i],
                                parts = ({ { {} }, { {}, {} } })[math.random(2)] }
    end
  end
  local most = math.random(1, 9)
  local roots = keymap.layers(samples, most, function() left = left + 1 end)
  keymap.ranges(roots, 127)
  local key = -1
  for _, root in ipairs(roots) do
    assert(root.low == key + 1 and root.low <= root.key and root.key <= root.high, root.key)
    key = root.high
    local velocity = -1
    for _, layer in ipairs(root.layers) do
      assert(layer.low == velocity + 1 and layer.high >= layer.low, layer.low)
      velocity = layer.high
    end
    assert(velocity == 127 and #root.layers <= most)
  end
  for _, group in ipairs(keymap.keygroups(roots)) do
    assert(#group.zones <= 4)
    for z, zone in ipairs(group.zones) do
      zones = zones + (zone.first and 1 or 0)
      assert(zone.first or group.zones[z - 1].sample == zone.sample)
    end
  end
  assert(zones + left == #samples and (#samples == 0 or key == 127))
end
