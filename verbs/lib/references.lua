-- The sample files that programs refer to.
local disk = require "disk"
local programs = require "programs"

local references = {}

-- The zones of a program with a sample: { keygroup and zone from 0, path as in the program, real (the
-- path from the root, links resolved), missing }. For a missing file `real` is the path that was searched.
function references.of(program)
  local list = {}
  for k = 0, program:PRGkeyGroups() - 1 do
    for z = 0, programs.ZONES - 1 do
      local path = program:ZoneSamplePath(k, z)
      if path ~= "" then
        list[#list + 1] = { keygroup = k, zone = z, path = path, real = host.absolutePath(path) or path,
                            missing = not disk.isFile(path) }
      end
    end
  end
  return list
end

function references.folder(path) return path:match("^(.*/)") or "" end
function references.base(path) return path:match("[^/]*$") end

-- A file name without and with only its extension: "a", ".wav".
function references.parts(name)
  local stem, extension = name:match("^(.+)(%.[^.]*)$")
  return stem or name, extension or ""
end

return references
