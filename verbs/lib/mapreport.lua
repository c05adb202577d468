-- The output of zyl map: the layout as a table, or as records for JSON.
local json = require "json"
local notes = require "notes"
local rootkeys = require "rootkeys"
local text = require "text"

local mapreport = {}

local function cents(it) return 100 * (it.note - it.key) end

-- "stereo", "mono", or the channel that is played of a file with several or of a pair.
local function channelsOf(it)
  if #it.parts > 1 then return it.parts[1].pan == it.parts[2].pan and "mix" or "stereo" end
  if it.channels == 1 and not it.right then return "mono" end
  local part = it.parts[1]
  return (part.channel == 0 and (part.sample or it) == it) and "left" or "right"
end

-- The file, or those of a pair that are played.
local function pathsOf(it)
  local first, last = it.parts[1].sample or it, it.parts[#it.parts].sample or it
  return text.printable(first.path)
         .. (last ~= first and " + " .. text.printable(last.path:match("[^/]*$")) or "")
end

function mapreport.table(keygroups)
  local rows, key = { { "keys", "root", "velocities", "channels", "from", "cents", "file" } }, nil
  for _, group in ipairs(keygroups) do
    for _, zone in ipairs(group.zones) do
      local it = zone.of
      if zone.first then
        rows[#rows + 1] = {
          group.key ~= key and ("%3d-%-3d"):format(group.low, group.high) or "",
          group.key ~= key and notes.label(group.key) or "",
          ("%d-%d"):format(zone.low, zone.high), channelsOf(it), it.source,
          ("%+.1f"):format(cents(it)), pathsOf(it),
        }
      end
      key = group.key
    end
  end
  return text.columns(rows, { true, true, false, true, true, false, true }, "")
end

-- The place of each recording, with its first zone: names and values of a record's last fields.
-- `written` is the path of the written program, or nil.
local function places(keygroups, written)
  local place = {}
  for k, group in ipairs(keygroups) do
    for z, zone in ipairs(group.zones) do
      place[zone.sample] = place[zone.sample] or { "keygroup", k, "zone", z, "low_key", group.low, "high_key", group.high,
                             "low_velocity", zone.low, "high_velocity", zone.high,
                             "written", written or json.null }
    end
  end
  return place
end

-- Calls each(index, record) for every recording.
function mapreport.records(list, keygroups, how, written, each)
  local none = { "keygroup", nil, "zone", nil, "low_key", nil, "high_key", nil, "low_velocity", nil,
                 "high_velocity", nil, "written", nil }
  local place = places(keygroups, written)
  for i, it in ipairs(list) do
    local pitch = it.pitch and json.object("key", (notes.nearest(it.pitch)), "cents",
                                           (select(2, notes.nearest(it.pitch))))
    each(i, json.object("file", it.path, "error", it.failure, "key", it.key,
      "note", it.key and notes.name(it.key), "cents", it.key and cents(it), "source", it.source,
      "channels", it.channels, "zones", it.zones, "chunk_key", it.chunk, "name_key", rootkeys.ofName(it, how), "pitch", pitch, "differ", it.differ,
      "loudness", it.loudness, "layer_from", it.layerFrom,
      "left_out", it.leftOut, table.unpack(place[it] or none, 1, 14)))
  end
end

return mapreport
