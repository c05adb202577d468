-- Maps samples to keys and velocities. A sample has
--   key        its root key
--   layer      { velocity }, { rank } (a number in the name) or { order }; optional
--   parts      its zones: a list of { channel, pan, sample }, the last one if another sample plays
-- The samples of one root are its velocity layers. They share keygroups over the same keys: as many
-- as their zones need.
local programs = require "programs"

local keymap = { MOST_LAYERS = 127 }

local RANKS = 16    -- highest number of a layer that is certainly not a velocity

local function level(sample, ranksAreVelocities)
  local layer = sample.layer
  if not layer then return 0, false end
  return layer.velocity or layer.rank or layer.order,
         layer.velocity ~= nil or layer.rank ~= nil and ranksAreVelocities
end

-- Whether the ranks of the samples are velocities: high numbers that do not count layers.
local function areVelocities(list)
  local seen, count, highest = {}, 0, 0
  for _, sample in ipairs(list) do
    local rank = sample.layer and sample.layer.rank
    if rank and not seen[rank] then seen[rank], count = true, count + 1 end
    highest = math.max(highest, rank or 0)
  end
  return highest > RANKS and 2 * count < highest
end

-- Divides velocities 0 to 127 between layers in rising order: half-way between the layers if their
-- velocities are known, otherwise equally.
local function spread(layers)
  local known = true
  for _, layer in ipairs(layers) do known = known and layer.isVelocity end
  local from = 0
  for i, layer in ipairs(layers) do
    layer.low = from
    if i == #layers then
      layer.high = 127
    elseif known then
      -- Later layers keep at least one velocity each.
      layer.high = math.min(math.max((layer.level + layers[i + 1].level) // 2, from),
                            127 - (#layers - i))
    else
      layer.high = 128 * i // #layers - 1
    end
    from = layer.high + 1
  end
end

-- Of more than `most` layers, keeps the outer ones and others evenly between them.
local function thin(layers, most, leftOut)
  local count, kept = #layers, {}
  for i, layer in ipairs(layers) do
    local place = i - 1
    if count > most then place = most == 1 and count - 1 or #kept * (count - 1) / (most - 1) end
    if math.floor(place + 0.5) == i - 1 then
      kept[#kept + 1] = layer
    else
      leftOut(layer.sample, most == 1 and "more than one layer"
                            or ("more than %d layers"):format(most))
    end
  end
  return kept
end

-- Returns the roots in rising order: { key, layers = { { sample, low, high } } }, with up to `most`
-- layers. Calls leftOut(sample, reason) for each sample that is not used.
function keymap.layers(list, most, leftOut)
  local byKey, roots, ranksAreVelocities = {}, {}, areVelocities(list)
  for _, sample in ipairs(list) do
    local root = byKey[sample.key]
    if not root then
      root = { key = sample.key, layers = {}, taken = {} }
      byKey[sample.key], roots[#roots + 1] = root, root
    end
    local value, isVelocity = level(sample, ranksAreVelocities)
    if root.taken[value] then
      leftOut(sample, "same key and layer as " .. root.taken[value])
    else
      root.taken[value] = sample.path
      root.layers[#root.layers + 1] = { sample = sample, level = value, isVelocity = isVelocity }
    end
  end
  table.sort(roots, function(a, b) return a.key < b.key end)
  for _, root in ipairs(roots) do
    table.sort(root.layers, function(a, b) return a.level < b.level end)
    root.layers, root.taken = thin(root.layers, most, leftOut), nil
    spread(root.layers)
  end
  return roots
end

-- Sets the key range of each root. Ranges meet half-way between neighbouring roots and end at most
-- `reach` keys from the root.
function keymap.ranges(roots, reach)
  for i, root in ipairs(roots) do
    local below, above = roots[i - 1], roots[i + 1]
    root.low = math.max(below and (below.key + root.key) // 2 + 1 or 0, root.key - reach)
    root.high = math.min(above and (root.key + above.key) // 2 or 127, root.key + reach)
  end
end

-- Returns the keygroups of the roots: { key, low, high, zones = { { sample, of, low, high, channel,
-- pan, first } } }, where `of` is the sample in the list, `sample` the one that the zone plays, and
-- `first` marks the first zone of a sample. The zones of a sample share a keygroup.
function keymap.keygroups(roots)
  local keygroups = {}
  for _, root in ipairs(roots) do
    local group
    for _, layer in ipairs(root.layers) do
      local parts = layer.sample.parts
      if not group or #group.zones + #parts > programs.ZONES then
        group = { key = root.key, low = root.low, high = root.high, zones = {} }
        keygroups[#keygroups + 1] = group
      end
      for p, part in ipairs(parts) do
        group.zones[#group.zones + 1] = { sample = part.sample or layer.sample, of = layer.sample,
                                          low = layer.low, high = layer.high,
                                          channel = part.channel, pan = part.pan, first = p == 1 }
      end
    end
  end
  return keygroups
end

return keymap
