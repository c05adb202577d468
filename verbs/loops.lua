-- zyl loops: finds and rates loops in sample files, and stores the best one.
local cli = require "cli"
local journal = require "journal"
local json = require "json"
local loopsearch = require "loopsearch"
local progress = require "progress"
local samples = require "samples"
local soundfile = require "soundfile"
local text = require "text"

local options, files = cli.parse {
  verb = "loops", folders = true,
  about = "Finds loops in sample files and ranks them by the quality of the join, by how similar the\n"
       .. "sound before start and end is, by how steady the level is, and by length.",
  options = {
    { name = "top", kind = "integer", value = "N", low = 1, high = 1000, default = 1,
      help = "print the N best loops (default 1)" },
    { name = "min-quality", kind = "number", value = "Q", low = 0, high = 1, default = 0.9,
      help = "minimum quality, 0 to 1 (default 0.9)" },
    { name = "min-length", kind = "number", value = "SECONDS", low = 0, high = 86400,
      help = "minimum length (default 0.2, less in short files)" },
    { name = "write", help = "store the best loop in the file as its first loop" },
    { name = "dry-run", help = "with --write: print what would be stored, but write nothing" },
    { name = "json", help = "print a JSON list, one object per file" },
  },
  more = "A perfect join has quality 1. Q is the result of SampleLoopQual (of a 16-bit copy, worst\n"
      .. "channel) divided by 2147483647, for the start and the frame after the end: Q 0.9 is\n"
      .. "1932735282. Positions are frames from 0; the end is the last frame played.",
}

local NO_LOOP, LOOP = 2, 0  -- playback types

if options.write and not options["dry-run"] then journal.expect(files) end
local program = host.new("ZylSProgram")
local printer = cli.printer(options.json)
local nameWidth = math.max(text.widest(files), #"file")

local function columns(name, rank, quality, first, last, length, seconds, like, step, rest)
  local line = ("%s  %4s  %8s  %9s  %9s  %8s  %8s  %6s  %6s%s"):format(text.left(name, nameWidth),
               rank, quality, first, last, length, seconds, like, step, rest and "  " .. rest or "")
  return line .. "\n"
end

local function lines(path, loops, rateHz, written)
  local list = {}
  for rank, loop in ipairs(loops) do
    list[rank] = columns(rank == 1 and text.printable(path) or "", rank,
      ("%.6f"):format(loop.quality), loop.first, loop.last, loop.length,
      ("%.4f"):format(loop.length / rateHz), ("%.3f"):format(loop.likeness),
      ("%+.1f"):format(loop.decibels),
      rank == 1 and written and (options["dry-run"] and "would be written" or "written") or nil)
  end
  if #loops == 0 then
    return columns(text.printable(path), "-", "-", "-", "-", "-", "-", "-", "-")
  end
  return table.concat(list)
end

local function record(path, loops, rateHz, written, failure)
  local list = {}
  for rank, loop in ipairs(loops) do
    list[rank] = json.object("start", loop.first, "end", loop.last, "length", loop.length,
      "seconds", loop.length / rateHz, "quality", loop.quality, "rating", loop.rating,
      "likeness", loop.likeness, "step_db", loop.decibels)
  end
  return json.object("file", path, "error", failure, "loops", json.list(list),
                     "written", written == true and not options["dry-run"])
end

local function store(path, sample, found, loop)
  local obstacle = soundfile.whyNotWritable(path, found)
  if obstacle then error(obstacle, 0) end
  if options["dry-run"] then return true end
  if program:SampleLoopCount(sample) == 0 then program:SampleLoopCount(sample, 1) end
  program:SampleLoopStart(sample, 0, loop.first)
  program:SampleLoopEnd(sample, 0, loop.last)
  program:SampleLoopFineLen(sample, 0, 0.0)
  program:SampleLoopTimes(sample, 0, 0)
  if program:SampleplaybackType(sample) == NO_LOOP then
    program:SampleplaybackType(sample, LOOP)
  end
  if not samples.write(program, sample) then error("could not be written", 0) end
  return true
end

local function done(index, sample, track, found)
  local path, rateHz = files[index], program:SampleSampleRate(sample)
  if rateHz <= 0 then error("the file has no sample rate", 0) end
  local shortest = options["min-length"]
  local loops, best = loopsearch.find(program, path, sample, track, {
    shortest = shortest and math.ceil(shortest * rateHz), most = options.top,
    accepts = function(quality) return quality >= options["min-quality"] end,
  })
  local written, failure
  if #loops == 0 then
    local reason = ("no loop of quality %g or better (the best found has %.3f)"):format(
                   options["min-quality"], best or 0)
    if options.write then failure = reason .. ": not written" else cli.note(path, reason) end
  elseif options.write then
    written, failure = cli.try(store, path, sample, found, loops[1])
  end
  if failure then cli.failed(path, failure) end
  printer.result(index, options.json and record(path, loops, rateHz, written, failure)
                        or not options.json and lines(path, loops, rateHz, written))
end

local function fail(index, reason)
  cli.failed(files[index], reason)
  printer.result(index, options.json and record(files[index], {}, 1, nil, reason) or nil)
end

if not options.json then
  io.write(columns("file", "rank", "quality", "start", "end", "frames", "seconds", "alike",
                   "step dB"))
end
samples.tracks(program, files, {}, { done = done, failed = fail, shown = progress.show })
printer.close()
cli.finish()
