-- zyl uses: lists the samples of programs, missing samples, and unused ones.
local cli = require "cli"
local disk = require "disk"
local folders = require "folders"
local json = require "json"
local programs = require "programs"
local progress = require "progress"
local references = require "references"
local selection = require "selection"
local text = require "text"

local options, words = cli.parse {
  verb = "uses", folders = "programs", mixed = true,
  about = "Lists the samples that programs use, those that are missing, and the sound files of the folders\n"
       .. "that no program uses.",
  options = {
    { name = "sample", kind = "text", value = "FILE",
      help = "only that sample: a file, a name with or without extension, or a\npattern with * and ?" },
    { name = "missing", help = "only missing samples, and those without a channel that a zone plays" },
    { name = "unused", help = "only unused sound files" },
    { name = "json", help = "print a JSON list, one object per sample" },
  },
  resultStatus = true,
  status = "0 something is listed, 1 nothing is, 2 wrong command line, 4 some files failed",
}

local files, sounds, seen = {}, {}, {}
local function add(list, path)
  if not seen[path] then list[#list + 1] = path end
  seen[path] = true
end
for _, word in ipairs(words) do
  if disk.isFolder(word) then
    for _, path in ipairs(folders.files(word, "programs", options.recursive)) do add(files, path) end
    for _, path in ipairs(folders.files(word, "sounds", options.recursive)) do add(sounds, path) end
  else
    add(files, word)
  end
end
if #files == 0 then cli.failed(words[1], "no program in this folder") end

-- Returns a test of paths for --sample.
local function matcher(wanted)
  if not wanted then return function() return true end end
  local real = disk.isFile(wanted) and host.absolutePath(wanted)
  local whole = wanted:find("/", 1, true) ~= nil
  local pattern = wanted:gsub("[%^%$%(%)%%%.%[%]%+%-]", "%%%0"):gsub("%*", ".*"):gsub("%?", ".")
  return function(it)
    local name = whole and it.path or references.base(it.path)
    return it.real == real or name:match("^" .. pattern .. "$") ~= nil
           or references.folder(name) .. references.parts(references.base(name)) == wanted
  end
end
local fits = matcher(options.sample)

-- The samples, in the order of the programs: { path, real, missing, lack, uses = { { program, keygroup, zone } } }.
local samples, byPath, failures = {}, {}, {}
local function sampleOf(path, real, missing)
  if not byPath[real] then
    byPath[real] = { path = path, real = real, missing = missing, uses = {} }
    samples[#samples + 1] = byPath[real]
  end
  return byPath[real]
end
for i, path in ipairs(files) do
  progress.show((i - 1) / #files, path)
  local program, reason = programs.open(path)
  if program then
    for _, it in ipairs(references.of(program, programs.channels(path))) do
      local sample = sampleOf(it.path, it.real, it.missing)
      local uses = sample.uses
      sample.lack = sample.lack or it.lack
      uses[#uses + 1] = { program = path, keygroup = it.keygroup, zone = it.zone }
    end
    host.delete(program)
  else
    cli.failed(path, reason)
    failures[#failures + 1] = json.object("file", path, "error", reason)
  end
end
progress.hide()
for _, path in ipairs(sounds) do sampleOf(path, host.absolutePath(path) or path, false) end

local function listed(it)
  local kind = not options.missing and not options.unused or options.missing and it.lack
               or options.unused and #it.uses == 0
  return kind and fits(it)
end

local function record(it)
  local uses = {}
  for i, use in ipairs(it.uses) do
    uses[i] = json.object("program", use.program, "keygroup", use.keygroup + 1, "zone", use.zone + 1)
  end
  return json.object("file", it.path, "error", nil, "missing", it.missing, "channel_missing", it.lack ~= nil and not it.missing, "used", #uses > 0, "uses", json.list(uses))
end

-- A row for each program that uses the sample.
local function addRows(rows, it)
  local shown = text.printable(it.path) .. (it.lack and " (" .. it.lack .. ")" or "")
  local i = 1
  repeat
    local use, keygroups = it.uses[i], {}
    while use and it.uses[i] and it.uses[i].program == use.program do
      if keygroups[#keygroups] ~= it.uses[i].keygroup then keygroups[#keygroups + 1] = it.uses[i].keygroup end
      i = i + 1
    end
    rows[#rows + 1] = { shown, use and text.printable(use.program) or "unused", selection.text(keygroups) or "" }
  until i > #it.uses
end

local rows, printer, any = { { "sample", "program", "keygroups" } }, cli.printer(options.json), 0
for _, it in ipairs(samples) do
  if listed(it) then
    any = any + 1
    if options.json then printer.result(any, record(it)) else addRows(rows, it) end
  end
end
if options.json then
  for i, failure in ipairs(failures) do printer.result(any + i, failure) end
elseif any > 0 then
  io.write(text.columns(rows, { true, true, true }))
end
printer.close()
cli.finish()
if any == 0 then os.exit(1, true) end
