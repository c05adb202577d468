-- Program files through the script methods.
local programs = {}

local MAGIC = "ZYLP"

-- Whether a file begins as a program file does; nil and the reason when it cannot be read.
function programs.isProgram(path)
  local file, reason = io.open(path, "rb")
  if not file then return nil, (reason:gsub("^.*: ", "")) end
  local head, failure = file:read(#MAGIC)
  file:close()
  if failure then return nil, (failure:gsub("^.*: ", "")) end
  return head == MAGIC
end

-- nil when a program may be written there: nothing is there yet, or a program.
function programs.whyNotReplaceable(path)
  local file = io.open(path, "rb")
  if not file then return nil end
  file:close()
  local is, reason = programs.isProgram(path)
  if is then return nil end
  return reason or "is there and no program: not replaced"
end

-- The program of a file in a new object, without its sounds; nil and the reason.
function programs.open(path)
  local is, reason = programs.isProgram(path)
  if not is then return nil, reason or "no program file" end
  local program = host.new("ZylSProgram")
  if not program:Read(path, 0) then return nil, "a program file that cannot be read" end
  return program
end

-- Writes the program with paths of both kinds, its samples not.
function programs.write(program, path) return program:Write(path, 1 + 16 + 32) end

return programs
