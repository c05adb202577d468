-- Program files through the script methods.
local disk = require "disk"

local programs = {}

local MAGIC = "ZYLP"
programs.ZONES = 4  -- of a keygroup

-- Whether a file begins as a program file does; nil and the reason when it cannot be read.
function programs.isProgram(path)
  local file, reason = disk.open(path)
  if not file then return nil, reason end
  local head, failure = file:read(#MAGIC)
  file:close()
  if failure then return nil, (failure:gsub("^.*: ", "")) end
  return head == MAGIC
end

-- nil when a program may be written there: nothing is there yet, or a program.
function programs.whyNotReplaceable(path)
  if not host.fileType(path) then return nil end
  local is, reason = programs.isProgram(path)
  if is then return nil end
  return reason or "is there and no program: not replaced"
end

-- The program of a file in a new object, with its sounds or without; nil and the reason.
function programs.open(path, withSounds)
  local is, reason = programs.isProgram(path)
  if not is then return nil, reason or "no program file" end
  local program = host.new("ZylSProgram")
  if not program:Read(path, withSounds and 1 or 0) then return nil, "a program file that cannot be read" end
  return program
end

-- The same; an error instead of nil.
function programs.read(path, withSounds)
  local program, reason = programs.open(path, withSounds)
  if not program then error(reason, 0) end
  return program
end

-- Writes the program with paths of both kinds, its samples not.
function programs.write(program, path) return program:Write(path, 1 + 16 + 32) end

return programs
