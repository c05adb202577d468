-- zyl sample: shows format, key, loops and chunks of sample files.
local cli = require "cli"
local json = require "json"
local notes = require "notes"
local samples = require "samples"
local text = require "text"

local options, files = cli.parse {
  verb = "sample", notes = true, folders = "sounds",
  about = "Shows format, length, key, tuning, loops and chunks of sample files. Positions are frames\n"
       .. "from 0; the end of a loop is its last frame.",
  options = { { name = "json", help = "print a JSON list, one object per file" } },
}

local PLAYBACK = { [0] = "loop through release", "loop until release", "no loop", "to the end" }

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
    add("root key", notes.label(it.key))
    add("tuning", ("%+.1f cents"):format(it.tune / 2.56))
    add("playback", PLAYBACK[it.playback] or tostring(it.playback))
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

local function record(path, found, it, failure)
  local chunks, loops = {}, {}
  for i, chunk in ipairs(found and found.chunks or {}) do
    chunks[i] = json.object("id", chunk.id, "size", chunk.size, "declared", chunk.declared)
  end
  for i, loop in ipairs(it and it.loops or {}) do
    loops[i] = json.object("start", loop.first, "end", loop.last,
                           "length", loop.last - loop.first + 1, "fraction", loop.fraction,
                           "times", loop.times)
  end
  local outside = { "format", found and found.form, "encoding", found and found.encoding,
                    "problem", found and found.problem, "chunks", json.list(chunks) }
  it = it or {}
  return json.object("file", path, "error", failure, "name", it.name, "channels", it.channels, "rate", it.rate,
    "bits", it.bits, "frames", it.frames, "seconds", it.rate and seconds(it.frames, it.rate),
    "start", it.first, "end", it.last, "key", it.key, "note", it.key and notes.name(it.key),
    "cents", it.tune and it.tune / 2.56, "tune", it.tune, "playback", it.playback,
    "loops", json.list(loops), table.unpack(outside, 1, 8))
end

local program = host.new("ZylSProgram")
local printer = cli.printer(options.json)
for i, path in ipairs(files) do
  local sample, found, outside = cli.try(samples.open, program, path)
  local it, failure
  if sample then
    it, failure = cli.try(samples.facts, program, sample)
    samples.close(program, sample)
  else
    failure, found = found, outside
  end
  if failure then cli.failed(path, failure) end
  if options.json then
    printer.result(i, record(path, found, it, failure))
  else
    -- For files that are not sound files, only the message is printed.
    local something = it or found and #found.chunks > 0
    printer.result(i, something and shown(path, found, it) or nil)
  end
end
printer.close()
cli.finish()
