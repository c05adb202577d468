-- zyl show: prints programs as tables.
local cli = require "cli"
local fields = require "fields"
local json = require "json"
local notes = require "notes"
local programs = require "programs"
local references = require "references"
local stereo = require "stereo"
local text = require "text"
local values = require "values"

local options, files = cli.parse {
  verb = "show", notes = true, folders = "programs",
  about = "Prints programs as tables: keygroups with key ranges, zones with velocities and samples.",
  options = {
    { name = "quiet", help = "omit the zones" },
    { name = "json", help = "print a JSON list, one object per file" },
  },
  more = "Samples are not loaded; those whose file does not exist are marked (missing), and zones whose\n"
      .. "channel the file does not have (no channel 2). Zones without a sample are omitted.",
}

local function zonesOf(object, k, channels)
  local zones = {}
  for z = 0, programs.ZONES - 1 do
    local path = object:ZoneSamplePath(k, z)
    if path ~= "" then
      local channel = channels[k * programs.ZONES + z] or 0
      zones[#zones + 1] = {
        number = z + 1, low = object:ZonelowVel(k, z), high = object:ZonehighVel(k, z),
        tune = object:ZonetuneOffset(k, z), pan = object:ZonepanOffset(k, z),
        path = path, lack = references.lack(path, channel), channel = channel,
      }
    end
  end
  stereo.pair(zones)
  return zones
end

local function facts(path)
  local object, channels = programs.read(path, false), programs.channels(path)
  local it = { name = object:PRGname(), channel = object:PRGmidiChannel(),
               poly = object:PRGpoly(), keygroups = {} }
  for k = 0, object:PRGkeyGroups() - 1 do
    it.keygroups[k + 1] = {
      low = object:KGlowKey(k), high = object:KGhighKey(k), tune = object:KGtune(k),
      filter = object:KGfilterFreq(k), zones = zonesOf(object, k, channels),
    }
  end
  host.delete(object)
  return it
end

local function counted(count, one) return ("%d %s%s"):format(count, one, count == 1 and "" or "s") end

-- As edit prints it.
local function value(method, stored) return values.text(fields.find(method), stored) end

-- The cells of a zone. A stereo sample is one row, that of its left zone.
local function cellsOf(zone)
  local pair = zone.pair
  local lack = zone.lack or pair and pair.lack
  return { pair and zone.number .. "+" .. pair.number or tostring(zone.number),
           zone.low .. "–" .. zone.high, value("ZonetuneOffset", zone.tune),
           pair and ("±%d"):format(-zone.pan) or value("ZonepanOffset", zone.pan),
           stereo.name(zone), text.printable(zone.path) .. (lack and "  (" .. lack .. ")" or "") }
end

local function shown(path, it)
  local head = ("%s: \"%s\", %s, %s, MIDI channel %s   (C%d = key 60)\n"):format(
    text.printable(path), text.printable(it.name), counted(#it.keygroups, "keygroup"),
    value("PRGpoly", it.poly), value("PRGmidiChannel", it.channel), notes.middle())
  local rows = { { "keygroup", "keys", "tune", "filter" } }
  if not options.quiet then
    for _, title in ipairs { "zone", "velocity", "tune", "pan", "channel", "sample" } do
      table.insert(rows[1], title)
    end
  end
  for k, keygroup in ipairs(it.keygroups) do
    local row = { tostring(k), notes.range(keygroup.low, keygroup.high),
                  value("KGtune", keygroup.tune), value("KGfilterFreq", keygroup.filter) }
    local zones = {}
    for _, zone in ipairs(options.quiet and {} or keygroup.zones) do
      if not zone.isRight then zones[#zones + 1] = zone end
    end
    for i, zone in ipairs(zones) do
      if i > 1 then row = { "", "", "", "" } end
      for _, cell in ipairs(cellsOf(zone)) do row[#row + 1] = cell end
      rows[#rows + 1] = row
    end
    if #zones == 0 then rows[#rows + 1] = row end
  end
  return head .. text.columns(rows, { [2] = true, [9] = true, [10] = true }, "  ")
end

local function record(path, it, failure)
  local keygroups = {}
  for k, keygroup in ipairs(it and it.keygroups or {}) do
    local zones = {}
    for i, zone in ipairs(keygroup.zones) do
      zones[i] = json.object("zone", zone.number, "low_velocity", zone.low,
        "high_velocity", zone.high, "tune", zone.tune / 256, "pan", zone.pan, "sample", zone.path,
        "missing", zone.lack == "missing", "channel_missing", zone.lack ~= nil and zone.lack ~= "missing",
        "channel", zone.channel >= 0 and zone.channel + 1 or json.null,
        "stereo_with", zone.pair and zone.pair.number or json.null)
    end
    keygroups[k] = json.object("keygroup", k, "low_key", keygroup.low, "high_key", keygroup.high,
      "low_note", notes.name(keygroup.low), "high_note", notes.name(keygroup.high),
      "tune", keygroup.tune / 256, "filter", keygroup.filter, "zones", json.list(zones))
  end
  it = it or {}
  return json.object("file", path, "error", failure, "name", it.name, "voices", it.poly and it.poly + 1,
    "midi_channel", it.channel and it.channel >= 0 and it.channel + 1 or json.null,
    "keygroups", json.list(keygroups))
end

local printer = cli.printer(options.json)
for i, path in ipairs(files) do
  local it, failure = cli.try(facts, path)
  if failure then cli.failed(path, failure) end
  local result
  if options.json then result = record(path, it, failure) elseif it then result = shown(path, it) end
  printer.result(i, result)
end
printer.close()
cli.finish()
