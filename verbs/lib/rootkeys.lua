-- Finds the root keys of a batch of recordings (see recordings.lua) in chunks, names and pitch.
--
-- Sets for each recording key, source ("chunk", "name" or "pitch") and note (the assumed pitch of
-- the file); for one without a root key, failure. `how` has the fields
--   order     the sources in order of preference, and use, the set of these
--   octave    the octave of key 60 in the names; automatic if pitches may correct it
--   from      the sources as given, for messages
--   evidence  set to the pitches that confirm the octave
--   check     whether to measure all recordings and report where the sources differ
local cli = require "cli"
local filenames = require "filenames"
local notes = require "notes"
local recordings = require "recordings"

-- OCTAVE is the octave of key 60 in names unless the pitches indicate another one.
local rootkeys = { OCTAVE = 4 }

local PROBES = 12    -- files measured to find the octave of the names
local DEFAULT_KEY = 60   -- written by programs that do not know the key

-- Up to PROBES files with a note in their name, evenly spread.
local function probes(list)
  local named, chosen = {}, {}
  for _, it in ipairs(list) do
    if it.name.key and not it.failure then named[#named + 1] = it end
  end
  local count = math.min(#named, PROBES)
  for i = 1, count do chosen[named[(i - 1) * #named // count + 1]] = true end
  return chosen
end

-- Decides by measured pitches which of several columns of numbers in the names holds the keys.
local function judgeColumns(batch)
  local chosen, measured, best = probes(batch.list), 0, { score = 0 }
  recordings.measure(batch, chosen)
  for it in pairs(chosen) do measured = measured + (it.pitch and 1 or 0) end
  for _, way in ipairs(batch.ways) do
    -- A measured pitch may be octaves off.
    local score, matches = 0, 0
    for it in pairs(chosen) do
      local apart = it.pitch and notes.nearest(it.pitch) - way.keys[it.index]
      if apart == 0 then matches = matches + 1 end
      score = score + (apart == 0 and 2 or apart and apart % 12 == 0 and 1 or 0)
    end
    if score > best.score then best = { score = score, way = way, matches = matches } end
  end
  local way = best.way or batch.ways[1]
  local names = {}
  for i, it in ipairs(batch.list) do names[i] = it.name end
  filenames.apply(names, way)
  cli.note("names", ("column %d of their numbers has the keys%s (%s)"):format(way.column,
           way.velocityColumn and (", column %d the velocities"):format(way.velocityColumn) or "",
           best.way and ("%d of %d pitches"):format(best.matches, measured)
           or "the first that fits, not confirmed by pitch"))
end

-- Compares names with measured pitches: sets the octave that most of them agree on, and discards
-- numbers that are not keys.
local function judgeNames(batch, how, chosen)
  local counts, all, most = {}, 0, 0
  for it in pairs(chosen) do
    if it.pitch then
      local offset = notes.nearest(it.pitch) - it.name.key
      counts[offset] = (counts[offset] or 0) + 1
      all = all + 1
    end
  end
  local agreed
  for offset, count in pairs(counts) do
    if count > most or count == most and offset == 0 then agreed, most = offset, count end
  end
  if all < 2 or most < 2 then return end
  local isNumber = false
  for it in pairs(chosen) do isNumber = isNumber or it.name.how == "number" end
  if 3 * most < 2 * all or agreed % 12 ~= 0 then
    if isNumber then
      cli.note("names", "their numbers do not match the pitches: not used")
      for _, it in ipairs(batch.list) do it.name.key, it.name.layer = nil, it.name.markedLayer end
    else
      cli.note("names", ("%d of %d pitches differ from the names; see --check, --from pitch")
               :format(all - (counts[0] or 0), all))
    end
  elseif not isNumber and how.automatic then
    how.octave = how.octave - agreed // 12
    how.evidence = ("%d of %d pitches"):format(most, all)
  end
end

-- The output names keys by --octave: notes if the file names count octaves differently.
local function reportOctave(batch, how)
  if not how.automatic or how.octave == notes.middle() then return end
  for _, it in ipairs(batch.list) do
    if it.source == "name" and it.name.how == "note" then
      local says = how.evidence and how.evidence .. " indicate that C%d is key 60: --name-octave %d"
                   or "read with C%d as key 60, not measured: --name-octave %d"
      return cli.note("names", says:format(how.octave, how.octave))
    end
  end
end

-- The key in the recording's name.
function rootkeys.ofName(it, how)
  if not it.name.key then return nil end
  local key = it.name.key + (it.name.how == "note" and 12 * (rootkeys.OCTAVE - how.octave) or 0)
  return key >= 0 and key <= 127 and key or nil
end

-- The root key in the file's chunk, unless it is in doubt.
local function chunkKey(it) return not it.doubted and it.chunk or nil end

-- The key that all chunks share although the names differ, and the number of chunks.
local function commonKey(batch, how)
  local common, count, name, differ = nil, 0, nil, false
  for _, it in ipairs(batch.list) do
    if it.chunk then
      if common and common ~= it.chunk then return nil end
      common, count = it.chunk, count + 1
      differ = differ or it.name.key and name and name ~= it.name.key
      name = name or it.name.key
    end
  end
  if differ and how.use.name and count >= (common == DEFAULT_KEY and 2 or 3) then return common, count end
end

-- Marks chunks as doubtful: a root key common to all, and key 60 if the pitch, or without
-- a pitch the name, differs. Doubtful keys are used only after all other sources.
local function doubtChunks(batch, how)
  local common, count = commonKey(batch, how)
  if common then
    cli.note("chunks", ("all %d have the root key %s: not used"):format(count, notes.label(common)))
    for _, it in ipairs(batch.list) do it.doubted = it.chunk ~= nil end
    return
  end
  local unsure, doubted = {}, 0
  for _, it in ipairs(batch.list) do
    if it.chunk == DEFAULT_KEY and rootkeys.ofName(it, how) ~= DEFAULT_KEY then unsure[it] = true end
  end
  if how.use.pitch then recordings.measure(batch, unsure) end
  for it in pairs(unsure) do
    local contradicted = it.pitch and notes.nearest(it.pitch) ~= DEFAULT_KEY
    it.doubted = contradicted or not it.pitch and how.use.name and rootkeys.ofName(it, how) ~= nil
    if it.doubted then doubted = doubted + 1 end
  end
  if doubted > 0 then
    cli.note("chunks", ("the root key %s of %d file%s differs from name or pitch: not used")
             :format(notes.label(DEFAULT_KEY), doubted, doubted == 1 and "" or "s"))
  end
end

local function decide(it, how)
  for _, source in ipairs(how.order) do
    if source == "chunk" and chunkKey(it) then
      it.key, it.note = it.chunk, it.fileNote
    elseif source == "name" and rootkeys.ofName(it, how) then
      it.key = rootkeys.ofName(it, how)
      it.note = it.key + 0.0
    elseif source == "pitch" and it.pitch then
      it.key, it.note = notes.nearest(it.pitch), it.pitch
      if it.key < 0 or it.key > 127 then it.key = nil end
    end
    if it.key then
      it.source = source
      return
    end
  end
  if it.doubted then
    it.key, it.note, it.source = it.chunk, it.fileNote, "chunk"
    return
  end
  recordings.fail(it, "no root key: "
                  .. (it.noPitch and it.noPitch .. " (--drums maps files without pitch)"
                      or "none of " .. how.from .. " has one"))
end

-- The recordings whose pitch is needed because no preferred source has a key.
local function needsPitch(batch, how)
  local wanted = {}
  for _, it in ipairs(batch.list) do
    local before = false
    for _, source in ipairs(how.order) do
      if source == "pitch" and not before then wanted[it] = true end
      before = before or source == "chunk" and chunkKey(it) ~= nil
               or source == "name" and rootkeys.ofName(it, how) ~= nil
    end
  end
  return wanted
end

local function collect(batch, how)
  local everything = {}
  for _, it in ipairs(batch.list) do everything[it] = true end
  if how.check or how.order[1] == "pitch" then recordings.measure(batch, everything) end
  recordings.open(batch)
  if how.use.name and #batch.ways > 1 then judgeColumns(batch) end
  if how.use.chunk then doubtChunks(batch, how) end
  if how.use.name and how.automatic or how.check then
    local unsaid = {}
    for it in pairs(probes(batch.list)) do
      if not (how.order[1] == "chunk" and chunkKey(it)) then unsaid[it] = true end
    end
    recordings.measure(batch, unsaid)
    judgeNames(batch, how, unsaid)
  end
  recordings.measure(batch, needsPitch(batch, how))
end

-- Prints chunk, name and pitch if they differ by a key or more.
local function check(it, how)
  local said, first, differ = {}, nil, false
  local function add(name, key)
    if not key then return end
    said[#said + 1] = name .. " " .. notes.label(key)
    differ = differ or first ~= nil and key ~= first
    first = first or key
  end
  add("chunk", chunkKey(it))
  add("name", rootkeys.ofName(it, how))
  add("pitch", it.pitch and notes.nearest(it.pitch))
  it.differ = differ
  if differ then cli.note(it.path, table.concat(said, ", ")) end
end

function rootkeys.find(batch, how)
  collect(batch, how)
  for _, it in ipairs(batch.list) do
    if not it.failure then decide(it, how) end
    if how.check and not it.failure then check(it, how) end
  end
  reportOctave(batch, how)
end

return rootkeys
