-- zyl rename: renames programs and their samples, and keeps the references to them.
local cli = require "cli"
local disk = require "disk"
local fields = require "fields"
local journal = require "journal"
local json = require "json"
local notes = require "notes"
local programs = require "programs"
local progress = require "progress"
local references = require "references"
local samples = require "samples"
local soundfile = require "soundfile"
local text = require "text"
local values = require "values"

local MOST_BYTES = 255   -- of a file name

local options, files = cli.parse {
  verb = "rename", notes = true, folders = "programs",
  about = "Renames the samples of programs, program files, and the names in programs. All programs that\n"
       .. "use a renamed sample are updated: the given ones, those in and below the folders of programs and\n"
       .. "samples and in their parent folders, and those below --search.",
  options = {
    { name = "samples", kind = "text", value = "PATTERN", help = "new names of the sample files, without extension" },
    { name = "zones", kind = "text", value = "PATTERN",
      help = "new names of the zones: the title in the sample file, which the sampler\nshows instead of the file's name" },
    { name = "files", kind = "text", value = "PATTERN", help = "new names of the program files, without extension" },
    { name = "names", kind = "text", value = "PATTERN", help = "new names in the programs, up to 12 bytes" },
    { name = "replace", kind = "text", value = "OLD=NEW", many = true,
      help = "replace OLD with NEW in the new names; may be repeated. Without\na pattern: in the names of the sample files" },
    { name = "search", kind = "text", value = "FOLDER", many = true,
      help = "also update programs in FOLDER and its subfolders; may be\nrepeated" },
    { name = "dry-run", help = "print the new names, but write nothing" },
    { name = "json", help = "print a JSON list, one object per renamed file and program" },
  },
  more = "PATTERN is a text with {name} (the old name), {program} (name of the program file) and {number}\n"
      .. "(counts the programs or samples), and in --samples and --zones {keygroup}, {zone}, {low}, {high},\n"
      .. "{root} (notes: the range of the keygroup, and the key that plays the sample at its pitch),\n"
      .. "{lowvel} and {highvel}, of the first zone with the sample. Collisions are refused before anything\n"
      .. "is changed. Either all files are renamed, or none.",
}
for _, folder in ipairs(options.search or {}) do
  if not disk.isFolder(folder) then cli.usage("--search: " .. folder .. " is not a folder") end
end
local replacements = {}
for i, word in ipairs(options.replace or {}) do
  local old, new = word:match("^(.-)=(.*)$")
  if not old or old == "" then cli.usage("--replace: '" .. word .. "' is not OLD=NEW") end
  replacements[i] = { old = old:gsub("%W", "%%%0"), new = new:gsub("%%", "%%%%") }
end
if not options.samples and not options.zones and not options.files and not options.names then
  if #replacements == 0 then cli.usage("give --samples, --zones, --files, --names or --replace") end
  options.samples = "{name}"
end

local SAMPLE_WORDS = { name = true, program = true, number = true, keygroup = true, zone = true, low = true,
                       high = true, root = true, lowvel = true, highvel = true }
local PROGRAM_WORDS = { name = true, program = true, number = true }
local function checkPattern(option, known)
  for word in (options[option] or ""):gmatch("{(.-)}") do
    if not known[word] then cli.usage(("--%s: there is no {%s}"):format(option, word)) end
  end
end
checkPattern("samples", SAMPLE_WORDS)
checkPattern("zones", SAMPLE_WORDS)
checkPattern("files", PROGRAM_WORDS)
checkPattern("names", PROGRAM_WORDS)

-- Replaces the words in a pattern.
local function made(pattern, words)
  local name = pattern:gsub("{(.-)}", function(word)
    local value = words[word]
    return tostring(type(value) == "function" and value() or value)
  end)
  for _, it in ipairs(replacements) do name = name:gsub(it.old, it.new) end
  return name
end

local function padded(number, most) return ("%0" .. #tostring(most) .. "d"):format(number) end

-- The programs to be written: those given, and later those that use a renamed sample. Each has path,
-- real, given, object, zones.
local list, byReal = {}, {}
local moves, sources, targets = {}, {}, {}   -- of files: { from, to }, both real paths
local function take(path, given)
  local real = host.absolutePath(path) or path
  if byReal[real] then return end
  local object, reason = programs.open(path)
  if not object then
    if given then cli.failed(path, reason) else cli.warn(path, reason .. ": not updated") end
    return
  end
  local it = { path = path, real = real, given = given, object = object, zones = references.of(object) }
  local uses = given
  for _, zone in ipairs(it.zones) do
    uses = uses or sources[zone.real] ~= nil and sources[zone.real].to ~= zone.real
  end
  if not uses then return host.delete(object) end
  byReal[real], list[#list + 1] = it, it
end

local titles = {}                            -- of samples: { real, path, name }

-- Plans to rename a file within its folder.
local function plan(real, path, name, words)
  local _, extension = references.parts(references.base(real))
  if name == "" or name:find("[/%c]") or name:sub(1, 1) == "." or #name + #extension > MOST_BYTES then
    error(("%s: '%s' is not a file name"):format(path, text.printable(name)), 0)
  end
  local to = references.folder(real) .. name .. extension
  sources[real] = { to = to, name = name .. extension }
  if to == real then return end
  local other = targets[to]
  if other then error(("%s and %s would both be named %s"):format(other, path, to), 0) end
  targets[to] = path
  moves[#moves + 1] = { from = real, to = to, path = path, words = words }
end

-- The key at which a zone plays its sample at its pitch.
local function rootOf(object, zone)
  local sample, reason = samples.open(object, zone.path)
  if not sample then error(zone.path .. ": " .. reason, 0) end
  local note = object:Samplekey(sample) + (object:Sampletune(sample) - object:ZonetuneOffset(zone.keygroup, zone.zone)
               - object:KGtune(zone.keygroup)) / 256
  samples.close(object, sample)
  return notes.name((notes.nearest(note)))
end

-- Plans to store the name of a zone in its sample file.
local function planTitle(object, zone, words)
  local sample, found = samples.open(object, zone.path)
  if not sample then error(zone.path .. ": " .. found, 0) end
  local obstacle = soundfile.whyNotWritable(zone.path, found)
  local old = object:SampleName(sample)
  words.name = old
  local name = made(options.zones, words)
  object:SampleName(sample, name)
  local holds = object:SampleName(sample) == name
  samples.close(object, sample)
  if name == old then return end
  if obstacle or not holds or name == "" then
    error(("%s: %s"):format(zone.path, obstacle or ("'%s' is not a zone name"):format(text.printable(name))), 0)
  end
  titles[#titles + 1] = { real = zone.real, path = zone.path, name = name }
end

local function writeTitle(it)
  local program, path = host.new("ZylSProgram"), sources[it.real] and sources[it.real].to or it.real
  local sample, reason = samples.open(program, path)
  if not sample then error(path .. ": " .. reason, 0) end
  program:SampleName(sample, it.name)
  if not samples.write(program, sample) then error(path .. ": could not be written", 0) end
  samples.close(program, sample)
end

local function planSamples()
  local firsts, seen = {}, {}
  for _, it in ipairs(list) do
    for _, zone in ipairs(it.given and it.zones or {}) do
      if not seen[zone.real] then
        if zone.missing then
          cli.note(it.path, zone.path .. " is missing: not renamed")
        else
          firsts[#firsts + 1] = { it = it, zone = zone }
        end
      end
      seen[zone.real] = true
    end
  end
  for i, first in ipairs(firsts) do
    local object, zone, k = first.it.object, first.zone, first.zone.keygroup
    progress.show((i - 1) / #firsts, zone.path)
    local words = {
      name = references.parts(references.base(zone.real)), program = references.parts(references.base(first.it.path)),
      number = padded(i, #firsts), keygroup = padded(k + 1, object:PRGkeyGroups()), zone = zone.zone + 1,
      low = notes.name(object:KGlowKey(k)), high = notes.name(object:KGhighKey(k)),
      lowvel = object:ZonelowVel(k, zone.zone), highvel = object:ZonehighVel(k, zone.zone),
      root = function() return rootOf(object, zone) end,
    }
    if options.samples then plan(zone.real, zone.path, made(options.samples, words)) end
    if options.zones then planTitle(object, zone, words) end
  end
end

-- Finds the other programs that use a renamed sample.
local function takeUsers()
  if #moves == 0 then return end
  local paths = table.move(files, 1, #files, 1, {})
  for _, move in ipairs(moves) do paths[#paths + 1] = move.from end
  local users, places = references.programsNear(paths, options.search)
  for _, path in ipairs(users) do take(path, false) end
  cli.note(nil, ("programs that use the samples were searched %s (see --search)"):format(places))
end

local function planPrograms()
  local count = #files
  for i, it in ipairs(list) do
    if it.given then
      local words = { program = references.parts(references.base(it.path)), number = padded(i, count) }
      if options.files then
        words.name = words.program
        plan(it.real, it.path, made(options.files, words))
        it.target = sources[it.real].to
      end
      if options.names then
        words.name = it.object:PRGname()
        it.newName = made(options.names, words)
        local obstacle = values.whyNot(fields.find("PRGname"), it.newName)
        if obstacle then error(("%s: '%s': %s"):format(it.path, it.newName, obstacle), 0) end
        if it.newName == words.name then it.newName = nil end
      end
    end
    it.updated = 0
    for _, zone in ipairs(it.zones) do
      local source = sources[zone.real]
      if source and source.to ~= zone.real then
        -- A link in the path keeps its name: only its target has been renamed.
        zone.target = references.base(zone.path) == references.base(zone.real)
                      and references.folder(zone.path) .. source.name or nil
        it.updated = it.updated + (zone.target and 1 or 0)
      end
    end
  end
end

local function checkTargets()
  for _, move in ipairs(moves) do
    if host.fileType(move.to) and not (sources[move.to] and sources[move.to].to ~= move.to) then
      error(("%s cannot be named %s: that file exists"):format(move.path, references.base(move.to)), 0)
    end
  end
end

local function rename(from, to)
  local done, reason = journal.move(from, to)
  if not done then error(("%s: %s"):format(from, reason), 0) end
end

-- Renames the files. A file whose new name is the old name of another one is renamed after it; a
-- temporary name breaks cycles.
local function renameAll()
  local left = table.move(moves, 1, #moves, 1, {})
  while #left > 0 do
    local blocked = {}
    for _, move in ipairs(left) do
      if host.fileType(move.to) then blocked[#blocked + 1] = move else rename(move.from, move.to) end
    end
    if #blocked == #left then
      local move = blocked[1]
      local aside = references.folder(move.from) .. ".zyl-rename-" .. references.base(move.from):sub(1, 200)
      rename(move.from, aside)
      blocked[1] = { from = aside, to = move.to }
    end
    left = blocked
  end
end

local function write()
  renameAll()
  for i, it in ipairs(titles) do
    progress.show((i - 1) / #titles, it.path)
    writeTitle(it)
  end
  for _, it in ipairs(list) do
    if it.updated > 0 or it.newName then
      for _, zone in ipairs(it.zones) do
        if zone.target then it.object:ZoneSamplePath(zone.keygroup, zone.zone, zone.target) end
      end
      if it.newName then it.object:PRGname(it.newName) end
      local path = it.target or it.path
      if not programs.write(it.object, path) then error(path .. ": could not be written", 0) end
    end
  end
end

local function run()
  for _, path in ipairs(files) do take(path, true) end
  if cli.anyFailed() then error("not all programs can be read", 0) end
  if options.samples or options.zones then planSamples() end
  takeUsers()
  planPrograms()
  checkTargets()
  progress.hide()
  if options["dry-run"] then return true end
  local changed = {}
  for _, it in ipairs(list) do
    if it.updated > 0 or it.newName then changed[#changed + 1] = it.path end
  end
  for _, it in ipairs(titles) do changed[#changed + 1] = it.path end
  journal.expect(changed)
  journal.all(write)
  return true
end

local done, failure = cli.try(run)
progress.hide()
if failure then cli.failed(nil, failure .. ": nothing was changed") end
local printer, count = cli.printer(options.json), 0
local function result(object, shown)
  count = count + 1
  printer.result(count, options.json and object or not options.json and shown or nil)
end
if done or options.json then
  for _, move in ipairs(done and moves or {}) do
    result(json.object("file", move.path, "error", nil, "to", move.to, "references", nil, "name", nil),
           ("%s -> %s\n"):format(text.printable(move.path), text.printable(references.base(move.to))))
  end
  for _, it in ipairs(done and titles or {}) do
    result(json.object("file", it.path, "error", nil, "to", nil, "references", nil, "name", it.name),
           ('%s: zone named "%s"\n'):format(text.printable(it.path), text.printable(it.name)))
  end
  for _, it in ipairs(done and list or {}) do
    if it.updated > 0 or it.newName then
      result(json.object("file", it.path, "error", nil, "to", it.target, "references", it.updated, "name", it.newName),
             ("%s: %d reference%s updated%s\n"):format(text.printable(it.path), it.updated, it.updated == 1 and "" or "s",
             it.newName and (', named "%s"'):format(text.printable(it.newName)) or ""))
    end
  end
  if not options.json and (#moves > 0 or count == 0) then
    io.write(("%d file%s %s\n"):format(#moves, #moves == 1 and "" or "s", options["dry-run"] and "would be renamed" or "renamed"))
  end
end
printer.close()
cli.finish()
