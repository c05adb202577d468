-- zyl find: lists the keygroups, zones and samples that play a key.
local cli = require "cli"
local json = require "json"
local notes = require "notes"
local programs = require "programs"
local references = require "references"
local stereo = require "stereo"
local text = require "text"

local options, words = cli.parse {
  verb = "find", notes = true, folders = "programs", mixed = true, operands = "KEY PROGRAM|FOLDER…", repeats = true,
  about = "Lists the keygroups, zones and samples of programs that play a key: a note (C#3, Bb2, C-2;\n"
       .. "C3 is key 60 unless --octave says otherwise) or a number from 0 to 127.",
  options = {
    { name = "velocity", kind = "integer", value = "V", low = 0, high = 127,
      help = "only zones that play that velocity" },
    { name = "json", help = "print a JSON list, one object per program" },
  },
  resultStatus = true, status = "0 found, 1 nothing plays the key, 2 wrong command line, 4 some files failed",
}
local key = notes.key(words[1])
if not key then cli.usage("'" .. words[1] .. "' is not " .. notes.accepted()) end
if #words < 2 then cli.usage("no PROGRAM given") end
local files = cli.withoutFolders(table.move(words, 2, #words, 1, {}))

-- The zones that play the key: { keygroup and zone from 0, low and high key and velocity, path, pan,
-- channel }, with the pairs of stereo.lua.
local function find(path)
  local program = programs.read(path)
  local found = {}
  if key < program:PRGlowKey() or key > program:PRGhighKey() then
    cli.note(path, ("the key is outside the program's play range, %d to %d"):format(
             program:PRGlowKey(), program:PRGhighKey()))
    return found
  end
  local channels, k = programs.channels(path), program:KGFindByKey(key)
  while k >= 0 do
    local zones = {}
    for z = 0, programs.ZONES - 1 do
      local low, high = program:ZonelowVel(k, z), program:ZonehighVel(k, z)
      local sounds = not options.velocity or options.velocity >= low and options.velocity <= high
      local samplePath, channel = program:ZoneSamplePath(k, z), channels[k * programs.ZONES + z] or 0
      if sounds and samplePath ~= "" then
        zones[#zones + 1] = { keygroup = k, zone = z, lowKey = program:KGlowKey(k),
                              highKey = program:KGhighKey(k), low = low, high = high,
                              path = samplePath, pan = program:ZonepanOffset(k, z),
                              tune = program:ZonetuneOffset(k, z),
                              channel = channel, lack = references.lack(samplePath, channel) }
      end
    end
    stereo.pair(zones)
    table.move(zones, 1, #zones, #found + 1, found)
    k = k + 1 < program:PRGkeyGroups() and program:KGFindByKey(key, k + 1) or -1
  end
  return found
end

local function shown(path, found)
  local rows = { { "program", "keygroup", "zone", "keys", "velocities", "channel", "sample" } }
  for _, it in ipairs(found) do
    local lack = it.lack or it.pair and it.pair.lack
    if not it.isRight then
      rows[#rows + 1] = {
        text.printable(path), tostring(it.keygroup + 1),
        it.zone + 1 .. (it.pair and "+" .. it.pair.zone + 1 or ""), notes.range(it.lowKey, it.highKey),
        it.low .. "-" .. it.high, stereo.name(it),
        text.printable(it.path) .. (lack and " (" .. lack .. ")" or ""),
      }
    end
  end
  return text.columns(rows, { true, false, false, true, false, true, true })
end

local function record(path, found, failure)
  local list = {}
  for i, it in ipairs(found or {}) do
    list[i] = json.object("keygroup", it.keygroup + 1, "zone", it.zone + 1, "low_key", it.lowKey,
                          "high_key", it.highKey,
                          "low_note", notes.name(it.lowKey), "high_note", notes.name(it.highKey),
                          "low_velocity", it.low, "high_velocity", it.high,
                          "sample", it.path, "missing", it.lack == "missing",
                          "channel_missing", it.lack ~= nil and it.lack ~= "missing",
                          "channel", it.channel >= 0 and it.channel + 1 or json.null,
                          "stereo_with", it.pair and it.pair.zone + 1 or json.null)
  end
  return json.object("file", path, "error", failure, "key", key, "note", notes.name(key),
                     "sounds", json.list(list))
end

local printer, any = cli.printer(options.json), false
for i, path in ipairs(files) do
  local found, failure = cli.try(find, path)
  if failure then cli.failed(path, failure) end
  any = any or found ~= nil and #found > 0
  if options.json then
    printer.result(i, record(path, found, failure))
  else
    printer.result(i, found and #found > 0 and shown(path, found) or nil)
  end
end
printer.close()
if not any and not cli.anyFailed() then
  cli.note(notes.label(key), "nothing plays the key")
end
cli.finish()
if not any then os.exit(1, true) end
