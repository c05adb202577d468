-- Program files through the script methods.
local cli = require "cli"
local disk = require "disk"
local journal = require "journal"

local programs = {}

local MAGIC = "ZYLP"
local START, CHUNK_HEAD = 8, 8    -- bytes before the first chunk, and before the data of one
programs.ZONES = 4    -- of a keygroup

-- Whether a file starts like a program file; nil and the reason if it cannot be read.
function programs.isProgram(path)
  local file, reason = disk.open(path)
  if not file then return nil, reason end
  local head, failure = file:read(#MAGIC)
  file:close()
  if failure then return nil, (failure:gsub("^.*: ", "")) end
  return head == MAGIC
end

-- nil if a program may be written to the path (it does not exist, or is a program), otherwise the
-- reason.
function programs.whyNotReplaceable(path)
  if not host.fileType(path) then return nil end
  local is, reason = programs.isProgram(path)
  if is then return nil end
  return reason or "exists and is not a program: not replaced"
end

-- Calls each(id, read) for the chunks of a program file until it returns true; read() returns
-- the chunk's data.
function programs.chunks(path, each)
  local file = assert(disk.open(path))
  local size, place = file:seek("end"), START
  while place + CHUNK_HEAD <= size do
    file:seek("set", place)
    local head = file:read(CHUNK_HEAD)
    local length = string.unpack("<I4", head, 5)
    if each(head:sub(1, 4), function() return file:read(length) or "" end) then break end
    place = place + CHUNK_HEAD + length
  end
  file:close()
end

-- The channels of the zones in a program file: by keygroup * 4 + zone, all counted from 0, the
-- channel, or -1 for the whole file. The methods return them only for samples that are loaded.
function programs.channels(path)
  local channels = {}
  programs.chunks(path, function(id, read)
    if id ~= "PATH" then return false end
    local data, at = read(), 1
    while at <= #data do
      local zone, channel, _
      zone, channel, _, _, _, at = string.unpack("<I4i4s4s4s4", data, at)
      channels[zone] = channel
    end
    return true
  end)
  return channels
end

-- Reads a program file into a new object, with or without its samples. Returns nil and the reason
-- on failure.
function programs.open(path, withSounds)
  local is, reason = programs.isProgram(path)
  if not is then return nil, reason or "not a program file" end
  local program = host.new("ZylSProgram")
  if not program:Read(path, withSounds and 1 or 0) then return nil, "the program file cannot be read" end
  return program
end

-- Like open, but raises an error on failure.
function programs.read(path, withSounds)
  local program, reason = programs.open(path, withSounds)
  if not program then error(reason, 0) end
  return program
end

-- Inserts a copy of a keygroup of another program, with its zones, at an index from 0.
function programs.insert(program, index, other, keygroup)
  local before = program:PRGkeyGroups()
  program:KGCreate(index, other, keygroup)
  if program:PRGkeyGroups() ~= before + 1 then error(("a program has at most %d keygroups"):format(before), 0) end
end

-- Appends copies of the keygroups first to last of another program.
function programs.append(program, other, first, last)
  for k = first, last do programs.insert(program, program:PRGkeyGroups(), other, k) end
end

-- Writes the program, with relative and absolute paths, without its samples, and keeps the old file
-- for `zyl undo`.
function programs.write(program, path)
  return journal.save(path, program.Write, program, path, 1 + 16 + 32)
end

-- Like write, to a file that the user named with -o; a note reports that it replaced a program.
function programs.writeNamed(program, path)
  local existed = host.fileType(path) ~= nil
  local written = programs.write(program, path)
  if written and existed then
    cli.note(path, "replaced a program" .. (journal.keeps(path) and "; 'zyl undo --last' restores it" or ""))
  end
  return written
end

return programs
