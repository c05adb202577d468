-- The neutral form of a program, from which the formats are written. An instrument has
--   path, name, number          the program's file, name and MIDI program number
--   voices, bendUp, bendDown    polyphony; the pitch bend in cents
--   regions                     in the order of keygroups and zones
--   losses                      see losses.lua: what of the program this form does not have
-- and a region has
--   keygroup                    its number from 1
--   low, high, lowVel, highVel  ranges of keys and velocities
--   fades                       crossfades, by "in" or "out" and "key" or "vel": { from, to }
--   sample                      path, channels (a list, two for stereo), count (of the file's channels),
--                               frames, rate, bits, first and last (the frames that play)
--   mode, loop                  "loop", "sustain" (until the release), "none" or "once" (ignores the
--                               release); loop: first and stop, the frame after it
--   root, transpose, tune       key of the original pitch; semitones and cents added
--   fixed                       whether all keys play the original pitch
--   level                       dB at velocity 127, at most 0 in the loudest region
--   pan, width                  percent; the width of a stereo sample
--   filter                      kind ("low", "high", "band"), poles, cutoff in Hz, resonance in dB; or nil
--   envelopes                   by name: Env1 (loudness) has attack, decay, sustain and release;
--                               Env2 and Env3 have times and levels of four steps
--   lfos                        by name, LFO1 and LFO2: wave, speed in Hz, delay
--   modulations                 list of source, by (a second source or nil), target, amount (in the
--                               target's unit, at the greatest value of the source), fields
--   output, group               individual output from 1; mute group from 1
-- Times are in seconds, levels in percent.
local disk = require "disk"
local fields = require "fields"
local losses = require "formats.losses"
local meanings = require "meanings"
local programs = require "programs"
local samples = require "samples"
local stereo = require "stereo"
local values = require "values"

local instrument = {}

local MODES = { [0] = "loop", "sustain", "none", "once" }  -- by the sample's playback type
local KINDS = { [0] = "low", "low", "low", "high", "high", "band", "band" }
local POLES = { [0] = 2, 4, 6, 2, 4, 2, 4 }
local LAST_SOURCE = 23
local OPEN = 99  -- number of a cutoff that passes everything

-- Amounts with a fixed source: field, source, target, and optionally a second source, or the sign.
local AMOUNTS = {
  { "PRGloudVel", "Velocity", "level" }, { "KGvelVolume", "Velocity", "level" },
  { "PRGloudKey", "Key", "level" }, { "PRGloudPrs", "Pressure", "level" },
  { "PRGpanKey", "Key", "pan" }, { "PRGpanModWheel", "Modwheel", "pan" },
  { "PRGpressurePitchBend", "Pressure", "pitch" }, { "KGfilterKey", "Key", "cutoff" },
  { "KGfilterVel", "Velocity", "cutoff" }, { "KGfilterLFO2", "LFO2", "cutoff" },
  { "KGfilterEnv2", "Env2", "cutoff" }, { "KGenvPitch", "Env2", "pitch" },
  { "KGpitchModLFO1", "LFO1", "pitch" }, { "KGvelFilterEnv", "Env2", "cutoff", by = "Velocity" },
  { "PRGsoftPedalLoudness", "Soft pedal", "level", sign = -1 },
  { "PRGsoftPedalFilter", "Soft pedal", "cutoff", sign = -1 },
}
-- Amounts whose source is selected: field of the source, of the amount, target.
local SELECTED = {
  { "PRGfilterModSel1", "KGfilterModGain1", "cutoff" }, { "PRGfilterModSel2", "KGfilterModGain2", "cutoff" },
  { "PRGfilterModSel3", "KGfilterModGain3", "cutoff" }, { "PRGpitchModSel", "KGpitchModGain", "pitch" },
  { "PRGpanModSel1", "PRGpanModGain1", "pan" }, { "PRGpanModSel2", "PRGpanModGain2", "pan" },
  { "PRGpanModSel3", "PRGpanModGain3", "pan" }, { "PRGampModSel", "KGampModGain", "level" },
  { "PRGampModSel2", "PRGampModGain2", "level" }, { "PRGampModSel3", "PRGampModGain3", "level" },
  { "KGfilterResonanceModSel", "KGfilterResonanceModGain", "resonance" },
}
-- Amounts added to the number of a time: field, source, field of the time, target.
local TIMES = {
  { "KGampVelModAtt", "Velocity", "KGampEnvAttack", "Env1 attack" },
  { "KGampVelModRel", "Velocity", "KGampEnvRelease", "Env1 release" },
  { "KGampVelModOffRel", "Release velocity", "KGampEnvRelease", "Env1 release" },
  { "KGampKeyModDecRel", "Key", "KGampEnvDecay", "Env1 decay" },
  { "KGampKeyModDecRel", "Key", "KGampEnvRelease", "Env1 release" },
  { "PRGsoftPedalAttack", "Soft pedal", "KGampEnvAttack", "Env1 attack" },
}
for _, env in ipairs { "2", "3" } do
  for _, row in ipairs { { "VelModRate1", "Velocity", "Rate1", "attack" }, { "VelModRate4", "Velocity", "Rate4", "release" },
                         { "VelModOffRate4", "Release velocity", "Rate4", "release" },
                         { "KeyModRate34", "Key", "Rate3", "decay" }, { "KeyModRate34", "Key", "Rate4", "release" } } do
    TIMES[#TIMES + 1] = { "KGenv" .. env .. row[1], row[2], "KGenv" .. env .. row[3], "Env" .. env .. " " .. row[4] }
  end
end
-- The depth of an LFO: a constant part, and parts by source.
local DEPTHS = {
  LFO1 = { { "PRGLFOdepth" }, { "PRGLFOdepthWheel", "Modwheel" }, { "PRGLFOdepthPrs", "Pressure" },
           { "PRGLFOdepthVel", "Velocity" } },
  LFO2 = { { "PRGLFO2depth" } },
}
-- Fields without effect on a note, and those that only select what others do.
local SILENT = { KGSelect = true, PRGLFOdesync = true, PRGLFO2retrigger = true, ZoneSamplePath = true }

-- Reads fields and remembers which.
local function reader(program)
  local read = { seen = {} }
  function read.raw(method, k, z)
    read.seen[method] = true
    return fields.read(program, { method = method, family = method:match("^KG") or method:match("^Zone") or "PRG" }, k, z)
  end
  function read.unit(method, k, z) return meanings.value(method, read.raw(method, k, z)) end
  -- A time; numbers above the usual range are treated as the highest.
  function read.time(method, k) return meanings.seconds(math.min(read.raw(method, k), 99)) end
  return read
end

local function addModulation(region, source, by, target, amount, field)
  if amount == 0 then return end
  for _, it in ipairs(region.modulations) do
    if it.source == source and it.by == by and it.target == target then
      it.amount = it.amount + amount
      table.insert(it.fields, field)
      return
    end
  end
  table.insert(region.modulations, { source = source, by = by, target = target, amount = amount, fields = { field } })
end

local function addSource(region, read, source, target, amount, field)
  for _, part in ipairs(DEPTHS[source] or { {} }) do
    local share = part[1] and read.unit(part[1]) / 100 or 1
    addModulation(region, source, part[2], target, amount * share, field)
  end
end

local function addModulations(region, read, program, k)
  region.modulations = {}
  for _, row in ipairs(AMOUNTS) do
    local amount = read.unit(row[1], k) * (row.sign or 1)
    if row.by then
      addModulation(region, row[2], row.by, row[3], amount, row[1])
    else
      addSource(region, read, row[2], row[3], amount, row[1])
    end
  end
  local usesEnv3 = false
  for _, row in ipairs(SELECTED) do
    local number, amount = read.raw(row[1], k), read.unit(row[2], k)
    local source = number <= LAST_SOURCE and program:ModulationSource(number) or "source " .. number
    if number > 0 then addSource(region, read, source, row[3], amount, row[2]) end
    usesEnv3 = usesEnv3 or source == "Env3" and row[3] == "cutoff" and amount ~= 0
  end
  local byVelocity = read.unit("KGenv3VelFilter", k)
  if usesEnv3 then addModulation(region, "Env3", "Velocity", "cutoff", byVelocity, "KGenv3VelFilter") end
  for _, row in ipairs(TIMES) do
    local steps, time = read.raw(row[1], k), read.raw(row[3], k)
    local changed = math.min(math.max(time + steps, 0), 99)
    addModulation(region, row[2], nil, row[4], meanings.seconds(changed) - meanings.seconds(math.min(time, 99)), row[1])
  end
end

-- Modulations whose source or target does nothing.
local function removeUnused(region)
  local used = { Env1 = true }
  for _, it in ipairs(region.modulations) do used[it.source] = true end
  local kept = {}
  for _, it in ipairs(region.modulations) do
    local envelope = it.target:match("^(Env%d)")
    local moot = envelope and not used[envelope]
                 or (it.target == "cutoff" or it.target == "resonance") and not region.filter
                 or it.amount == 0 or region.lfos[it.source] and region.lfos[it.source].speed == 0
    if not moot then kept[#kept + 1] = it end
  end
  region.modulations = kept
end

local ONLY_OPENS = { Velocity = true, Modwheel = true, Pressure = true, Env1 = true, Env2 = true, Env3 = true }

local function filterOf(region, read, k, z)
  local type = math.min(read.raw("KGfilterType", k), 13)
  local number = math.min(math.max(read.raw("KGfilterFreq", k) + read.raw("ZonefilterOffset", k, z), 0), OPEN)
  local resonance = math.max(read.unit("KGresonance", k), read.unit("KGfilterResonance", k))
  local filter = { kind = KINDS[type // 2], poles = POLES[type // 2], cutoff = meanings.value("KGfilterFreq", number),
                   resonance = type % 2 == 1 and resonance or 0 }
  local moves = false
  for _, it in ipairs(region.modulations) do
    if it.target == "cutoff" then
      moves = moves or filter.kind ~= "low" or it.amount < 0 or not ONLY_OPENS[it.source]
    elseif it.target == "resonance" then
      moves = moves or type % 2 == 1
    end
  end
  local open = filter.kind == "low" and number == OPEN or filter.kind == "high" and number == 0
  if open and not moves and filter.resonance == 0 then return nil end
  return filter
end

local function envelopesOf(read, k)
  local all = { Env1 = { attack = read.time("KGampEnvAttack", k), decay = read.time("KGampEnvDecay", k),
                         sustain = math.min(read.unit("KGampEnvSustain", k), 100),
                         release = read.time("KGampEnvRelease", k) } }
  for _, env in ipairs { "2", "3" } do
    local it = { times = {}, levels = {} }
    for step = 1, 4 do
      it.times[step] = read.time("KGenv" .. env .. "Rate" .. step, k)
      it.levels[step] = math.min(read.unit("KGenv" .. env .. "Level" .. step, k), 100)
    end
    all["Env" .. env] = it
  end
  return all
end

-- An envelope of four steps as one with attack, hold, decay, sustain (percent of the peak), release and
-- peak (percent). `exact` is false if it has another form. Returns nil for other envelopes.
function instrument.ahdsr(it)
  if not it.times then return nil end
  local t, l = it.times, it.levels
  if l[3] > l[1] or l[1] == 0 then
    return { attack = t[1] + t[2] + t[3], hold = 0, decay = 0.001, sustain = 100, release = t[4], peak = l[3], exact = false }
  end
  local form = { attack = t[1], hold = 0, decay = t[2] + t[3], sustain = 100 * l[3] / l[1], release = t[4], peak = l[1],
                 exact = l[4] == 0 and (l[2] == l[1] or l[2] == l[3]) }
  if l[2] == l[1] then
    form.hold, form.decay = l[3] < l[1] and t[2] or 0, t[3]
  elseif l[2] == l[3] then
    form.decay = t[2]
  end
  return form
end

local WAVES = { [0] = "triangle", "sawtooth", "square", "random" }

local function lfosOf(read)
  local all = {}
  for name, prefix in pairs { LFO1 = "PRGLFO", LFO2 = "PRGLFO2" } do
    all[name] = { wave = WAVES[read.raw(prefix .. "waveform")] or "triangle", speed = read.unit(prefix .. "speed"),
                  delay = read.time(prefix .. "delay") }
  end
  return all
end

-- Facts of the sample files, by path.
local function sampleFacts(program, cache, path)
  if not cache[path] then
    local sample, reason = samples.open(program, path)
    if not sample then return nil, reason end
    cache[path] = samples.facts(program, sample)
    samples.close(program, sample)
  end
  return cache[path]
end

local function setPitch(region, read, k, z, facts)
  local constant = read.raw("ZoneconstantPitch", k, z) % 2 == 1
  local tune = read.unit("PRGtune") + read.unit("KGtune", k) + read.unit("ZonetuneOffset", k, z)
  region.fixed, region.root = constant, math.min(facts.key, 127)
  if not constant then
    tune = tune - facts.tune * 100 / 256 + read.unit("PRGplayOctave") + (region.root - facts.key) * 100
    local root = region.root - math.floor(tune / 100 + 0.5)
    tune = tune + (math.min(math.max(root, 0), 127) - region.root) * 100
    region.root = math.min(math.max(root, 0), 127)
  end
  region.transpose = math.floor(tune / 100 + 0.5)
  region.tune = tune - 100 * region.transpose
end

local function setLoop(region, read, k, z, facts, lost)
  local type = read.raw("Zoneplaybacktype", k, z)
  region.mode = MODES[type == 0 and facts.playback or type - 1] or "none"
  if facts.frames == 0 then return end
  local last = facts.last >= 0 and math.min(facts.last, facts.frames - 1) or facts.frames - 1
  local first = math.min(math.max(facts.first, 0), last)
  region.sample.first, region.sample.last = first, last
  if region.mode ~= "loop" and region.mode ~= "sustain" then return end
  local loop = facts.loops[1]
  if loop and loop.last >= loop.first and loop.first >= first and loop.first <= last then
    region.loop = { first = loop.first, stop = math.min(loop.last, last) + 1 }
    if loop.fraction ~= 0 then lost:add("loop", "its fraction of a frame", region.keygroup) end
    if #facts.loops > 1 then lost:add("loop", "only the first of several loops plays", region.keygroup) end
  else
    region.mode = "none"
  end
end

-- The zones of a keygroup that play, each { z, path, channel, ... } as stereo.pair expects them.
local function zonesOf(program, read, channels, k)
  local zones = {}
  for z = 0, programs.ZONES - 1 do
    local path = program:ZoneSamplePath(k, z)
    local zone = { z = z, path = path, channel = channels[k * programs.ZONES + z] or 0,
                   low = read.raw("ZonelowVel", k, z), high = read.raw("ZonehighVel", k, z),
                   pan = read.raw("ZonepanOffset", k, z) }
    -- Zones are a pair only if all other fields are equal too.
    local all = {}
    for _, field in ipairs(fields.all()) do
      if field.family == "Zone" and field.method ~= "ZonepanOffset" then
        all[#all + 1] = tostring(fields.read(program, field, k, z))
      end
    end
    zone.tune = table.concat(all, " ")
    if path ~= "" and zone.low <= math.min(zone.high, 127) then zones[#zones + 1] = zone end
  end
  stereo.pair(zones)
  return zones
end

local function regionOf(program, read, it, k, zone, cache)
  local facts, reason = sampleFacts(program, cache, zone.path)
  if not facts then error(zone.path .. ": " .. reason, 0) end
  local region = { keygroup = k + 1, lowVel = zone.low, highVel = math.min(zone.high, 127) }
  local channels = zone.pair and { 0, 1 } or { zone.channel }
  if zone.channel < 0 then channels = facts.channels > 1 and { 0, 1 } or { 0 } end
  if channels[#channels] >= facts.channels then
    error(("%s: has no channel %d"):format(zone.path, channels[#channels] + 1), 0)
  end
  if zone.channel < 0 and facts.channels > 2 then
    it.losses:add("channels", "of more than two, the first two", k + 1)
  end
  region.sample = { path = zone.path, channels = channels, frames = facts.frames, rate = facts.rate,
                    bits = facts.bits, count = facts.channels }
  local octave = 12 * read.raw("PRGplayOctave")
  region.low = math.max(read.raw("KGlowKey", k) - octave, read.raw("PRGlowKey"), 0)
  region.high = math.min(read.raw("KGhighKey", k) - octave, read.raw("PRGhighKey"), 127)
  if region.low > region.high or facts.frames == 0 then return nil end
  setPitch(region, read, k, zone.z, facts)
  setLoop(region, read, k, zone.z, facts, it.losses)
  local centre = zone.pair and 0 or zone.pan
  region.pan = math.min(math.max(2 * (centre + read.raw("PRGstereoPan")), -100), 100)
  region.width = zone.pair and math.min(-2 * zone.pan, 100) or #channels == 2 and 100 or nil
  region.envelopes, region.lfos = envelopesOf(read, k), lfosOf(read)
  addModulations(region, read, program, k)
  region.filter = filterOf(region, read, k, zone.z)
  removeUnused(region)
  region.level = read.unit("PRGloudness") + read.unit("ZoneloudnessOffset", k, zone.z)
  for _, modulation in ipairs(region.modulations) do
    if modulation.source == "Velocity" and modulation.target == "level" then
      region.level = region.level + modulation.amount
    end
  end
  local output, group = read.raw("PRGindyOutput"), read.raw("KGmuteGroup", k)
  local offset = read.raw("ZoneoutOffset", k, zone.z)
  region.output = output >= 0 and output + offset + 1 or nil
  region.group = group > 0 and group or nil
  return region
end

-- The crossfade where the ranges of two regions overlap; `kind` is "key" or "vel".
local function fade(a, b, kind, low, high)
  if a[low] < b[low] and b[low] <= a[high] and a[high] < b[high] then
    a.fades["out" .. kind], b.fades["in" .. kind] = { b[low], a[high] }, { b[low], a[high] }
  end
end

local function addFades(it, read)
  local byKey = read.raw("PRGkeyGrpCrossFade") ~= 0
  for _, region in ipairs(it.regions) do region.fades = {} end
  for _, a in ipairs(it.regions) do
    local byVelocity = read.raw("KGvelZoneCrossFade", a.keygroup - 1) ~= 0
    if byVelocity or byKey then
      for _, b in ipairs(it.regions) do
        if byVelocity and a.keygroup == b.keygroup then fade(a, b, "vel", "lowVel", "highVel") end
        if byKey and a.keygroup ~= b.keygroup then fade(a, b, "key", "low", "high") end
      end
    end
  end
end

-- Whether the field is the source or the amount of a modulation that has only one of both.
local function isHalf(program, field, k)
  local other
  if field.method:find("ModGain") then
    other = field.method:gsub("ModGain", "ModSel"):gsub("^PRGLFO", "PRGLFO1")
  elseif field.method:find("ModSel") then
    other = field.method:gsub("ModSel", "ModGain"):gsub("^PRGLFO1", "PRGLFO")
  end
  return other and fields.read(program, { method = other, family = field.family }, k) == 0
end

-- Adds to the losses the fields that an instrument does not have, if their value is not that of a new
-- program.
local function addUnread(it, program, read)
  local new = host.new("ZylSProgram")
  new:Create(host.null)
  local used = {}
  for _, region in ipairs(it.regions) do used[region.keygroup - 1] = true end
  fields.walk(program:PRGkeyGroups(), function(field, k, z)
    if read.seen[field.method] or SILENT[field.method] then return end
    if field.family ~= "PRG" and not used[k] then return end
    if field.family == "Zone" and program:ZoneSamplePath(k, z) == "" then return end
    local value = fields.read(program, field, k, z)
    if value ~= fields.read(new, field, 0, 0) and not isHalf(program, field, k) then
      it.losses:add(field.name, values.text(field, value), field.family ~= "PRG" and k + 1 or nil)
    end
  end)
  host.delete(new)
end

-- Reads a program file; raises an error if it or one of its samples cannot be read. `shown` is called
-- with the fraction done.
function instrument.read(path, shown)
  local program, channels = programs.read(path, false), programs.channels(path)
  local read, cache = reader(program), {}
  local it = { path = path, name = program:PRGname(), number = math.min(program:PRGmidiProg(), 127),
               voices = read.raw("PRGpoly") + 1, bendUp = read.unit("PRGbendRangeUp"),
               bendDown = read.unit("PRGpitchBendDown"), regions = {}, losses = losses.new() }
  local missing, count = {}, program:PRGkeyGroups()
  for _, method in ipairs { "PRGname", "PRGmidiProg" } do read.seen[method] = true end
  for k = 0, count - 1 do
    shown(k / count)
    for _, zone in ipairs(zonesOf(program, read, channels, k)) do
      if not disk.isFile(zone.path) then
        missing[#missing + 1] = not missing[zone.path] and zone.path or nil
        missing[zone.path] = true
      elseif not zone.isRight then
        it.regions[#it.regions + 1] = regionOf(program, read, it, k, zone, cache)
      end
    end
  end
  if #missing > 0 then
    error(("%s is missing%s"):format(missing[1], #missing > 1 and (", and %d more samples"):format(#missing - 1) or ""), 0)
  end
  if #it.regions == 0 then error("no key plays a sample", 0) end
  -- The loudest region at full level, so that the balance is kept.
  local loudest, output = 0, read.unit("PRGstereoLevel")
  for _, region in ipairs(it.regions) do loudest = math.max(loudest, region.level) end
  for _, region in ipairs(it.regions) do
    region.level = region.level - loudest + math.min(math.max(output, -144), 0)
  end
  addFades(it, read)
  addUnread(it, program, read)
  host.delete(program)
  return it
end

return instrument
