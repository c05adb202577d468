-- The sample files that a format refers to by path: which are copied, or written as WAVE files, beside
-- the exported file, and how they are named.
local disk = require "disk"
local journal = require "journal"
local references = require "references"
local samples = require "samples"

local collection = {}
collection.__index = collection

local PLAYABLE = { wav = true, flac = true, ogg = true }

-- `all`: every sample is copied. `force`: files of the same names are replaced, but never a sample
-- that the exported programs play; collection:protect names these first.
function collection.new(folder, all, force)
  return setmetatable({ folder = folder, all = all, force = force, sources = {}, byKey = {}, taken = {}, jobs = {} },
                      collection)
end

local function absolute(path) return host.absolutePath(path) or path end

function collection:protect(sample) self.sources[absolute(sample.path)] = true end

local function content(path)
  return ("%d %s"):format((host.fileInfo(path) or {}).size or -1, host.digest(path) or path)
end

-- The path `to` relative to a folder; both from the root.
function collection.relative(folder, to)
  local from, ups = folder:gsub("/+$", "") .. "/", ""
  while from ~= "/" and to:sub(1, #from) ~= from do
    from, ups = from:match("^(.*/)[^/]*/$") or "/", ups .. "../"
  end
  return ups .. to:sub(#from + 1)
end

function collection:free(stem, extension, identity, isSame)
  stem = stem:gsub('[%c<>$=/\\:*?"|]', "_")
  local try, number = stem .. extension, 1
  while true do
    local other, target = self.taken[try:lower()], self.folder .. "/" .. try
    if other == identity or not other and (not host.fileType(target) or isSame(target)) then break end
    number = number + 1
    try = ("%s %d%s"):format(stem, number, extension)
  end
  self.taken[try:lower()] = identity
  return self.folder .. "/" .. try
end

-- The path of the file for a sample of a region. A file with other channels than those that play, and
-- with `all` one that players may not read, is written as WAVE.
function collection:path(sample)
  local real = absolute(sample.path)
  local key = real .. "\0" .. table.concat(sample.channels, ",")
  if self.byKey[key] then return self.byKey[key] end
  local whole = #sample.channels == sample.count
  local stem, extension = references.parts(references.base(real))
  local target = real
  local function mayReplace(path) return self.force and not self.sources[absolute(path)] end
  if not whole then
    local name = stem .. (#sample.channels == 2 and " 1-2" or " " .. sample.channels[1] + 1)
    target = self:free(name, ".wav", key, mayReplace)
  elseif self.all and not PLAYABLE[extension:sub(2):lower()] then
    target = self:free(stem, ".wav", key, mayReplace)
  elseif self.all then
    local identity = content(real)
    target = self:free(stem, extension, identity, function(path) return content(path) == identity end)
    if host.fileType(target) then self.byKey[key] = target end
  end
  if target ~= real and not self.byKey[key] and not self.jobs[target] then
    self.jobs[target] = true
    self.jobs[#self.jobs + 1] = { from = real, to = target, write = not whole or not PLAYABLE[extension:sub(2):lower()],
                                  channels = not whole and sample.channels or {} }
  end
  self.byKey[key] = target
  return target
end

local function writeWave(job)
  local program = host.new("ZylSProgram")
  local sample, reason = samples.open(program, job.from)
  if not sample then error(job.from .. ": " .. reason, 0) end
  local mask = 0
  for _, channel in ipairs(job.channels) do mask = mask | 1 << channel end
  local done = journal.save(job.to, program.SampleWrite, program, sample, job.to, mask)
  samples.close(program, sample)
  host.delete(program)
  if not done then error(job.to .. ": could not be written", 0) end
end

-- Writes the files; raises an error on failure. `shown` is called with each path.
function collection:write(shown)
  for i, job in ipairs(self.jobs) do
    shown((i - 1) / #self.jobs, job.to)
    if job.write then
      writeWave(job)
    else
      local done, reason = disk.copy(job.from, job.to)
      if not done then error(job.to .. ": " .. reason, 0) end
    end
  end
end

return collection
