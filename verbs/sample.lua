-- zyl sample: shows and sets key, loops and other fields of sample files.
local cli = require "cli"
local disk = require "disk"
local journal = require "journal"
local json = require "json"
local notes = require "notes"
local samples = require "samples"
local settings = require "samplesettings"
local soundfile = require "soundfile"
local text = require "text"

local options, files = cli.parse {
  verb = "sample", notes = true, folders = "sounds",
  about = "Shows format, length, key, tuning, loops and chunks of sample files. Positions are frames\n"
       .. "from 0; the end of a loop is its last frame. With --set changes key, tuning, loops, name and\n"
       .. "the range that is played.",
  options = {
    { name = "set", kind = "text", value = "FIELD=VALUE...", many = true,
      help = "change fields of the files: name, key, tune, playback, start,\nend, loops" },
    { name = "dry-run", help = "with --set: print the changes, but write nothing" },
    { name = "json", help = "print a JSON list, one object per file" },
  },
  -- FIELD=VALUE after --set, unless there is a file of that name.
  takes = function(word, options)
    if not options.set or not settings.isSetting(word) or host.fileType(word) then return false end
    table.insert(options.set, word)
    return true
  end,
  more = "VALUE is typed as it is printed:\n\n"
      .. "  key=C3, key=+12            a note or key number\n"
      .. "  tune=5.1ct, tune=-0.5st    cents or semitones, in which a number without a unit is\n"
      .. "  playback=\"No loops\"        or Loop Rel, Loop >Rel, To end\n"
      .. "  start=100, end=1.5s        frames, s or ms\n"
      .. "  loops=1000-2000x3,3s-4s    START-END of each loop, and how often it is repeated; or none\n"
      .. "  name=TEXT\n\n"
      .. "FIELD=+5 and FIELD=-5 increase and decrease a number, FIELD:=-5 sets a negative one.",
}
local given = {}
for i, word in ipairs(options.set or {}) do
  local reason
  given[i], reason = settings.parse(word)
  if not given[i] then cli.usage(reason) end
end
if options["dry-run"] and not options.set then cli.usage("--dry-run needs --set") end

local function seconds(frames, rate) return rate > 0 and frames / rate or 0 end

local function chunkList(found)
  local parts = {}
  for i, chunk in ipairs(found.chunks) do
    parts[i] = chunk.id:gsub("%s+$", "") .. " " .. chunk.size .. (chunk.cut and " (cut off)" or "")
  end
  return table.concat(parts, ", ")
end

local function shown(path, found, it)
  local rows = { { "format", found.form .. (found.encoding and ", " .. found.encoding or "") } }
  local function add(name, ...) rows[#rows + 1] = { name, (...) } end
  if it then
    if it.name ~= "" then add("name", text.printable(it.name)) end
    add("channels", tostring(it.channels))
    add("rate", it.rate .. " Hz")
    add("bits", tostring(it.bits))
    add("length", ("%d frames, %.3f s"):format(it.frames, seconds(it.frames, it.rate)))
    if it.first ~= 0 or it.last ~= it.frames - 1 then
      add("played", it.first .. " to " .. it.last)
    end
    add("root key", soundfile.hasKey(found) and notes.label(it.key) or "none")
    add("tuning", settings.tune(it.tune))
    add("playback", settings.playback(it.playback))
    if #it.loops == 0 then add("loops", "none") end
    for i, loop in ipairs(it.loops) do
      local length = loop.last - loop.first + 1
      add("loop " .. i, ("%d to %d, %d frames, %.4f s%s%s"):format(loop.first, loop.last, length,
          seconds(length, it.rate),
          loop.fraction > 0 and (", %.4f frame longer"):format(loop.fraction) or "",
          (loop.times or 0) > 0 and ", " .. loop.times .. " times" or ""))
    end
  end
  if #found.chunks > 0 then add("chunks", chunkList(found)) end
  if found.problem then add("problem", found.problem) end
  return text.printable(path) .. "\n" .. text.columns(rows, { true, true }, "  ")
end

local function loopList(loops)
  local list = {}
  for i, loop in ipairs(loops) do
    list[i] = json.object("start", loop.first, "end", loop.last, "length", loop.last - loop.first + 1,
                          "fraction", loop.fraction, "times", loop.times)
  end
  return json.list(list)
end

local function record(path, found, it, failure)
  local chunks = {}
  for i, chunk in ipairs(found and found.chunks or {}) do
    chunks[i] = json.object("id", chunk.id, "size", chunk.size, "declared", chunk.declared)
  end
  it, found = it or {}, found or {}
  return json.object("file", path, "error", failure, "name", it.name, "channels", it.channels, "rate", it.rate,
    "bits", it.bits, "frames", it.frames, "seconds", it.rate and seconds(it.frames, it.rate),
    "start", it.first, "end", it.last, "key", it.key, "note", it.key and notes.name(it.key),
    "cents", it.tune and it.tune / 2.56, "tune", it.tune, "playback", it.playback,
    "loops", loopList(it.loops or {}), "format", found.form, "encoding", found.encoding,
    "problem", found.problem, "chunks", json.list(chunks))
end

local program = host.new("ZylSProgram")

-- Writes a sample to a file without a stored key. A key of 60 without tuning is stored only in a file
-- that already stores one, so a temporary file with another key is written first.
local function writeKey(sample, path)
  local name, key = os.tmpname(), program:Samplekey(sample)
  local temporary = name .. (path:match("%.[^./]*$") or "")
  program:Samplekey(sample, key > 0 and key - 1 or 1)
  local copy = program:SampleWrite(sample, temporary) and samples.open(program, temporary)
  program:Samplekey(sample, key)
  if copy then program:Samplekey(copy, key) end
  local file = copy and program:SampleWrite(copy) and io.open(temporary, "rb")
  local bytes = file and file:read("a")
  if file then file:close() end
  if copy then samples.close(program, copy) end
  os.remove(temporary)
  os.remove(name)
  return bytes and disk.write(path, bytes)
end

-- Changes an open sample and writes its file. Returns the differences and whether it was written.
local function change(path, sample, found)
  local it = samples.facts(program, sample)
  local new, clamped = settings.applied(given, it)
  local differences = settings.differences(it, new, not soundfile.hasKey(found))
  local obstacle = soundfile.whyNotWritable(path, found)
  if obstacle then error(obstacle, 0) end
  for _, name in ipairs(clamped) do
    cli.note(path, ("%s clamped to %s"):format(name, settings.text(name, new[name])))
  end
  settings.store(program, sample, differences)
  local writes = not options["dry-run"] and #differences > 0
  local setsKey = new.setsKey and not soundfile.hasKey(found)
  local written = writes and (setsKey and writeKey(sample, path) or not setsKey and samples.write(program, sample))
  if writes and not written then error("could not be written", 0) end
  return differences, writes
end

local function changesText(path, differences, written)
  local rows = {}
  for i, it in ipairs(differences) do rows[i] = { it.name, it.oldText, "->", it.newText } end
  return (#rows > 0 and text.columns(rows, { true, false, true, true }) or "")
         .. ("%s: %d value%s changed%s\n"):format(text.printable(path), #rows, #rows == 1 and "" or "s",
                                                 written and "" or ", not written")
end

local function changesRecord(path, differences, written, failure)
  local list = {}
  for i, it in ipairs(differences or {}) do
    local isLoops = it.name == "loops"
    list[i] = json.object("field", it.name, "old", isLoops and loopList(it.old) or it.old,
      "new", isLoops and loopList(it.new) or it.new, "old_text", it.oldText, "new_text", it.newText)
  end
  return json.object("file", path, "error", failure, "changes", json.list(list), "written", written == true)
end

-- Opens a file and returns the results of use(path, sample, found), and what soundfile.inspect found;
-- on failure nil, the reason and that.
local function with(path, use)
  local sample, found, outside = cli.try(samples.open, program, path)
  if not sample then return nil, found, outside end
  local result, second = cli.try(use, path, sample, found)
  samples.close(program, sample)
  return result, second, found
end

local function show(path)
  local it, failure, found = with(path, function(_, sample) return samples.facts(program, sample) end)
  if failure then cli.failed(path, failure) end
  if options.json then return record(path, found, it, failure) end
  -- For files that are not sound files, only the message is printed.
  local something = it or found and #found.chunks > 0
  return something and shown(path, found, it) or nil
end

local function set(path)
  local differences, written = with(path, change)
  local failure = not differences and written or nil
  if failure then cli.failed(path, failure .. ": not changed") end
  if options.json then return changesRecord(path, differences, not failure and written, failure) end
  return differences and changesText(path, differences, written) or nil
end

if options.set and not options["dry-run"] then journal.expect(files) end
local printer = cli.printer(options.json)
for i, path in ipairs(files) do printer.result(i, (options.set and set or show)(path)) end
printer.close()
cli.finish()
