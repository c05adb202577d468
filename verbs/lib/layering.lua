-- Finds the velocity layers and round robins among recordings (see recordings.lua) of one key.
local namemarks = require "namemarks"
local recordings = require "recordings"

local layering = {}

local SAME_DB = 1.5       -- recordings whose loudness differs by at most this are one layer
local LADDER_TAKES = 5    -- takes whose numbers rise with the loudness are layers, from this number on

local function quieter(a, b)
  if a.loudness ~= b.loudness then return a.loudness < b.loudness end
  return a.index < b.index
end

-- The recordings by key: a list of lists.
local function byKey(list)
  local groups, found = {}, {}
  for _, it in ipairs(list) do
    if not found[it.key] then
      found[it.key] = {}
      groups[#groups + 1] = found[it.key]
    end
    table.insert(found[it.key], it)
  end
  return groups
end

-- Keeps one of the recordings whose names differ only in the round robin, or, if they have the same
-- layer, in the number at the end.
local function firstTakes(group, leaveOut)
  local kept, first = {}, {}
  table.sort(group, function(a, b)
    local left, right = a.name.take, b.name.take
    if left and right and left.number ~= right.number then return left.number < right.number end
    return a.index < b.index
  end)
  for _, it in ipairs(group) do
    local take = it.name.take
    local layer = it.name.layer
    local name = take and (take.marked or layer)
                 and it.name.folder .. take.base:lower() .. "/"
                     .. (layer and (layer.velocity or layer.rank) or "")
    if name and first[name] then
      leaveOut(it, "round robin of " .. first[name].path)
    else
      if name then first[name] = it end
      kept[#kept + 1] = it
    end
  end
  return kept
end

-- Whether the numbers of the takes rise with their loudness, so that they are layers however small
-- the steps. `sorted` is in order of loudness.
local function isLadder(sorted)
  for i, it in ipairs(sorted) do
    local take, before = it.name.take, i > 1 and sorted[i - 1].name.take
    if not take or take.marked or before and (take.base ~= before.base or take.number <= before.number)
    then
      return false
    end
  end
  return #sorted >= LADDER_TAKES
end

-- Makes layers of recordings in order of loudness; of those with the same loudness keeps one, if
-- possible one with a mark for its layer.
local function byLoudness(group, leaveOut)
  table.sort(group, quieter)
  local same, kept = isLadder(group) and 0 or SAME_DB, {}
  local at = 1
  while at <= #group do
    local last, best = at, group[at]
    while group[last + 1] and (group[last + 1].loudness <= group[at].loudness + same) do
      last = last + 1
      local it = group[last]
      if it.name.layer and not best.name.layer
          or (it.name.layer ~= nil) == (best.name.layer ~= nil) and it.index < best.index then
        best = it
      end
    end
    for i = at, last do
      if group[i] ~= best then
        local isTake = namemarks.areSimilar(group[i].name.name, best.name.name)
        leaveOut(group[i], ("%s %s (%.1f and %.1f LUFS)"):format(
                 isTake and "round robin of" or "same key and loudness as", best.path,
                 group[i].loudness, best.loudness))
      end
    end
    kept[#kept + 1] = best
    best.layer, best.layerFrom = { order = #kept }, "loudness"
    at = last + 1
  end
  return kept
end

-- Sets the layer of the recordings with a key: that of the name, or, if the name of a recording of
-- the key has none, by loudness. Returns the recordings to map; calls leaveOut(recording, reason) for
-- the others. Also returns the number of keys with layers by loudness.
function layering.find(batch, list, leaveOut)
  local groups, unmarked, wanted = byKey(list), {}, {}
  for g, group in ipairs(groups) do
    groups[g] = firstTakes(group, leaveOut)
    for _, it in ipairs(groups[g]) do
      if not it.name.layer and #groups[g] > 1 then unmarked[groups[g]] = true end
    end
    for _, it in ipairs(groups[g]) do wanted[it] = unmarked[groups[g]] end
  end
  recordings.measureLoudness(batch, wanted)
  local kept, ordered = {}, 0
  for _, group in ipairs(groups) do
    if unmarked[group] then
      local measured = {}
      for _, it in ipairs(group) do
        if not it.failure then measured[#measured + 1] = it end
      end
      group = byLoudness(measured, leaveOut)
      if #group > 1 then ordered = ordered + 1 end
    else
      for _, it in ipairs(group) do it.layer, it.layerFrom = it.name.layer, it.name.layer and "name" end
    end
    table.move(group, 1, #group, #kept + 1, kept)
  end
  return kept, ordered
end

return layering
