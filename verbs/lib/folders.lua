-- Sound files and programs in folders.
local folders = {}

-- Extensions of the formats that the module reads.
local SOUNDS = {}
for extension in ("wav wave rf64 w64 aif aiff aifc flac ogg oga opus mp3 au snd caf"):gmatch("%w+") do
  SOUNDS[extension] = true
end

function folders.quoted(path) return "'" .. path:gsub("'", "'\\''") .. "'" end

-- Creates a folder and those that contain it; true if it exists now. Also returns the created ones.
function folders.make(path)
  if host.fileType(path) == "folder" then return true, {} end
  local missing, part = {}, path
  while part and part ~= "" and not host.fileType(part) do
    table.insert(missing, 1, part)
    part = part:gsub("/+$", ""):match("^(.*)/")
  end
  local made = os.execute("mkdir -p -- " .. folders.quoted(path) .. " 2>/dev/null") == true
  for _, folder in ipairs(missing) do
    -- Recorded, so that `zyl undo` can remove them.
    if host.fileType(folder) == "folder" then
      require "journal".remark("made", (host.absolutePath(folder) or folder))
    end
  end
  return made, missing
end

-- Runs body(...), which writes files, with the folder to write to: all files are written, or none and
-- the folders that were created are removed. Returns nil, or the reason of the failure.
function folders.writeInto(path, body, ...)
  local made, created = folders.make(path)
  if not made then return "the folder cannot be created" end
  local _, failure = require "cli".try(require "journal".all, body, ...)
  for i = #created, 1, -1 do
    if failure then os.remove(created[i]) end
  end
  return failure
end

local function isSound(path) return SOUNDS[path:lower():match("%.([^./]+)$") or ""] == true end

-- A program file may have any name, so its content decides.
local function isProgram(path)
  return not isSound(path) and require "programs".isProgram(path) == true
end

local function isBank(path) return path:lower():find("%.sf[23]$") ~= nil end

local KINDS = { sounds = isSound, programs = isProgram, banks = isBank }

-- The "sounds", "programs" or "banks" in a folder, sorted by name, without hidden ones. `recursive`
-- includes its subfolders. Also returns their paths below the folder.
function folders.files(folder, kind, recursive)
  local start = folder:gsub("/+$", "")
  if start == "" then start = "/" end
  local shown = start:sub(1, 1) == "-" and "./" .. start or start
  local list = io.popen(("find -L %s -mindepth 1 %s -name '.*' -prune -o -type f -print0 2>/dev/null"):format(
                        folders.quoted(shown), recursive and "" or "-maxdepth 1"))
  local found = {}
  for path in (list and list:read("a") or ""):gmatch("[^\0]+") do
    if KINDS[kind](path) then found[#found + 1] = path end
  end
  if list then list:close() end
  table.sort(found)
  local inside, skipped = {}, #(shown:gsub("/*$", "/"))
  for i, path in ipairs(found) do inside[i] = path:sub(skipped + 1) end
  return found, inside
end

return folders
