-- Writes instruments (formats/instrument.lua) as SFZ text. Opcodes that all regions share are in
-- <global>, those of a keygroup in <group>. loop_end and end are the last frame, counted from 0.
local instrument = require "formats.instrument"

local sfz = {}

-- Controllers; version 2 of the format numbers other sources as controllers too.
local CONTROLLERS = { Modwheel = 1, ["Soft pedal"] = 67, Pressure = 129, Velocity = 131, ["Release velocity"] = 132 }
local TARGETS = { cutoff = "cutoff", pitch = "pitch", level = "volume", pan = "pan", resonance = "resonance" }
-- Opcodes of pairs of source and target, and what the amount is divided by.
local DIRECT = {
  ["Velocity>cutoff"] = { "fil_veltrack" }, ["Velocity>pitch"] = { "pitch_veltrack" },
  ["Velocity>pan"] = { "pan_veltrack" }, ["Key>cutoff"] = { "fil_keytrack", 60 },
  ["Key>level"] = { "amp_keytrack", 60 }, ["Key>pan"] = { "pan_keytrack", 60 },
}
local EG_TARGETS = { cutoff = "fileg", pitch = "pitcheg" }  -- of envelopes of version 1
local WAVES = { triangle = 0, square = 3, sawtooth = 7, random = 12 }
local LOOPS = { loop = "loop_continuous", sustain = "loop_sustain", none = "no_loop", once = "one_shot" }
local FILTERS = { low = { [2] = "lpf_2p", [4] = "lpf_4p", [6] = "lpf_6p" }, high = { [2] = "hpf_2p", [4] = "hpf_4p" },
                  band = { [2] = "bpf_2p", [4] = "bpf_2p" } }
local QUIETEST, MOST_RESONANCE = -144, 40

local function number(value)
  if math.type(value) == "integer" then return ("%d"):format(value) end
  local text = ("%.4f"):format(value):gsub("%.?0+$", "")
  return text == "-0" and "0" or text
end

-- A list of opcodes that leaves out those with the player's default.
local function opcodes()
  local list = {}
  function list.add(name, value, default)
    if value == nil or value == default then return end
    list[#list + 1] = { name = name, text = type(value) == "string" and value or number(value) }
  end
  return list
end

-- The points of an envelope, { time, level }, and the index of the one that is sustained.
local function points(it)
  if it.attack then
    return { { it.attack, 100 }, { it.decay, it.sustain }, { it.release, 0 } }, 2
  end
  local list = {}
  for step = 1, 4 do list[step] = { it.times[step], it.levels[step] } end
  return list, 3
end

-- Adds an envelope of version 1 with the modulations by it to one target; false if it cannot express
-- them. A region has one for each target.
local function addSimpleEnvelope(ops, region, name, target, list, used)
  local form, prefix = instrument.ahdsr(region.envelopes[name]), EG_TARGETS[target]
  if not form or not form.exact or not prefix or used[prefix] then return false end
  for _, it in ipairs(list) do
    if it.by and it.by ~= "Velocity" then return false end
  end
  used[prefix] = true
  ops.add(prefix .. "_attack", form.attack)
  ops.add(prefix .. "_hold", form.hold, 0)
  ops.add(prefix .. "_decay", form.decay)
  ops.add(prefix .. "_sustain", form.sustain)
  ops.add(prefix .. "_release", form.release)
  for _, it in ipairs(list) do ops.add(prefix .. (it.by and "_vel2depth" or "_depth"), it.amount * form.peak / 100) end
  for _, it in ipairs(region.modulations) do
    local stage = it.target:match("^" .. name .. " (%a+)$")
    if stage and it.source == "Velocity" then
      ops.add(prefix .. "_vel2" .. stage, it.amount)
      it.done = true
    end
  end
  return true
end

-- Numbers of the envelopes of version 2 are counted in `used`.
local function addEnvelope(ops, region, name, target, list, used)
  if addSimpleEnvelope(ops, region, name, target, list, used) then return end
  used.count = used.count + 1
  local prefix = ("eg%02d_"):format(used.count)
  local steps, held = points(region.envelopes[name])
  for i, step in ipairs(steps) do
    ops.add(prefix .. "time" .. i, step[1])
    ops.add(prefix .. "level" .. i, step[2] / 100)
  end
  ops.add(prefix .. "sustain", held)
  for _, it in ipairs(list) do
    ops.add(prefix .. TARGETS[target] .. (it.by and "_oncc" .. CONTROLLERS[it.by] or ""), it.amount)
  end
end

local function addLfo(ops, region, name, list)
  local lfo, prefix = region.lfos[name], "lfo0" .. name:sub(-1) .. "_"
  ops.add(prefix .. "freq", lfo.speed)
  ops.add(prefix .. "wave", WAVES[lfo.wave])
  ops.add(prefix .. "delay", lfo.delay)
  for _, it in ipairs(list) do
    ops.add(prefix .. TARGETS[it.target] .. (it.by and "_oncc" .. CONTROLLERS[it.by] or ""), it.amount)
  end
end

local function addTime(ops, it)
  local stage = it.target:match("^Env1 (%a+)$")
  if not stage then return false end
  if it.source == "Velocity" then
    ops.add("ampeg_vel2" .. stage, it.amount)
  elseif it.source == "Release velocity" or it.source == "Soft pedal" then
    ops.add(("ampeg_%s_oncc%d"):format(stage, CONTROLLERS[it.source]), it.amount)
  else
    return false
  end
  return true
end

local function addModulations(ops, region, losses)
  local lists, order, used = {}, {}, { count = 0 }
  for _, it in ipairs(region.modulations) do
    local direct = DIRECT[it.source .. ">" .. it.target]
    local moves = it.source:find("^Env%d$") or it.source:find("^LFO%d$")
    it.done = it.source == "Velocity" and it.target == "level"
    if direct then
      ops.add(direct[1], it.amount / (direct[2] or 1))
      it.done = true
    elseif moves and TARGETS[it.target] and (not it.by or CONTROLLERS[it.by]) then
      local key = it.source .. (it.source:find("Env") and ">" .. it.target or "")
      if not lists[key] then
        lists[key], order[#order + 1] = { source = it.source, target = it.target }, key
      end
      table.insert(lists[key], it)
      it.done = true
    elseif CONTROLLERS[it.source] and TARGETS[it.target] and not it.by and not it.done then
      ops.add(("%s_oncc%d"):format(TARGETS[it.target], CONTROLLERS[it.source]), it.amount)
      it.done = true
    elseif addTime(ops, it) then
      it.done = true
    end
  end
  for _, key in ipairs(order) do
    local list = lists[key]
    if list.source:find("^LFO") then
      addLfo(ops, region, list.source, list)
    else
      addEnvelope(ops, region, list.source, list.target, list, used)
    end
  end
  for _, it in ipairs(region.modulations) do
    if not it.done then
      losses:add(it.fields[1], ("%s%s to %s"):format(it.source, it.by and " and " .. it.by or "", it.target), region.keygroup)
    end
  end
end

local function addLevel(ops, region)
  local amount = 0
  for _, it in ipairs(region.modulations) do
    if it.source == "Velocity" and it.target == "level" then amount = it.amount end
  end
  local track = 100 * (1 - 10 ^ (-math.abs(amount) / 20))
  -- A negative track is at full level at velocity 0.
  ops.add("volume", math.max(region.level - math.min(amount, 0), QUIETEST) + 0.0, 0.0)
  ops.add("amp_veltrack", amount < 0 and -track or track)
end

local function addFilter(ops, region, losses)
  local filter = region.filter
  if not filter then return end
  ops.add("fil_type", FILTERS[filter.kind][filter.poles])
  ops.add("cutoff", math.floor(filter.cutoff + 0.5))
  ops.add("resonance", math.min(filter.resonance, MOST_RESONANCE) + 0.0, 0.0)
  if filter.kind == "band" and filter.poles == 4 then
    losses:add("KGfilterType", "a band pass of two poles instead of four", region.keygroup)
  end
end

local function addFades(ops, region)
  for kind, names in pairs { key = { "lokey", "hikey" }, vel = { "lovel", "hivel" } } do
    for _, way in ipairs { "in", "out" } do
      local range = region.fades[way .. kind]
      for i = 1, range and 2 or 0 do ops.add(("xf%s_%s"):format(way, names[i]), range[i]) end
    end
  end
end

-- The opcodes of a region; the first `ranges` of them are its sample and ranges.
local function opcodesOf(it, region, nameOf, losses)
  local ops, sample = opcodes(), region.sample
  ops.add("sample", nameOf(sample))
  ops.add("lokey", region.low)
  ops.add("hikey", region.high)
  ops.add("pitch_keycenter", region.root)
  ops.add("lovel", region.lowVel, 0)
  ops.add("hivel", region.highVel, 127)
  ops.add("pitch_keytrack", region.fixed and 0 or nil)
  ops.add("transpose", region.transpose, 0)
  ops.add("tune", region.tune + 0.0, 0.0)
  ops.add("offset", sample.first, 0)
  if sample.last < sample.frames - 1 then ops.add("end", sample.last) end
  ops.add("loop_mode", LOOPS[region.mode])
  if region.loop then
    ops.add("loop_start", region.loop.first)
    ops.add("loop_end", region.loop.stop - 1)
  end
  addLevel(ops, region)
  ops.add("pan", region.pan + 0.0, 0.0)
  ops.add("width", region.width and region.width + 0.0, 100.0)
  ops.add("output", region.output)
  ops.add("group", region.group)
  ops.add("off_by", region.group)
  local amp = region.envelopes.Env1
  ops.add("ampeg_attack", amp.attack)
  if amp.sustain < 100 then
    ops.add("ampeg_decay", amp.decay)
    ops.add("ampeg_sustain", amp.sustain)
  end
  ops.add("ampeg_release", amp.release)
  ops.add("bend_up", it.bendUp + 0.0)
  ops.add("bend_down", -it.bendDown + 0.0)
  addFilter(ops, region, losses)
  addFades(ops, region)
  addModulations(ops, region, losses)
  return ops
end

-- Removes the opcodes that all lists share, and returns them.
local function shared(lists)
  local count, common, kept = {}, {}, {}
  for _, list in ipairs(lists) do
    for _, op in ipairs(list) do
      local key = op.name .. "=" .. op.text
      count[key] = (count[key] or 0) + 1
    end
  end
  for i, list in ipairs(lists) do
    kept[i] = {}
    for _, op in ipairs(list) do
      local isShared = count[op.name .. "=" .. op.text] == #lists and op.name ~= "sample"
      table.insert(isShared and (i == 1 and common or {}) or kept[i], op)
    end
  end
  return common, kept
end

-- Lines of opcodes; the sample has a line for itself.
local function lines(ops)
  local text, line = {}, ""
  for _, op in ipairs(ops) do
    local word = op.name .. "=" .. op.text
    if op.name == "sample" then
      text[#text + 1] = word
    elseif line ~= "" and #line + #word > 98 then
      text[#text + 1], line = line, word
    else
      line = line == "" and word or line .. " " .. word
    end
  end
  if line ~= "" then text[#text + 1] = line end
  return table.concat(text, "\n") .. (#text > 0 and "\n" or "")
end

-- nil if a sample's name can be written, otherwise the reason.
function sfz.whyNotName(name)
  local bad = name:match("%c") or name:match("[<>$]") or name:match("%s[%w_]+=") or name:match("//") or name:match("%s$")
  return bad and ("'%s' in a sample's path would end it in SFZ (see --collect)"):format((bad:gsub("%c", "?"))) or nil
end

-- The text of an instrument; nameOf(sample) is the path to write for a sample. Adds to the losses.
function sfz.text(it, nameOf)
  local lists, losses = {}, it.losses
  for i, region in ipairs(it.regions) do lists[i] = opcodesOf(it, region, nameOf, losses) end
  local common, kept = shared(lists)
  local parts = { "// ", (it.name:gsub("%c", " ")), "\n<global>\npolyphony=", it.voices, "\n", lines(common) }
  local i = 1
  while i <= #kept do
    local keygroup, group = it.regions[i].keygroup, {}
    while i <= #kept and it.regions[i].keygroup == keygroup do
      group[#group + 1] = kept[i]
      i = i + 1
    end
    local ofGroup, ofRegions = {}, group
    if #group > 1 then ofGroup, ofRegions = shared(group) end
    parts[#parts + 1] = ("\n<group> // keygroup %d\n"):format(keygroup) .. lines(ofGroup)
    for _, ops in ipairs(ofRegions) do parts[#parts + 1] = "<region>\n" .. lines(ops) end
  end
  local lost = losses:lines()
  if #lost > 0 then parts[#parts + 1] = "\n// Not expressed:\n" end
  for _, line in ipairs(lost) do parts[#parts + 1] = "//   " .. line:gsub("%c", " ") .. "\n" end
  return table.concat(parts)
end

return sfz
