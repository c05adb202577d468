-- zyl collect: copies programs and their samples into one folder.
local cli = require "cli"
local disk = require "disk"
local folders = require "folders"
local json = require "json"
local programs = require "programs"
local progress = require "progress"
local references = require "references"
local samples = require "samples"
local text = require "text"

local MOST_NAMED = 3  -- files named in a message

local options, files = cli.parse {
  verb = "collect", folders = "programs", operands = "PROGRAM|FOLDER… -o FOLDER",
  about = "Copies programs and their samples into one folder, which can be moved or given away.",
  options = {
    { name = "output", short = "o", kind = "text", value = "FOLDER", help = "the folder, created if necessary" },
    { name = "search", kind = "text", value = "FOLDER", many = true,
      help = "search missing samples by file name in FOLDER and its subfolders;\nmay be repeated" },
    { name = "partial", help = "collect programs although samples are missing" },
    { name = "force", help = "replace programs in FOLDER, also the given ones" },
    { name = "dry-run", help = "print the files, but write nothing" },
    { name = "json", help = "print a JSON list, one object per program" },
  },
  more = "Samples with the same name and content are copied once; different ones with the same name get\n"
      .. "numbers. Of several files found for a missing sample, identical ones count as one, and the one in\n"
      .. "the most similar folder is taken. It must have the channels that the zones play. A program stores\n"
      .. "nothing else of its samples, so the content cannot be compared, and a renamed file is not found.\n"
      .. "Either all files are copied, or none.",
}
local output = options.output
if not output then cli.usage("-o FOLDER is missing") end
if #output > 1 then output = output:gsub("/+$", "") end
if host.fileType(output) and not disk.isFolder(output) then cli.usage(output .. " is not a folder") end
for _, folder in ipairs(options.search or {}) do
  if not disk.isFolder(folder) then cli.usage("--search: " .. folder .. " is not a folder") end
end

local digests = {}
-- Equal for files with the same content.
local function content(path)
  if not digests[path] then
    digests[path] = ("%d %s"):format((host.fileInfo(path) or {}).size or -1, host.digest(path) or path)
  end
  return digests[path]
end

-- The sound files of the search folders by name in lower case.
local found
local function candidates(name)
  if not found then
    found = {}
    for _, folder in ipairs(options.search or {}) do
      local list = folders.files(folder, "sounds", true)
      if #list == 0 then cli.warn(folder, "no sound file in this folder") end
      for _, path in ipairs(list) do
        local key = references.base(path):lower()
        found[key] = found[key] or {}
        table.insert(found[key], path)
      end
    end
  end
  return found[name:lower()] or {}
end

local scratch, counts = host.new("ZylSProgram"), {}
-- nil if a file is a sound with that channel, otherwise the reason.
local function whyNotSound(path, channel)
  if not counts[path] then
    local sample, reason = samples.open(scratch, path)
    counts[path] = { sample and scratch:SampleChannelCount(sample) or 0, reason }
    if sample then samples.close(scratch, sample) end
  end
  local count, reason = counts[path][1], counts[path][2]
  if count == 0 then return reason or "not a readable sound file" end
  return channel >= count and "has no channel " .. channel + 1 or nil
end

-- The candidates for a missing sample that have the channel, those with exactly its name if there are
-- any. If there are none, also returns why not.
local function usable(name, channel)
  local all, exact, unusable = {}, {}, nil
  for _, path in ipairs(candidates(name)) do
    local reason = whyNotSound(path, channel)
    if reason then unusable = unusable or path .. ": " .. reason else all[#all + 1] = path end
    if not reason and references.base(path) == name then exact[#exact + 1] = path end
  end
  return #exact > 0 and exact or all, #all == 0 and unusable or nil
end

-- The number of folders with equal names at the ends of two paths.
local function alike(a, b)
  local count = 0
  repeat
    a, b = a:match("^(.*)/[^/]*$"), b:match("^(.*)/[^/]*$")
    local same = a and b and references.base(a) ~= "" and references.base(a) == references.base(b)
    if same then count = count + 1 end
  until not same
  return count
end

-- The file for a missing sample of which channels up to `channel` are played; nil and the reason if
-- there is none, or no clear one.
local function relink(path, channel)
  local best, most, rivals = nil, -1, {}
  local list, unusable = usable(references.base(path), channel)
  for _, candidate in ipairs(list) do
    local likeness = alike(path, candidate)
    if likeness > most then
      best, most, rivals = candidate, likeness, {}
    elseif likeness == most and content(candidate) ~= content(best) then
      rivals[#rivals + 1] = candidate
    end
  end
  if not best then return nil, path .. " is missing" .. (unusable and " (" .. unusable .. ")" or "") end
  if #rivals > 0 then
    return nil, ("%s is missing, and several different files have its name: %s, %s"):format(path, best, rivals[1])
  end
  return best
end

local taken = {}   -- by name in lower case: the content, or a program's path
-- A free name in the output folder for a file. `same` returns whether the file of that name is the same.
local function free(name, identity, same)
  local stem, extension = references.parts(name)
  local number, try = 1, name
  while true do
    local other, target = taken[try:lower()], output .. "/" .. try
    if other == identity or not other and (not host.fileType(target) or same(target)) then break end
    number = number + 1
    try = ("%s %d%s"):format(stem, number, extension)
  end
  taken[try:lower()] = identity
  return output .. "/" .. try
end

local function readProgram(path)
  local program = programs.read(path)
  local it = { path = path, program = program, zones = references.of(program, programs.channels(path)), relinked = {}, missing = {} }
  local highest = {}   -- channel, by path
  for _, zone in ipairs(it.zones) do highest[zone.path] = math.max(highest[zone.path] or -1, zone.channel) end
  for _, zone in ipairs(it.zones) do
    zone.source = zone.path
    if zone.missing then
      local reason
      zone.source, reason = relink(zone.path, highest[zone.path])
      local list = zone.source and it.relinked or it.missing
      if not list[zone.path] then
        list[zone.path] = true
        list[#list + 1] = zone.source and { from = zone.path, to = zone.source } or reason
      end
    end
  end
  if #it.missing > 0 and not options.partial then
    error(table.concat(it.missing, "; ", 1, math.min(#it.missing, MOST_NAMED))
          .. (#it.missing > MOST_NAMED and ("; and %d more"):format(#it.missing - MOST_NAMED) or ""), 0)
  end
  return it
end

-- Sets the target of the program and of its zones.
local function place(it, copies)
  local function replaceable(target)
    return options.force and programs.isProgram(target)
  end
  local target = output .. "/" .. references.base(it.path)
  if host.fileType(target) and not taken[references.base(it.path):lower()] and not replaceable(target) then
    error(target .. " exists (see --force)", 0)
  end
  it.target = free(references.base(it.path), it.path, replaceable)
  for _, zone in ipairs(it.zones) do
    if zone.source then
      local identity = content(zone.source)
      zone.target = free(references.base(zone.source), identity, function(path) return content(path) == identity end)
      if not host.fileType(zone.target) and not copies[zone.target] then
        copies[zone.target] = zone.source
        copies[#copies + 1] = zone.target
      end
    end
  end
end

local function write(list, copies)
  for i, target in ipairs(copies) do
    progress.show((i - 1) / #copies, target)
    local done, reason = disk.copy(copies[target], target)
    if not done then error(target .. ": " .. reason, 0) end
  end
  for _, it in ipairs(list) do
    for _, zone in ipairs(it.zones) do
      if zone.target then it.program:ZoneSamplePath(zone.keygroup, zone.zone, zone.target) end
    end
    if not programs.write(it.program, it.target) then error(it.target .. ": could not be written", 0) end
  end
end

local list, copies, failed = {}, {}, {}
for i, path in ipairs(files) do
  progress.show((i - 1) / #files, path)
  local it, failure = cli.try(readProgram, path)
  local _, unplaced = nil, nil
  if it then _, unplaced = cli.try(place, it, copies) end
  failure = failure or unplaced
  if failure then
    cli.failed(path, failure)
    failed[path] = failure
  else
    list[#list + 1] = it
    for _, link in ipairs(it.relinked) do cli.note(path, ("%s is found as %s"):format(link.from, link.to)) end
    for _, reason in ipairs(it.missing) do cli.warn(path, reason) end
  end
end
local written = false
if next(failed) then
  cli.warn(output, "nothing was copied")
elseif not options["dry-run"] then
  local failure = folders.writeInto(output, write, list, copies)
  if failure then
    cli.failed(output, failure .. ": nothing was copied")
    for _, path in ipairs(files) do failed[path] = failure end
  end
  written = not failure
end
progress.hide()

if options.json then
  local byPath, printer = {}, cli.printer(true)
  for _, it in ipairs(list) do byPath[it.path] = it end
  for i, path in ipairs(files) do
    local it, shown, seen = byPath[path], {}, {}
    for _, zone in ipairs(it and it.zones or {}) do
      if not seen[zone.path] then
        shown[#shown + 1] = json.object("from", zone.source or zone.path, "to", zone.target or json.null,
                                            "missing", zone.source == nil, "relinked", zone.missing and zone.source ~= nil)
      end
      seen[zone.path] = true
    end
    printer.result(i, json.object("file", path, "error", failed[path], "to", it and it.target, "samples",
                                  json.list(shown), "written", written))
  end
  printer.close()
elseif not next(failed) then
  local rows, byName, seen = {}, 0, {}
  for _, it in ipairs(list) do
    for _, link in ipairs(it.relinked) do
      byName = byName + (seen[link.to] and 0 or 1)
      seen[link.to] = true
    end
  end
  for _, it in ipairs(list) do rows[#rows + 1] = { text.printable(it.path), "->", text.printable(it.target) } end
  for _, target in ipairs(copies) do
    rows[#rows + 1] = { text.printable(copies[target]), "->", text.printable(target) }
  end
  io.write(options["dry-run"] and text.columns(rows, { true, true, true }) or "",
           ("%d program%s and %d sample%s %s to %s%s\n"):format(#list, #list == 1 and "" or "s", #copies,
           #copies == 1 and "" or "s", options["dry-run"] and "would be copied" or "copied", text.printable(output),
           byName > 0 and ("; %d found by name only, content not compared"):format(byName) or ""))
end
cli.finish()
