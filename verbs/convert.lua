-- zyl convert: changes rate, width, channels and level of sample files.
local cli = require "cli"
local conversion = require "conversion"
local disk = require "disk"
local folders = require "folders"
local journal = require "journal"
local json = require "json"
local markers = require "markers"
local programs = require "programs"
local progress = require "progress"
local references = require "references"
local samples = require "samples"
local soundfile = require "soundfile"
local text = require "text"

local LOWEST_RATE, HIGHEST_RATE = 1000, 1000000
local WIDTHS = { ["8"] = 8, ["16"] = 16, ["24"] = 24, ["32"] = 32 }
local FORMATS = { wav = "WAVE", wave = "WAVE", aif = "AIFF", aiff = "AIFF", aifc = "AIFF" }

local options, words = cli.parse {
  verb = "convert", folders = "sounds", mixed = true,
  about = "Converts sample files in place, or with -o to other files. Loops, the range that is played and\n"
       .. "markers move along; key, tuning, name and other chunks stay.",
  options = {
    { name = "mono", kind = "text", value = "CHANNEL", help = "left, right or mix: keep one channel, or the mean of all" },
    { name = "trim", value = "[DB]", number = { name = "trim", of = "trimLevel", value = "DB", kind = "number",
      low = -200, high = 0 }, help = "cut off what is below DB relative to the peak at start and end\n(default -60), but no part of a loop" },
    { name = "rate", kind = "integer", value = "HZ", low = LOWEST_RATE, high = HIGHEST_RATE, help = "resample" },
    { name = "normalize", kind = "text", value = "HOW [DB]", number = { name = "normalize", of = "level",
      value = "DB", kind = "number", low = -100, high = 0 },
      help = "peak: raise or lower the peak to DB (default -1) below full scale;\nloudness: the loudest 400 ms to DB LUFS (default -18), but not beyond\nfull scale" },
    { name = "fade-in", kind = "number", value = "MS", low = 0, high = 3600000, help = "fade from silence over MS milliseconds" },
    { name = "fade-out", kind = "number", value = "MS", low = 0, high = 3600000, help = "fade to silence over MS milliseconds" },
    { name = "bits", kind = "text", value = "N", help = "store 8, 16, 24 or 32 bits" },
    { name = "no-dither", help = "round without noise" },
    { name = "format", kind = "text", value = "TYPE", help = "with -o: write wav or aif (default: that of the file, wav for others)" },
    { name = "output", short = "o", kind = "text", value = "FOLDER|FILE",
      help = "write to FOLDER, created if necessary, or one file to FILE" },
    { name = "force", help = "with -o: replace existing files; with --mono in place: convert files\nalthough programs play a channel that is removed" },
    { name = "search", kind = "text", value = "FOLDER", many = true,
      help = "with --mono in place: also look for such programs below FOLDER; may\nbe repeated" },
    { name = "dry-run", help = "print the changes, but write nothing" },
    { name = "json", help = "print a JSON list, one object per file" },
  },
  more = "The steps are always done in this order. A file that needs no change\n"
      .. "is not written; with -o it is copied. Fades leave out loops that play. Files that are neither WAVE\n"
      .. "nor AIFF need -o.",
}

local function oneOf(name, allowed, list)
  local value = options[name]
  if value and allowed[value] == nil then cli.usage(("--%s: '%s' is not %s"):format(name, value, list)) end
  return value and allowed[value]
end
options.bits = oneOf("bits", WIDTHS, "8, 16, 24 or 32")
oneOf("mono", { left = 1, right = 1, mix = 1 }, "left, right or mix")
oneOf("normalize", { peak = 1, loudness = 1 }, "peak or loudness")
local format = oneOf("format", { wav = ".wav", aif = ".aif" }, "wav or aif")

local output = options.output
if not output then
  if format then cli.usage("--format needs -o") end
  if options.force and not options.mono then cli.usage("--force needs -o or --mono") end
  local any = false
  for _, name in ipairs { "mono", "trim", "rate", "normalize", "fade-in", "fade-out", "bits" } do
    any = any or options[name] ~= nil
  end
  if not any then cli.usage("nothing to do: give an option such as --rate or --bits") end
end

-- The files as { path, inside }: inside is the path below the folder that was given.
local function listed()
  local list, below = cli.withoutFolders(words)
  for i, path in ipairs(list) do list[i] = { path = path, inside = below[i] or references.base(path) } end
  return list
end
local files = listed()

-- Sets the target of each file.
local function place()
  local ending = output:lower():match("%.([^./]+)$")
  local extension, toFile = FORMATS[ending or ""], ending ~= nil and not disk.isFolder(output)
  if toFile and not extension then
    cli.usage(("-o %s is neither a WAVE nor an AIFF file; a folder ends with /"):format(output))
  end
  if toFile and (#words > 1 or disk.isFolder(words[1])) then
    cli.usage(("-o %s takes one file; give a folder for more"):format(output))
  end
  if toFile and format and FORMATS[format:sub(2)] ~= extension then
    cli.usage(("--format and the extension of %s differ"):format(output))
  end
  if not toFile and host.fileType(output) and not disk.isFolder(output) then
    cli.usage(output .. " is not a folder")
  end
  local taken = {}
  for _, it in ipairs(files) do
    local stem, own = references.parts(it.inside)
    local kept = FORMATS[own:sub(2):lower()] and own or ".wav"
    if format and FORMATS[kept:sub(2):lower()] ~= FORMATS[format:sub(2)] then kept = format end
    it.target = toFile and output or (output:gsub("/+$", "") .. "/" .. stem .. kept):gsub("^//", "/")
    if toFile then break end
    if taken[it.target] then
      cli.usage(("%s and %s would both be written to %s"):format(taken[it.target], it.path, it.target))
    end
    taken[it.target] = it.path
  end
  local inputs = {}
  for _, it in ipairs(files) do inputs[host.absolutePath(it.path) or it.path] = true end
  for _, it in ipairs(files) do
    if inputs[host.absolutePath(it.target) or it.target] then
      cli.usage(it.target .. " would replace a given file; without -o files are converted in place")
    end
  end
end
if output then place() end

if options.search and (output or not options.mono) then cli.usage("--search needs --mono, without -o") end
for _, folder in ipairs(options.search or {}) do
  if not disk.isFolder(folder) then cli.usage("--search: " .. folder .. " is not a folder") end
end

local program = host.new("ZylSProgram")

-- The zones of programs that play a sample file: by its real path, a list of { program, channel }.
local users
local function usersOf(path)
  if not users then
    users = {}
    local paths = {}
    for i, file in ipairs(files) do paths[i] = file.path end
    for _, user in ipairs((references.programsNear(paths, options.search))) do
      local object = programs.open(user)
      for _, zone in ipairs(object and references.of(object, programs.channels(user)) or {}) do
        users[zone.real] = users[zone.real] or {}
        table.insert(users[zone.real], { program = user, channel = zone.channel })
      end
      if object then host.delete(object) end
    end
  end
  return users[host.absolutePath(path) or path] or {}
end

-- Refuses, or with --force warns of, a file of which a program plays a channel that --mono removes.
local function checkUsers(path)
  local kept = options.mono == "right" and 1 or 0
  for _, use in ipairs(usersOf(path)) do
    if use.channel >= 0 and use.channel ~= kept then
      local reason = ("%s plays channel %d, which --mono %s removes"):format(use.program, use.channel + 1, options.mono)
      if not options.force then error(reason .. " (see --force)", 0) end
      return cli.warn(path, reason)
    end
  end
end

-- Why a file cannot be written to its place; nil if it can.
local function obstacleOf(file, found)
  if output then
    local type = host.fileType(file.target)
    if type and type ~= "file" then return file.target .. " is not a file" end
    return type and not options.force and file.target .. " exists (see --force)" or nil
  end
  if not found.container then return "only WAVE and AIFF files can be converted in place (see -o)" end
  if not found.plain and found.encoding then
    if not options.bits then
      return ("its sound (%s) would become PCM: give --bits, or -o"):format(found.encoding)
    end
    local plain = setmetatable({ plain = true }, { __index = found })
    return soundfile.whyNotWritable(file.path, plain)
  end
  return soundfile.whyNotWritable(file.path, found)
end

-- Writes the sample through a temporary file, in which its markers are moved.
local function writeWithMarkers(sample, target, done)
  local name = os.tmpname()
  local temporary = name .. (target:match("%.[^./]*$") or "")
  local written = program:SampleWrite(sample, temporary)
  local file = written and io.open(temporary, "rb")
  local bytes = file and file:read("a")
  if file then file:close() end
  os.remove(temporary)
  os.remove(name)
  return bytes and disk.write(target, markers.moved(bytes, done.marker, done.loops))
end

local function write(file, sample, found, done)
  local target = file.target or file.path
  local folder = references.folder(target)
  if folder ~= "" and not folders.make(folder) then error(folder .. " cannot be created", 0) end
  local same = found.container == FORMATS[target:lower():match("%.([^./]*)$") or ""]
  local written
  if not file.converts then
    written = disk.copy(file.path, target)
  elseif done.moved and same and markers.has(found) then
    written = writeWithMarkers(sample, target, done)
  else
    written = samples.write(program, sample, target)
  end
  if not written then error((output and target .. " " or "") .. "could not be written", 0) end
end

-- Converts an open sample. Returns what conversion.of returns, with written and clipped.
local function convert(file, sample, found)
  local obstacle = obstacleOf(file, found)
  if obstacle then error(obstacle, 0) end
  local it = samples.facts(program, sample)
  if options.mono and not output and it.channels > 1 then checkUsers(file.path) end
  local done = conversion.of(program, sample, it, options, file.path)
  done.from, done.found, done.clipped = it, found, 0
  local container = FORMATS[(file.target or file.path):lower():match("%.([^./]*)$")]
  done.container = container ~= found.container and container or nil
  file.converts = done.changed or not found.plain or container ~= found.container
  if file.converts then done.clipped = conversion.store(program, sample, done, not options["no-dither"]) end
  if done.clipped > 0 then
    cli.warn(file.path, ("%d value%s clipped (see --normalize)"):format(done.clipped, done.clipped == 1 and "" or "s"))
  end
  done.written = not options["dry-run"] and (file.converts or output ~= nil)
  if done.written then write(file, sample, found, done) end
  return done
end

local function frames(count) return count == 1 and "frame" or count .. " frames" end

local function shown(file, done)
  local parts, it = {}, done.from
  local function add(condition, form, ...)
    if condition then parts[#parts + 1] = form:format(...) end
  end
  add(done.container or not done.found.plain, "%s -> %s PCM", done.found.encoding or done.found.form,
      done.container or done.found.container or "")
  add(done.channels ~= it.channels, "%d -> %d channel%s", it.channels, done.channels, done.channels == 1 and "" or "s")
  add(done.cutStart > 0, "first %s cut", frames(done.cutStart))
  add(done.cutEnd > 0, "last %s cut", frames(done.cutEnd))
  add(done.rate ~= it.rate, "%d -> %d Hz", it.rate, done.rate)
  add(done.gain ~= 0, "%+.1f dB", done.gain)
  add(done.fadeIn > 0, "fade-in %.1f ms", 1000 * done.fadeIn / math.max(done.rate, 1))
  add(done.fadeOut > 0, "fade-out %.1f ms", 1000 * done.fadeOut / math.max(done.rate, 1))
  add(done.bits ~= it.bits, "%d -> %d bits", it.bits, done.bits)
  add(#parts == 0, "no change")
  add(options["dry-run"] and (file.converts or output), "not written")
  return ("%s%s: %s\n"):format(text.printable(file.path),
                               output and " -> " .. text.printable(file.target) or "", table.concat(parts, ", "))
end

local function record(file, done, failure)
  done = done or {}
  local loops = {}
  for i, loop in ipairs(done.loops or {}) do
    loops[i] = json.object("start", loop.first, "end", loop.last, "fraction", loop.fraction)
  end
  return json.object("file", file.path, "output", file.target or file.path, "error", failure,
    "changed", failure == nil and file.converts, "written", done.written == true, "rate", done.rate,
    "bits", done.bits, "channels", done.channels, "frames", done.frames, "start", done.first, "end", done.last,
    "cut_start", done.cutStart, "cut_end", done.cutEnd, "gain_db", done.gain, "fade_in", done.fadeIn,
    "fade_out", done.fadeOut, "clipped", done.clipped, "loops", json.list(loops))
end

local function process(file)
  local sample, found = samples.open(program, file.path)
  if not sample then error(found, 0) end
  local done, failure = cli.try(convert, file, sample, found)
  samples.close(program, sample)
  if failure then error(failure, 0) end
  return done
end

if not output and not options["dry-run"] then
  local paths = {}
  for i, file in ipairs(files) do paths[i] = file.path end
  journal.expect(paths)
end
local printer = cli.printer(options.json)
for i, file in ipairs(files) do
  progress.show((i - 1) / #files, file.path)
  local done, failure = cli.try(process, file)
  if failure then cli.failed(file.path, failure) end
  printer.result(i, options.json and record(file, done, failure) or not options.json and done and shown(file, done) or nil)
end
printer.close()
cli.finish()
