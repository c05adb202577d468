-- Writes instruments (formats/instrument.lua) as presets of a SoundFont bank, version 2.04: 16 bits, or
-- 24 if a sample has more. Every preset has an instrument, every region a zone, and a stereo region two.
local audio = require "zyl.audio"
local instrument = require "formats.instrument"
local references = require "references"
local samples = require "samples"

local sf2 = {}

-- Numbers of generators.
local G = { modLfoToPitch = 5, vibLfoToPitch = 6, modEnvToPitch = 7, filterFc = 8, filterQ = 9, modLfoToFilterFc = 10,
            modEnvToFilterFc = 11, modLfoToVolume = 13, pan = 17, delayModLfo = 21, freqModLfo = 22, delayVibLfo = 23,
            freqVibLfo = 24, attackModEnv = 26, holdModEnv = 27, decayModEnv = 28, sustainModEnv = 29,
            releaseModEnv = 30, attackVolEnv = 34, decayVolEnv = 36, sustainVolEnv = 37, releaseVolEnv = 38,
            instrument = 41, keyRange = 43, velRange = 44, attenuation = 48, coarseTune = 51, fineTune = 52,
            sampleId = 53, sampleModes = 54, scaleTuning = 56, exclusiveClass = 57, rootKey = 58 }
-- Sources of modulators: controllers, and the general ones; all linear.
local SOURCES = { Velocity = 0x0002, Key = 0x0203, Modwheel = 0x0081, Pressure = 0x000D, ["Soft pedal"] = 0x00C3,
                  Bend = 0x020E }
local INVERTED_VELOCITY, WHEEL, PRESSURE = 0x0102, 0x0081, 0x000D
-- What a modulation moves: generator, and units of the generator per unit of the target.
local TARGETS = { cutoff = { G.filterFc, 1 }, resonance = { G.filterQ, 10 }, pitch = { G.fineTune, 1 },
                  level = { G.attenuation, -10 }, pan = { G.pan, 5 } }
local TIMES = { ["Env1 attack"] = G.attackVolEnv, ["Env1 decay"] = G.decayVolEnv, ["Env1 release"] = G.releaseVolEnv,
                attack = G.attackModEnv, decay = G.decayModEnv, release = G.releaseModEnv }
local ENVELOPE = { cutoff = G.modEnvToFilterFc, pitch = G.modEnvToPitch }
local LFOS = { mod = { pitch = { G.modLfoToPitch, 1 }, cutoff = { G.modLfoToFilterFc, 1 },
                       level = { G.modLfoToVolume, 10 }, freq = G.freqModLfo, delay = G.delayModLfo },
               vib = { pitch = { G.vibLfoToPitch, 1 }, freq = G.freqVibLfo, delay = G.delayVibLfo } }
local MODES = { loop = 1, sustain = 3, none = 0, once = 0 }
-- Signed generators are clamped to these ranges, others to 16 bits.
local RANGES = { [G.filterFc] = { 1500, 13500 }, [G.filterQ] = { 0, 960 }, [G.attenuation] = { 0, 1440 },
                 [G.pan] = { -500, 500 }, [G.sustainVolEnv] = { 0, 1440 }, [G.sustainModEnv] = { 0, 1000 },
                 [G.holdModEnv] = { -12000, 5000 }, [G.delayModLfo] = { -12000, 5000 },
                 [G.delayVibLfo] = { -12000, 5000 }, [G.freqModLfo] = { -16000, 4500 },
                 [G.freqVibLfo] = { -16000, 4500 }, [G.coarseTune] = { -120, 120 } }
for _, gen in ipairs { G.attackModEnv, G.decayModEnv, G.releaseModEnv, G.attackVolEnv, G.decayVolEnv, G.releaseVolEnv } do
  RANGES[gen] = { -12000, 8000 }
end
local LONGEST = 8000           -- timecents: the release of a sample that plays to its end
local GAP = 46                 -- zero frames after each sample
local MARGIN, SHORTEST = 8, 32 -- frames of sound around a loop, and of a loop, that players need
local NAME = 20
local MOST_BYTES, MOST_ROWS = 0xFFFFFFFF, 0xFFFF

local function timecents(seconds) return 1200 * math.log(math.max(seconds, 1e-4), 2) end
local function round(value) return math.floor(value + 0.5) end

-- The generators and modulators of a zone.
local function newZone()
  local zone = { gens = {}, mods = {}, base = {} }
  function zone.gen(number, value)
    local range = RANGES[number] or { -32768, 32767 }
    zone.gens[#zone.gens + 1] = string.pack("<I2i2", number, math.min(math.max(round(value), range[1]), range[2]))
  end
  -- Modulators of the same source and target replace each other, so amounts are added up.
  function zone.mod(source, target, amount, by)
    for _, it in ipairs(zone.mods) do
      if it.source == source and it.target == target and it.by == (by or 0) then
        it.amount = it.amount + amount
        return
      end
    end
    zone.mods[#zone.mods + 1] = { source = source, target = target, amount = amount, by = by or 0 }
  end
  return zone
end

local function lose(losses, region, it, reason)
  losses:add(it.fields[1], reason or ("%s%s to %s"):format(it.source, it.by and " and " .. it.by or "", it.target),
             region.keygroup)
end

-- Which of the two oscillators an LFO of a region uses.
local function oscillators(region)
  local targets, place = {}, {}
  for _, it in ipairs(region.modulations) do
    if region.lfos[it.source] then
      targets[it.source] = targets[it.source] or {}
      targets[it.source][it.target] = true
    end
  end
  for _, name in ipairs { "LFO1", "LFO2" } do
    local of = targets[name]
    if of and (of.cutoff or of.level) and not place.mod then place[name], place.mod = LFOS.mod, true end
  end
  for _, name in ipairs { "LFO1", "LFO2" } do
    if targets[name] and not place[name] then
      if not place.vib then
        place[name], place.vib = LFOS.vib, true
      elseif not place.mod then
        place[name], place.mod = LFOS.mod, true
      end
    end
  end
  return place
end

local function addLfo(zone, region, it, place, losses)
  local lfo, way = region.lfos[it.source], place[it.source]
  local target = way and way[it.target]
  if not target or it.by and not SOURCES[it.by] then return lose(losses, region, it) end
  if not zone.base[way] then
    zone.base[way] = true
    zone.gen(way.freq, 1200 * math.log(lfo.speed / 8.1758, 2))
    zone.gen(way.delay, timecents(lfo.delay))
    if lfo.wave ~= "triangle" then lose(losses, region, it, ("%s: a triangle instead of a %s"):format(it.source, lfo.wave)) end
  end
  if it.by then zone.mod(SOURCES[it.by], target[1], it.amount * target[2]) else zone.gen(target[1], it.amount * target[2]) end
end

-- The envelope of a region that is its modulation envelope, and its form.
local function envelopeOf(region, losses)
  for _, name in ipairs { "Env2", "Env3" } do
    for _, it in ipairs(region.modulations) do
      if it.source == name and ENVELOPE[it.target] then
        local form = instrument.ahdsr(region.envelopes[name])
        if not form.exact then lose(losses, region, it, name .. ": as attack, decay, sustain and release") end
        return name, form
      end
    end
  end
end

local function addEnvelope(zone, form)
  local fall = 1 - form.sustain / 100
  zone.gen(G.attackModEnv, timecents(form.attack))
  if form.hold > 0 then zone.gen(G.holdModEnv, timecents(form.hold)) end
  -- The generator is the time of a fall to 0.
  zone.gen(G.decayModEnv, timecents(fall > 0 and form.decay / fall or form.decay))
  zone.gen(G.sustainModEnv, 10 * (100 - form.sustain))
  zone.gen(G.releaseModEnv, timecents(form.release))
end

local function addTime(zone, region, it, name, form, losses)
  local envelope, stage = it.target:match("^(Env%d) (%a+)$")
  local times = envelope == "Env1" and region.envelopes.Env1 or envelope == name and form
  local target = envelope == "Env1" and TIMES[it.target] or TIMES[stage]
  if not times or not SOURCES[it.source] then return lose(losses, region, it) end
  local cents = timecents(times[stage] + it.amount) - timecents(times[stage])
  zone.mod(SOURCES[it.source], target, it.source == "Key" and cents * 64 / 60 or cents)
end

local function addModulations(zone, region, losses)
  local place = oscillators(region)
  local name, form = envelopeOf(region, losses)
  if name then addEnvelope(zone, form) end
  for _, it in ipairs(region.modulations) do
    local target, source = TARGETS[it.target], SOURCES[it.source]
    if it.source == "Velocity" and it.target == "level" then
      if it.amount > 0 then
        zone.mod(INVERTED_VELOCITY, G.attenuation, 10 * it.amount)
      else
        zone.mod(SOURCES.Velocity, G.attenuation, -10 * it.amount)
        zone.level = zone.level - it.amount
      end
    elseif region.lfos[it.source] then
      addLfo(zone, region, it, place, losses)
    elseif it.source == name and ENVELOPE[it.target] and (not it.by or SOURCES[it.by]) then
      local amount = it.amount * form.peak / 100
      if it.by then zone.mod(SOURCES[it.by], ENVELOPE[it.target], amount) else zone.gen(ENVELOPE[it.target], amount) end
    elseif it.target:find("^Env%d ") then
      addTime(zone, region, it, name, form, losses)
    elseif not source or not target or it.by then
      lose(losses, region, it)
    elseif it.source == "Key" then
      -- The source is 0 at key 64 and 1 at key 128.
      zone.mod(source, target[1], it.amount * target[2] * 64 / 60)
      zone.base[it.target] = (zone.base[it.target] or 0) + it.amount * 4 / 60
    else
      zone.mod(source, target[1], it.amount * target[2])
    end
  end
end

local function addFilter(zone, region, losses)
  local filter = region.filter
  if not filter then return end
  if filter.poles ~= 2 then
    losses:add("KGfilterType", ("two poles instead of %d"):format(filter.poles), region.keygroup)
  end
  zone.gen(G.filterFc, 1200 * math.log(filter.cutoff / 8.1758, 2) + (zone.base.cutoff or 0))
  local resonance = filter.resonance + (zone.base.resonance or 0)
  if resonance > 0 then zone.gen(G.filterQ, 10 * resonance) end
end

local function addLoudness(zone, region)
  local amp = region.envelopes.Env1
  zone.gen(G.attackVolEnv, timecents(amp.attack))
  if amp.sustain < 100 then
    zone.gen(G.decayVolEnv, timecents(amp.decay))
    zone.gen(G.sustainVolEnv, amp.sustain > 0 and -200 * math.log(amp.sustain / 100, 10) or 1440)
  end
  zone.gen(G.releaseVolEnv, region.mode == "once" and LONGEST or timecents(amp.release))
  local level = math.min(zone.level + (zone.base.level or 0), 0)
  if level < 0 then zone.gen(G.attenuation, -10 * level) end
end

-- The region without a filter that is not a low pass, and what moves it.
local function withoutFilter(region, losses)
  if not region.filter or region.filter.kind == "low" then return region end
  losses:add("KGfilterType", "no " .. region.filter.kind .. " pass: without a filter", region.keygroup)
  local kept = {}
  for _, it in ipairs(region.modulations) do
    if it.target ~= "cutoff" and it.target ~= "resonance" then kept[#kept + 1] = it end
  end
  return setmetatable({ filter = false, modulations = kept }, { __index = region })
end

-- A zone without its ranges, pan and sample.
local function zoneOf(region, losses)
  local zone = newZone()
  region = withoutFilter(region, losses)
  zone.level = region.level
  -- The standard's own modulators that the program does not have.
  zone.mod(0x0502, G.attenuation, 0)
  zone.mod(INVERTED_VELOCITY, G.filterFc, 0)
  zone.mod(INVERTED_VELOCITY, G.filterFc, 0, 0x0D02)
  zone.mod(WHEEL, G.vibLfoToPitch, 0)
  zone.mod(PRESSURE, G.vibLfoToPitch, 0)
  addModulations(zone, region, losses)
  addFilter(zone, region, losses)
  addLoudness(zone, region)
  if region.transpose ~= 0 then zone.gen(G.coarseTune, region.transpose) end
  local fine = region.tune + (zone.base.pitch or 0)
  if round(fine) ~= 0 then zone.gen(G.fineTune, fine) end
  if region.fixed then zone.gen(G.scaleTuning, 0) end
  if region.group then zone.gen(G.exclusiveClass, region.group) end
  if MODES[region.mode] > 0 then zone.gen(G.sampleModes, MODES[region.mode]) end
  zone.gen(G.rootKey, region.root)
  return zone
end

local function addLosses(it)
  local losses = it.losses
  if it.bendUp ~= 200 or it.bendDown ~= 200 then
    losses:add(it.bendUp ~= 200 and "PRGbendRangeUp" or "PRGpitchBendDown", "the player sets the range of the pitch wheel")
  end
  if it.voices ~= 16 then losses:add("PRGpoly", "the player sets the number of voices") end
  for _, region in ipairs(it.regions) do
    if region.output then losses:add("PRGindyOutput", "individual outputs", region.keygroup) end
    if region.fades.inkey or region.fades.outkey then losses:add("PRGkeyGrpCrossFade", "crossfades", region.keygroup) end
    if region.fades.invel or region.fades.outvel then losses:add("KGvelZoneCrossFade", "crossfades", region.keygroup) end
  end
end

-- A name of at most 20 bytes that is not in `taken`, cut between characters.
local function nameOf(text, suffix, taken)
  text = text:gsub("%c", " ")
  local number, name = 1
  repeat
    local ending = (number > 1 and "~" .. number or "") .. suffix
    local length = math.min(#text, NAME - #ending)
    while length > 0 and length < #text and (text:byte(length + 1) & 0xC0) == 0x80 do length = length - 1 end
    name = text:sub(1, length) .. ending
    number = number + 1
  until not taken[name]
  taken[name] = true
  return name
end

-- How the frames of a sample are stored so that its loop is legal: how many frames that continue the
-- loop are inserted after it, how many of the frames after the loop are kept (they play only after the
-- release of a "sustain" loop), and the loop. A loop that starts too early is shifted, which does not
-- change how it sounds.
local function arrange(frames, loop, mode)
  if not loop then return { frames = frames, insert = 0, tail = 0 } end
  local length, tail = loop.stop - loop.first, mode == "sustain" and frames - loop.stop or 0
  local first = loop.first < MARGIN and loop.first + MARGIN or loop.first
  local stop = first + math.ceil(SHORTEST / length) * length
  local insert
  if tail >= MARGIN then
    insert = math.ceil((stop - loop.stop) / length) * length  -- whole copies
  else
    insert, tail = stop + MARGIN - loop.stop, 0
  end
  return { frames = loop.stop + insert + tail, insert = insert, tail = tail, head = loop.stop, loopLength = length,
           first = first, stop = stop }
end

-- The bytes of the stored frames; `width` bytes for each frame of `values`.
local function arranged(values, item, width)
  local from = item.start * width
  if not item.form.head then return values:sub(from + 1, from + item.form.frames * width) end
  local form, stop = item.form, from + item.form.head * width
  local loop = values:sub(stop - form.loopLength * width + 1, stop)
  local inserted = form.insert == 0 and "" or loop:rep(math.ceil(form.insert / form.loopLength)):sub(1, form.insert * width)
  return values:sub(from + 1, stop) .. inserted .. values:sub(stop + 1, stop + form.tail * width)
end

-- The samples of a bank: data (what is stored) and headers (which refer to it).
local function newPool()
  return { data = {}, headers = {}, byData = {}, byHeader = {}, contents = {}, names = {}, bits = 16 }
end

local function contentOf(pool, path)
  local real = host.absolutePath(path) or path
  if not pool.contents[real] then
    pool.contents[real] = ("%d %s"):format((host.fileInfo(real) or {}).size or -1, host.digest(real) or real)
  end
  return pool.contents[real]
end

local function dataOf(pool, region, channel)
  local sample = region.sample
  local loop = region.loop and { first = region.loop.first - sample.first, stop = region.loop.stop - sample.first }
  local form = arrange(sample.last - sample.first + 1, loop, region.mode)
  local key = table.concat({ contentOf(pool, sample.path), channel, sample.first, form.frames, form.first or "",
                             form.stop or "", form.insert }, " ")
  local item = pool.byData[key]
  if not item then
    item = { path = sample.path, channel = channel, start = sample.first, form = form, rate = sample.rate }
    pool.byData[key], pool.data[#pool.data + 1] = item, item
    if sample.bits > 16 then pool.bits = 24 end
  end
  item.key = key
  return item
end

-- The indexes of the headers for a region, from 0: one, or those of left and right.
local function headersOf(pool, region)
  local items, stem = {}, references.parts(references.base(region.sample.path))
  for i, channel in ipairs(region.sample.channels) do items[i] = dataOf(pool, region, channel) end
  local key = items[1].key .. (items[2] and "\0" .. items[2].key or "")
  if not pool.byHeader[key] then
    local first = #pool.headers
    for i, item in ipairs(items) do
      local pair = #items == 2
      pool.headers[#pool.headers + 1] = {
        item = item, root = region.root, name = nameOf(stem, pair and (i == 1 and "_L" or "_R") or "", pool.names),
        type = pair and (i == 1 and 4 or 2) or 1, link = pair and first + 2 - i or 0,
      }
    end
    pool.byHeader[key] = { first, items[2] and first + 1 }
  end
  return pool.byHeader[key]
end

-- The zones of an instrument as lists of generators and modulators, packed; the first is the global
-- one, with what all others share.
local function zonesOf(it, pool)
  local zones = {}
  for _, region in ipairs(it.regions) do
    local shared = zoneOf(region, it.losses)
    for i, header in ipairs(headersOf(pool, region)) do
      local zone = { gens = table.move(shared.gens, 1, #shared.gens, 1, {}), mods = {} }
      local pan = 5 * (region.pan + (region.width and (i == 1 and -region.width or region.width) or 0))
                  + 5 * (shared.base.pan or 0)
      pan = math.min(math.max(round(pan), -500), 500)
      if pan ~= 0 then zone.gens[#zone.gens + 1] = string.pack("<I2i2", G.pan, pan) end
      for m, mod in ipairs(shared.mods) do
        local amount = math.min(math.max(round(mod.amount), -32768), 32767)
        zone.mods[m] = string.pack("<I2I2i2I2I2", mod.source, mod.target, amount, mod.by, 0)
      end
      zone.ranges = string.pack("<I2BB", G.keyRange, region.low, region.high)
                    .. string.pack("<I2BB", G.velRange, region.lowVel, region.highVel)
      zone.sample = string.pack("<I2I2", G.sampleId, header)
      zones[#zones + 1] = zone
    end
  end
  local global = { gens = {}, mods = {} }
  for _, kind in ipairs { "gens", "mods" } do
    local count = {}
    for _, zone in ipairs(zones) do
      for _, row in ipairs(zone[kind]) do count[row] = (count[row] or 0) + 1 end
    end
    for i, zone in ipairs(zones) do
      local kept = {}
      for _, row in ipairs(zone[kind]) do
        if count[row] < #zones then kept[#kept + 1] = row elseif i == 1 then table.insert(global[kind], row) end
      end
      zone[kind] = kept
    end
  end
  table.insert(zones, 1, global)
  return zones
end

local function chunk(id, data)
  return id .. string.pack("<I4", #data) .. data .. (#data % 2 == 1 and "\0" or "")
end

local function named(name) return name .. ("\0"):rep(NAME - #name) end

-- Presets in the order of their numbers; two with the same number get different ones.
local function numbered(list)
  local taken, presets = {}, {}
  for i, it in ipairs(list) do
    local number, bank = it.number, 0
    while taken[bank << 8 | number] do
      number = number + 1
      if number == 128 then number, bank = 0, bank + 1 end
      if bank == 128 then error("a bank has at most 16384 presets", 0) end
    end
    taken[bank << 8 | number] = true
    it.bank, it.preset = bank, number
    presets[i] = { it = it, bank = bank, number = number, index = i - 1 }
  end
  table.sort(presets, function(a, b) return (a.bank << 8 | a.number) < (b.bank << 8 | b.number) end)
  return presets
end

-- The chunk with all tables but the sample headers.
local function tables(list, pool)
  local phdr, pbag, pgen, inst, ibag, igen, imod = {}, {}, {}, {}, {}, {}, {}
  local names, instrumentNames = {}, {}
  for _, preset in ipairs(numbered(list)) do
    phdr[#phdr + 1] = named(nameOf(preset.it.name, "", names))
                      .. string.pack("<I2I2I2I4I4I4", preset.number, preset.bank, #pbag, 0, 0, 0)
    pbag[#pbag + 1] = string.pack("<I2I2", #pgen, 0)
    pgen[#pgen + 1] = string.pack("<I2I2", G.instrument, preset.index)
  end
  phdr[#phdr + 1] = named("EOP") .. string.pack("<I2I2I2I4I4I4", 0, 0, #pbag, 0, 0, 0)
  for _, it in ipairs(list) do
    inst[#inst + 1] = named(nameOf(it.name, "", instrumentNames)) .. string.pack("<I2", #ibag)
    for _, zone in ipairs(zonesOf(it, pool)) do
      ibag[#ibag + 1] = string.pack("<I2I2", math.min(#igen, MOST_ROWS), math.min(#imod, MOST_ROWS))
      if zone.ranges then
        igen[#igen + 1], igen[#igen + 2] = zone.ranges:sub(1, 4), zone.ranges:sub(5)
      end
      for _, row in ipairs(zone.gens) do igen[#igen + 1] = row end
      if zone.sample then igen[#igen + 1] = zone.sample end
      for _, row in ipairs(zone.mods) do imod[#imod + 1] = row end
    end
    if math.max(#igen, #imod, #ibag) >= MOST_ROWS then
      error("the programs have more zones and settings than one bank can have", 0)
    end
  end
  inst[#inst + 1] = named("EOI") .. string.pack("<I2", #ibag)
  pbag[#pbag + 1] = string.pack("<I2I2", #pgen, 0)
  ibag[#ibag + 1] = string.pack("<I2I2", #igen, #imod)
  for _, rows in ipairs { pgen, igen } do rows[#rows + 1] = ("\0"):rep(4) end
  imod[#imod + 1] = ("\0"):rep(10)
  local function rows(id, all) return chunk(id, table.concat(all)) end
  return rows("phdr", phdr) .. rows("pbag", pbag) .. chunk("pmod", ("\0"):rep(10)) .. rows("pgen", pgen)
         .. rows("inst", inst) .. rows("ibag", ibag) .. rows("imod", imod) .. rows("igen", igen)
end

local function sampleHeaders(pool)
  local shdr = {}
  for i, it in ipairs(pool.headers) do
    local form, at = it.item.form, it.item.position
    shdr[i] = named(it.name) .. string.pack("<I4I4I4I4I4BbI2I2", at, at + form.frames, at + (form.first or 0),
              at + (form.stop or 0), math.min(math.max(it.item.rate, 1), 0xFFFFFFFF), it.root, 0, it.link, it.type)
  end
  shdr[#shdr + 1] = named("EOS") .. ("\0"):rep(26)
  return chunk("shdr", table.concat(shdr))
end

-- Prepares a bank of instruments: computes the layout and adds to the losses. Raises an error if the
-- bank would be too large. Write it with sf2.write.
function sf2.bank(list, name)
  local pool = newPool()
  local pdta = tables(list, pool)
  local frames = 0
  for _, item in ipairs(pool.data) do
    item.position = frames
    frames = frames + item.form.frames + GAP
  end
  pdta = "pdta" .. pdta .. sampleHeaders(pool)
  for _, it in ipairs(list) do addLosses(it) end
  local title = name:gsub("%c", " ")
  title = title:sub(1, 255) .. (#title % 2 == 0 and "\0\0" or "\0")
  local info = "INFO" .. chunk("ifil", string.pack("<I2I2", 2, pool.bits == 24 and 4 or 1)) .. chunk("isng", "EMU8000\0")
               .. chunk("INAM", title) .. chunk("ISFT", "zyl\0")
  local fine = pool.bits == 24 and 8 + frames + frames % 2 or 0
  local sdta = 4 + 8 + 2 * frames + fine
  local bank = { pool = pool, frames = frames, fine = fine > 0, pdta = chunk("LIST", pdta) }
  local total = 4 + 8 + #info + 8 + sdta + #bank.pdta
  if total > MOST_BYTES then error("a bank has at most 4 GiB", 0) end
  bank.head = "RIFF" .. string.pack("<I4", total) .. "sfbk" .. chunk("LIST", info) .. "LIST" .. string.pack("<I4", sdta)
              .. "sdtasmpl" .. string.pack("<I4", 2 * frames)
  return bank
end

local function writeSamples(bank, file, shown)
  local smpl = #bank.head
  local sm24 = smpl + 2 * bank.frames + 8
  local program, sample, path = host.new("ZylSProgram"), nil, nil
  for i, item in ipairs(bank.pool.data) do
    shown((i - 1) / #bank.pool.data, item.path)
    if item.path ~= path then
      if sample then samples.close(program, sample) end
      local reason
      sample, reason = samples.open(program, item.path)
      if not sample then error(item.path .. ": " .. reason, 0) end
      path = item.path
    end
    local upper, lower = audio.pcm(program, sample, item.channel, bank.pool.bits)
    upper = arranged(upper, item, 2)
    if #upper ~= 2 * item.form.frames then error(item.path .. ": has changed", 0) end
    file:seek("set", smpl + 2 * item.position)
    assert(file:write(upper, ("\0"):rep(2 * GAP)))
    if bank.fine then
      file:seek("set", sm24 + item.position)
      assert(file:write(arranged(lower, item, 1), ("\0"):rep(GAP)))
    end
  end
  if sample then samples.close(program, sample) end
  host.delete(program)
end

-- Writes a bank to the path of an empty file, which has no other content afterwards. Memory: that of
-- the largest sample. Raises an error on failure.
function sf2.write(bank, path, shown)
  local file <close> = assert(io.open(path, "r+b"))
  assert(file:write(bank.head))
  writeSamples(bank, file, shown)
  local place = #bank.head + 2 * bank.frames
  file:seek("set", place)
  if bank.fine then
    assert(file:write("sm24", string.pack("<I4", bank.frames + bank.frames % 2)))
    file:seek("set", place + 8 + bank.frames + bank.frames % 2)
  end
  assert(file:write(bank.pdta))
  assert(file:flush())
  return true
end

return sf2
