-- Sample files through the script methods: opening, parallel pitch tracking, raw values.
local audio = require "zyl.audio"
local cli = require "cli"
local journal = require "journal"
local soundfile = require "soundfile"

local samples = { FULL = 2147483647 }

-- Opens a whole file as a sample object. Returns it and the result of soundfile.inspect, or nil and
-- the reason.
function samples.open(program, path)
  local found, reason = soundfile.inspect(path)
  if not found then return nil, reason end
  local sample = program:ReadTempSample(path, -1)
  if not sample then return nil, "not a readable sound file", found end
  return sample, found
end

function samples.close(program, sample) program:DeleteTempSample(sample) end

-- Writes a sample to its own file or to `path`, and keeps the old file for `zyl undo`.
function samples.write(program, sample, path)
  return journal.save(path or program:SampleFilePath(sample), program.SampleWrite, program, sample, path)
end

-- The values of a channel as bytes, and the format for string.unpack and the width of one value.
function samples.values(program, sample, channel)
  local width = (program:SampleBits(sample) + 7) // 8
  local handle = host.var(0)
  local frames = program:SampleGetBuffer(sample, handle, channel)
  if frames == 0 then return "", "<i" .. width, width end
  return host.buffer(handle.value, frames * width), "<i" .. width, width
end

local function loopsOf(program, sample)
  local loops = {}
  for i = 0, program:SampleLoopCount(sample) - 1 do
    loops[#loops + 1] = {
      first = program:SampleLoopStart(sample, i), last = program:SampleLoopEnd(sample, i),
      fraction = program:SampleLoopFineLen(sample, i) / 4294967296,
      times = i < 8 and program:SampleLoopTimes(sample, i) or nil,
    }
  end
  return loops
end

-- Format, key, tuning, playback, name and loops of a sample.
function samples.facts(program, sample)
  return {
    channels = program:SampleChannelCount(sample), bits = program:SampleBits(sample),
    rate = program:SampleSampleRate(sample), frames = program:SampleGetSize(sample),
    key = program:Samplekey(sample), tune = program:Sampletune(sample),
    name = program:SampleName(sample), playback = program:SampleplaybackType(sample),
    first = program:SampleStart(sample), last = program:SampleEnd(sample),
    loops = loopsOf(program, sample),
  }
end

-- A sample's pitch track as a list of periods in frames; nil if there is none yet.
function samples.track(program, sample)
  local handle = host.var(0)
  local count = program:SampleGetPitchData(sample, handle)
  if count == 0 then return nil end
  return host.floats(handle.value, count)
end

-- Registers for finished tracks, so that host.pump returns when one is available.
local function listener(program)
  local module = host.algo { name = "tracks" }
  local pad = module:addPad("pitchDataFinished", "")
  pad.onSend = function() end
  program:PitchDataProgressCBFinish(module)
  return module
end

local function cores()
  local pipe = io.popen("nproc 2>/dev/null")
  local count = pipe and math.tointeger(tonumber(pipe:read("a") or ""))
  if pipe then pipe:close() end
  return math.max(count or 1, 1)
end

local function sizeOf(path) return math.min((host.fileInfo(path) or {}).size or 0, 1 << 40) end

local function start(program, index, path, settings, open)
  local sample, found = open(program, path, index)
  if not sample then error(found, 0) end
  local sound = audio.sound(program, sample)
  if not program:CalcSamplePitch(sample, table.unpack(audio.trackSettings(sound, settings))) then
    samples.close(program, sample)
    error("the analysis could not be started", 0)
  end
  return { index = index, path = path, sample = sample, found = found, sound = sound }
end

-- Tracks the pitch of all files, one file per processor core at a time (each request runs in its
-- own thread). `settings` are those that audio.trackSettings is to use. For each file calls
-- handlers.done(index, sample, track, found, sound), in order of completion, or
-- handlers.failed(index, reason); calls handlers.shown(fraction, path) periodically. Samples that are
-- no files yet need handlers.open(program, path, index), used instead of samples.open, and
-- handlers.size(index), for the progress.
function samples.tracks(program, paths, settings, handlers)
  local most, active, following = cores(), {}, 1
  local listening = listener(program)
  local sizes, total, finished = {}, 0, 0
  for i, path in ipairs(paths) do
    sizes[i] = handlers.size and handlers.size(i) or sizeOf(path)
    total = total + sizes[i]
  end
  while following <= #paths or #active > 0 do
    while #active < most and following <= #paths do
      local index = following
      following = following + 1
      local job, reason = cli.try(start, program, index, paths[index], settings,
                                  handlers.open or samples.open)
      if job then
        active[#active + 1] = job
      else
        finished = finished + sizes[index]
        handlers.failed(index, reason)
      end
    end
    local ratio = program:PitchDataProgressRatio() / samples.FULL
    local running = program:PitchDataCalculating()
    local working = 0
    for k = #active, 1, -1 do
      local job = active[k]
      local track = samples.track(program, job.sample)
      if track or running == 0 then
        table.remove(active, k)
        finished = finished + sizes[job.index]
        local _, reason
        if track then
          _, reason = cli.try(handlers.done, job.index, job.sample, track, job.found,
                              job.sound)
        else
          reason = "the analysis returned no track"
        end
        samples.close(program, job.sample)
        if reason then handlers.failed(job.index, reason) end
      else
        working = working + sizes[job.index]
      end
    end
    if #active > 0 then
      handlers.shown((finished + ratio * working) / math.max(total, 1), active[1].path)
      host.pump(0.01)
    end
  end
  program:PitchDataProgressCBFinish(host.null)
  host.delete(listening)
end

return samples
