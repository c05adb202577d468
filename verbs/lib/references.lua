-- The sample files that programs refer to.
local disk = require "disk"
local folders = require "folders"
local programs = require "programs"
local soundfile = require "soundfile"

local references = {}

local counts = {}   -- of channels, by path; false if unknown
-- What a zone lacks that plays a channel from 0 (-1 for the whole file) of a file: nil, "missing" or
-- "no channel 2". The number of channels is known for WAVE, AIFF and FLAC.
function references.lack(path, channel)
  if not disk.isFile(path) then return "missing" end
  if counts[path] == nil then counts[path] = (soundfile.inspect(path) or {}).channels or false end
  return counts[path] and channel >= counts[path] and "no channel " .. channel + 1 or nil
end

-- The zones of a program with a sample: { keygroup and zone from 0, path as in the program, real (the
-- path from the root, links resolved), missing }. For a missing file `real` is the path that was searched.
-- With the result of programs.channels also channel and lack.
function references.of(program, channels)
  local list = {}
  for k = 0, program:PRGkeyGroups() - 1 do
    for z = 0, programs.ZONES - 1 do
      local path = program:ZoneSamplePath(k, z)
      if path ~= "" then
        list[#list + 1] = { keygroup = k, zone = z, path = path, real = host.absolutePath(path) or path,
                            missing = not disk.isFile(path) }
        if channels then
          local zone = list[#list]
          zone.channel = channels[k * programs.ZONES + z] or 0
          zone.lack = references.lack(path, zone.channel)
        end
      end
    end
  end
  return list
end

function references.folder(path) return path:match("^(.*/)") or "" end
function references.base(path) return path:match("[^/]*$") end

local function parent(folder)
  folder = folder:gsub("/+$", "")
  if folder == "" or folder == "." then return folder == "" and "/" or ".." end
  if folder:match("[^/]*$") == ".." then return folder .. "/.." end
  local above = folder:match("^(.*)/[^/]*$")
  return above == "" and "/" or above or "."
end

-- The programs that may refer to files: those in the folders of `paths` and below, in the parents of
-- these folders, and below the folders `search`. Also returns a text that names these folders.
function references.programsNear(paths, search)
  local places, deep, flat = {}, {}, {}
  local function isCovered(real)
    for _, top in ipairs(deep) do
      if (real .. "/"):sub(1, #top) == top then return true end
    end
    return false
  end
  local function add(folder, recursive)
    local real = host.absolutePath(folder) or folder
    if isCovered(real) or not recursive and flat[real] then return end
    if recursive then deep[#deep + 1] = (real:gsub("/*$", "/")) else flat[real] = true end
    places[#places + 1] = { folder = folder, recursive = recursive }
  end
  local near, seen = {}, {}
  for _, path in ipairs(paths) do
    local folder = references.folder(path)
    folder = folder == "" and "." or #folder > 1 and folder:gsub("/+$", "") or folder
    if not seen[folder] then near[#near + 1] = folder end
    seen[folder] = true
  end
  for _, folder in ipairs(search or {}) do add(folder, true) end
  for _, folder in ipairs(near) do add(folder, true) end
  for _, folder in ipairs(near) do add(parent(folder), false) end
  local list, names = {}, {}
  for i, place in ipairs(places) do
    for _, path in ipairs(folders.files(place.folder, "programs", place.recursive)) do
      list[#list + 1] = path:gsub("^%./", "")
    end
    names[i] = (place.recursive and "below " or "in ") .. place.folder
  end
  return list, table.concat(names, ", ")
end

-- A file name without and with only its extension: "a", ".wav".
function references.parts(name)
  local stem, extension = name:match("^(.+)(%.[^.]*)$")
  return stem or name, extension or ""
end

return references
