-- Finds the root keys of a batch of recordings (see recordings.lua) in chunks, names and pitch.
--
-- Sets for each recording key, source ("chunk", "name" or "pitch") and note (the assumed pitch of
-- the file); for one without a root key, failure. `how` has the fields
--   order     the sources in order of preference, and use, the set of these
--   octave    the octave of key 60 in the names; automatic if pitches may correct it
--   from      the sources as given, for messages
--   evidence  set to the pitches that confirm the octave
--   numbersApart  set to the keys between the numbers in the names and the pitches, if whole octaves
--   check     whether to measure all recordings and report where the sources differ
local cli = require "cli"
local filenames = require "filenames"
local notes = require "notes"
local recordings = require "recordings"

-- OCTAVE is the octave of key 60 in names unless the pitches indicate another one.
local rootkeys = { OCTAVE = 4 }

local PROBES = 12    -- files measured to verify the names
local SAME_KEY = 0.75    -- semitones between name and pitch up to which they mean the same key
local DEFAULT_KEY = 60   -- written by programs that do not know the key

-- The key in the recording's name.
function rootkeys.ofName(it, how)
  if not it.name.key then return nil end
  local key = it.name.key + (it.name.how == "note" and 12 * (rootkeys.OCTAVE - how.octave) or 0)
  return key >= 0 and key <= 127 and key or nil
end

-- The root key in the file's chunk, unless it is in doubt.
local function chunkKey(it) return not it.doubted and it.chunk or nil end

-- Up to PROBES of the recordings for which isWanted(recording) is true, evenly spread, as a set.
local function probes(list, isWanted)
  local named, chosen = {}, {}
  for _, it in ipairs(list) do
    if isWanted(it) and not it.failure and not it.isRight then named[#named + 1] = it end
  end
  local count = math.min(#named, PROBES)
  for i = 1, count do chosen[named[(i - 1) * #named // count + 1]] = true end
  return chosen
end

-- The most frequent distance in keys between the pitches of `list` and the keys keyOf(recording):
-- { apart, count, all, isAgreed }, where `all` is the number of pitches and isAgreed means that most
-- of them are apart by whole octaves.
local function distance(list, keyOf)
  local counts, best = {}, { count = 0, all = 0 }
  for _, it in ipairs(list) do
    local key = it.pitch and keyOf(it)
    if key then
      local apart = notes.nearest(it.pitch) - key
      counts[apart] = (counts[apart] or 0) + 1
      best.all = best.all + 1
    end
  end
  for apart, count in pairs(counts) do
    if count > best.count or count == best.count and math.abs(apart) < math.abs(best.apart) then
      best.apart, best.count = apart, count
    end
  end
  best.isAgreed = best.all > 0 and best.apart % 12 == 0 and 3 * best.count >= 2 * best.all
  return best
end

-- Whether all readable recordings have chunks, with different keys, which are those of the way.
local function matchesChunks(list, way)
  for _, it in ipairs(list) do
    if not it.failure and it.chunk ~= way.keys[it.index] then return false end
  end
  return not way.isOneKey
end

-- Decides which column of numbers in the names holds the keys: one that agrees with the chunks or
-- with the pitches. Without any pitch it is the first column that differs between the names.
local function judgeColumns(batch, how)
  local function apply(way)
    local names = {}
    for i, it in ipairs(batch.list) do names[i] = it.name end
    filenames.apply(names, way)
  end
  for _, way in ipairs(how.use.chunk and batch.ways or {}) do
    if matchesChunks(batch.list, way) then return apply(way) end
  end
  if how.use.name then recordings.measure(batch, probes(batch.list, function() return true end)) end
  local first, best, found, several = nil, nil, { count = 0, all = 0 }, false
  for _, way in ipairs(batch.ways) do
    local this = distance(batch.list, function(it) return way.keys[it.index] end)
    -- A single pitch may be whole octaves apart by chance.
    if this.isAgreed and (this.apart == 0 or this.count > 1) and this.count > found.count then
      best, found = way, this
    end
    if found.all == 0 then found.all = this.all end
    if not way.isOneKey then first, several = first or way, first ~= nil end
  end
  if not best and (found.all > 0 or not how.use.name) then
    if first and how.use.name then cli.note("names", "their numbers do not match the pitches: not used") end
    return
  end
  local way = best or first
  if not way then return end
  apply(way)
  if several or way.isOneKey or not best then
    cli.note("names", ("column %d of their numbers has the keys%s (%s)"):format(way.column,
             way.velocityColumn and (", column %d the velocities"):format(way.velocityColumn) or "",
             best and ("%d of %d pitches"):format(found.count, found.all)
             or "the first that fits, not confirmed by pitch"))
  end
end

-- Whether the root key comes from the name, or would if no pitch contradicts it.
local function usesName(it, how)
  if it.failure or it.isRight or not it.name.key then return false end
  for _, source in ipairs(how.order) do
    if source == "name" then return true end
    if source == "chunk" and chunkKey(it) or source == "pitch" and it.pitch then return false end
  end
  return false
end

-- Reads Es and As as flats if more pitches agree with them than with sharps.
local function judgeFlats(batch, how)
  local function isOpen(it) return it.name.flatKey ~= nil and usesName(it, how) end
  if how.use.pitch then recordings.measure(batch, probes(batch.list, isOpen)) end
  local flats = 0
  for _, it in ipairs(batch.list) do
    if it.pitch and isOpen(it) then
      local key = notes.nearest(it.pitch)
      flats = flats + ((key - it.name.flatKey) % 12 == 0 and 1 or (key - it.name.key) % 12 == 0 and -1 or 0)
    end
  end
  for _, it in ipairs(flats > 0 and batch.list or {}) do it.name.key = it.name.flatKey or it.name.key end
end

-- Compares names with measured pitches: sets the octave of the names that most of them agree on.
-- Returns whether they agree.
local function judgeOctave(batch, how)
  local isNumber = false
  local found = distance(batch.list, function(it)
    if not usesName(it, how) then return nil end
    isNumber = isNumber or it.name.how == "number"
    return it.name.key
  end)
  if found.isAgreed and isNumber then
    if found.apart ~= 0 and how.numbersApart ~= found.apart then
      cli.note("names", ("%d of %d pitches are %d keys %s their numbers: the numbers are used"):format(
               found.count, found.all, math.abs(found.apart), found.apart > 0 and "above" or "below"))
    end
    how.numbersApart = found.apart
  elseif found.isAgreed then
    how.octave = rootkeys.OCTAVE - found.apart // 12
    how.evidence = ("%d of %d pitches"):format(found.count, found.all)
  elseif found.all > 0 and isNumber then
    cli.note("names", "their numbers do not match the pitches: not used")
    for _, it in ipairs(batch.list) do it.name.key, it.name.layer = nil, it.name.markedLayer end
  end
  return found.isAgreed
end

-- Calls each(recording, key, note) for the recordings whose name has another key than their pitch.
local function disagreeing(batch, how, each)
  for _, it in ipairs(batch.list) do
    local note = it.pitch or it.uncertainPitch
    local key = note and usesName(it, how) and rootkeys.ofName(it, how)
    if key and math.abs(note - key - (it.name.how == "number" and how.numbersApart or 0)) > SAME_KEY then
      each(it, key, note)
    end
  end
end

-- Measures some of the named recordings, or all if a pitch contradicts its name. In these the pitch is
-- the root key; but if most names agree, a pitch that is whole octaves off is not trusted.
local function judgeNames(batch, how)
  judgeFlats(batch, how)
  if not how.automatic and not how.check then return end
  local function isNamed(it) return usesName(it, how) end
  recordings.measure(batch, probes(batch.list, isNamed))
  local agreed, contradicted = how.automatic and judgeOctave(batch, how), false
  local function isWrong(it, key, note)
    return it.pitch ~= nil and not (agreed and (notes.nearest(note) - key) % 12 == 0)
  end
  disagreeing(batch, how, function(...) contradicted = contradicted or isWrong(...) end)
  if contradicted and how.automatic then
    local all = {}
    for _, it in ipairs(batch.list) do all[it] = isNamed(it) end
    recordings.measure(batch, all)
    agreed = judgeOctave(batch, how)
  end
  disagreeing(batch, how, function(it, key, note)
    it.contradicted = how.automatic and how.use.pitch and isWrong(it, key, note)
    if how.check then return end
    cli.note(it.path, ("name %s, %spitch %s: the %s is used"):format(notes.label(key),
             it.pitch and "" or "uncertain ", notes.label(notes.nearest(note)),
             it.contradicted and "pitch" or "name"))
  end)
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

-- Sets key, note and source from the sources of a recording. Returns whether it has a key.
local function read(it, how)
  for _, source in ipairs(how.order) do
    if source == "chunk" and chunkKey(it) then
      it.key, it.note = it.chunk, it.fileNote
    elseif source == "name" and not it.contradicted and rootkeys.ofName(it, how) then
      it.key = rootkeys.ofName(it, how)
      it.note = it.key + 0.0
    elseif source == "pitch" and it.pitch then
      it.key, it.note = notes.nearest(it.pitch), it.pitch
      if it.key < 0 or it.key > 127 then it.key = nil end
    end
    if it.key then
      it.source = source
      return true
    end
  end
  if it.doubted then it.key, it.note, it.source = it.chunk, it.fileNote, "chunk" end
  return it.key ~= nil
end

-- Decides the root key. The halves of a stereo recording have the same one.
local function decide(it, how)
  local right = it.right
  if read(it, how) then
    if right then right.key, right.note, right.source = it.key, it.note, it.source end
  elseif right and read(right, how) then
    it.key, it.note, it.source = right.key, right.note, right.source
  else
    for _, half in ipairs { it, right } do
      recordings.fail(half, "no root key: "
                      .. (half.noPitch and half.noPitch .. " (--drums maps files without pitch)"
                          or "none of " .. how.from .. " has one"))
    end
  end
end

-- The recordings whose pitch is needed because no preferred source has a key.
local function needsPitch(batch, how)
  local wanted = {}
  for _, it in ipairs(batch.list) do
    local before = false
    for _, source in ipairs(how.order) do
      if source == "pitch" and not before then wanted[it] = true end
      before = before or it.isRight or source == "chunk" and chunkKey(it) ~= nil
               or source == "name" and not it.contradicted and rootkeys.ofName(it, how) ~= nil
    end
  end
  return wanted
end

local function collect(batch, how)
  local everything = {}
  for _, it in ipairs(batch.list) do everything[it] = true end
  if how.check or how.order[1] == "pitch" then recordings.measure(batch, everything) end
  recordings.open(batch)
  judgeColumns(batch, how)
  if how.use.chunk then doubtChunks(batch, how) end
  if how.use.name then judgeNames(batch, how) end
  recordings.measure(batch, needsPitch(batch, how))
  recordings.separate(batch)
  local others = {}
  for _, it in ipairs(batch.list) do
    if it.right and it.noPitch and how.use.pitch then others[it.right] = true end
  end
  recordings.measure(batch, others)
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
  if differ then
    cli.note(it.path, table.concat(said, ", ") .. (it.contradicted and ": the pitch is used" or ""))
  end
end

function rootkeys.find(batch, how)
  collect(batch, how)
  for _, it in ipairs(batch.list) do
    if not it.failure and not it.isRight then decide(it, how) end
    if how.check and not it.failure then check(it, how) end
  end
  reportOctave(batch, how)
end

return rootkeys
