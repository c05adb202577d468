-- zyl export: writes programs in formats of other software.
local cli = require "cli"
local collection = require "formats.collection"
local disk = require "disk"
local folders = require "folders"
local instrument = require "formats.instrument"
local journal = require "journal"
local json = require "json"
local progress = require "progress"
local references = require "references"
local sf2 = require "formats.sf2"
local sfz = require "formats.sfz"
local text = require "text"

local FORMATS = { sfz = true, sf2 = true }

local options, files = cli.parse {
  verb = "export", folders = "programs", operands = "PROGRAM|FOLDER… -o OUT.sfz|OUT.sf2|FOLDER",
  about = "Writes programs in formats that other software plays: SFZ and SoundFont banks.\n"
       .. "Several programs become presets of one bank (.sf2).",
  options = {
    { name = "output", short = "o", kind = "text", value = "OUT",
      help = "the file to write (.sfz or .sf2), or a folder, which gets a\nfile for each program" },
    { name = "format", kind = "text", value = "NAME", default = "sfz",
      help = "format of the files in a folder: sfz (default) or sf2" },
    { name = "collect", help = "SFZ: copy the samples beside the file, as WAVE files if players may\nnot read them" },
    { name = "force", help = "replace files that exist" },
    { name = "dry-run", help = "print what would be written, but write nothing" },
    { name = "json", help = "print a JSON list, one object per program" },
  },
  more = "What the format cannot express is listed; docs/formats.md says what the numbers of a program mean\n"
      .. "in seconds, hertz and decibels. Either all files are written, or none.",
}

local output = options.output
if not output then cli.usage("-o OUT is missing") end
local format = output:lower():match("%.(%w+)$")
local intoFolder = disk.isFolder(output) or output:sub(-1) == "/" or not format
if not intoFolder and not FORMATS[format] then cli.usage(output .. ": the extension is not sfz or sf2") end
if intoFolder then format = options.format end
if not FORMATS[format] then cli.usage("--format NAME: '" .. format .. "' is not sfz or sf2") end
if not intoFolder and format == "sfz" and #files > 1 then cli.usage("several programs need a folder: -o FOLDER") end
if intoFolder and #output > 1 then output = output:gsub("/+$", "") end

local outputFolder = intoFolder and output or references.folder(output):gsub("(.)/$", "%1")
if outputFolder == "" then outputFolder = "." end
local beside = collection.new(host.absolutePath(outputFolder), options.collect, options.force)

local taken = {}
local function targetOf(path)
  if not intoFolder then return output end
  local stem = references.parts(references.base(path))
  local target, number = ("%s/%s.%s"):format(output, stem, format), 1
  while taken[target:lower()] do
    number = number + 1
    target = ("%s/%s %d.%s"):format(output, stem, number, format)
  end
  taken[target:lower()] = true
  return target
end

local function nameOf(sample)
  local name = collection.relative(beside.folder, beside:path(sample))
  local obstacle = sfz.whyNotName(name)
  if obstacle then error(sample.path .. ": " .. obstacle, 0) end
  return name
end

local function read(path, index)
  local it = instrument.read(path, function(fraction) progress.show((index - 1 + fraction) / #files, path) end)
  it.target = targetOf(path)
  if host.fileType(it.target) and not options.force then error(it.target .. " exists (see --force)", 0) end
  for _, region in ipairs(it.regions) do beside:protect(region.sample) end
  return it
end

local function convert(it)
  if format == "sfz" then it.text = sfz.text(it, nameOf) elseif intoFolder then it.bank = sf2.bank({ it }, it.name) end
end

local function writeBank(bank, target)
  local function write(temporary) return sf2.write(bank, temporary, progress.show) end
  return journal.save(target, host.replaceFile, target, write)
end

local function writeAll(list, bank)
  beside:write(progress.show)
  if bank then list = { { bank = bank, target = output } } end
  for _, it in ipairs(list) do
    local done, reason
    if it.bank then done, reason = writeBank(it.bank, it.target) else done, reason = disk.write(it.target, it.text) end
    if not done then error(it.target .. ": " .. reason, 0) end
  end
end

local list, byPath, failed = {}, {}, {}
local function fail(path, failure)
  cli.failed(path, failure)
  failed[path] = failure
end
for i, path in ipairs(files) do
  local it, failure = cli.try(read, path, i)
  if failure then fail(path, failure) else list[#list + 1], byPath[path] = it, it end
end
-- Only now are all samples known, which must not be replaced.
for _, it in ipairs(list) do
  local _, failure = cli.try(convert, it)
  if failure then fail(it.path, failure) end
end
local written, bank = false, nil
if format == "sf2" and not intoFolder and not next(failed) and #list > 0 then
  local failure
  bank, failure = cli.try(sf2.bank, list, (references.parts(references.base(output))))
  if failure then
    cli.failed(output, failure)
    for _, path in ipairs(files) do failed[path] = failure end
  end
end
if next(failed) then
  cli.warn(output, "nothing was written")
elseif not options["dry-run"] then
  local failure = folders.writeInto(outputFolder, writeAll, list, bank)
  if failure then
    cli.failed(output, failure .. ": nothing was written")
    for _, path in ipairs(files) do failed[path] = failure end
  end
  written = not failure
end
progress.hide()

local printer = cli.printer(options.json)
for i, path in ipairs(files) do
  local it = byPath[path]
  if options.json then
    printer.result(i, json.object("file", path, "error", failed[path], "to", it and it.target, "regions",
                                  it and #it.regions, "not_expressed", json.list(it and it.losses:lines() or {}), "written", written))
  elseif it and not next(failed) then
    local count, lines = #it.regions, it.losses:lines()
    local parts = { ("%s: %d region%s in %s%s\n"):format(text.printable(path), count, count == 1 and "" or "s",
                    text.printable(it.target), written and "" or " (not written)") }
    if #lines > 0 and not options.quiet then
      parts[2] = "  not expressed:\n"
      for _, line in ipairs(lines) do parts[#parts + 1] = "    " .. text.printable(line) .. "\n" end
    end
    printer.result(i, table.concat(parts))
  end
end
printer.close()
cli.finish()
