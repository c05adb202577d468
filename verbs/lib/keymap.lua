-- Maps samples to keys and velocities. A sample has a key (its root) and may have a layer,
-- { velocity } or { rank }; the samples of one root become the zones of one keygroup.
local keymap = {}

local MOST_LAYERS = 4

local function level(sample, ranksAreVelocities)
  local layer = sample.layer
  if not layer then return 0, false end
  return layer.velocity or layer.rank, layer.velocity ~= nil or ranksAreVelocities
end

-- Divides velocities 0 to 127 between layers in rising order: half-way between the layers if their
-- velocities are known, otherwise equally.
local function spread(zones)
  local known = true
  for _, zone in ipairs(zones) do known = known and zone.isVelocity end
  local from = 0
  for i, zone in ipairs(zones) do
    zone.low = from
    if i == #zones then
      zone.high = 127
    elseif known then
      zone.high = math.min(math.max((zone.level + zones[i + 1].level) // 2, from), 126)
    else
      zone.high = 128 * i // #zones - 1
    end
    from = zone.high + 1
  end
end

-- Returns the keygroups sorted by root: { key, zones = { { sample, low, high } } }, with up to four
-- zones. Calls leftOut(sample, reason) for each sample that is not used.
function keymap.layers(list, leftOut)
  local byKey, keygroups, highestRank = {}, {}, 0
  for _, sample in ipairs(list) do
    highestRank = math.max(highestRank, sample.layer and sample.layer.rank or 0)
  end
  for _, sample in ipairs(list) do
    local group = byKey[sample.key]
    if not group then
      group = { key = sample.key, zones = {}, taken = {} }
      byKey[sample.key], keygroups[#keygroups + 1] = group, group
    end
    local value, isVelocity = level(sample, highestRank > 16)
    if group.taken[value] then
      leftOut(sample, "same key and layer as " .. group.taken[value])
    else
      group.taken[value] = sample.path
      group.zones[#group.zones + 1] = { sample = sample, level = value, isVelocity = isVelocity }
    end
  end
  table.sort(keygroups, function(a, b) return a.key < b.key end)
  for _, group in ipairs(keygroups) do
    table.sort(group.zones, function(a, b) return a.level < b.level end)
    local count, kept = #group.zones, {}
    for i, zone in ipairs(group.zones) do
      -- Of more than four layers, keep the outer ones and two evenly between them.
      local place = count > MOST_LAYERS and #kept * (count - 1) / (MOST_LAYERS - 1) or i - 1
      if math.floor(place + 0.5) == i - 1 then
        kept[#kept + 1] = zone
      else
        leftOut(zone.sample, "more than four layers")
      end
    end
    group.zones, group.taken = kept, nil
    spread(kept)
  end
  return keygroups
end

-- Sets the key range of each keygroup. Ranges meet half-way between neighbouring roots and end at
-- most `reach` keys from the root.
function keymap.ranges(keygroups, reach)
  for i, group in ipairs(keygroups) do
    local below, above = keygroups[i - 1], keygroups[i + 1]
    group.low = math.max(below and (below.key + group.key) // 2 + 1 or 0, group.key - reach)
    group.high = math.min(above and (group.key + above.key) // 2 or 127, group.key + reach)
  end
end

return keymap
