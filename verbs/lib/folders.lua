-- The sound files of folders.
local folders = {}

-- Extensions of the formats that the module reads.
local SOUNDS = {}
for extension in ("wav wave rf64 w64 aif aiff aifc flac ogg oga opus mp3 au snd caf"):gmatch("%w+") do
  SOUNDS[extension] = true
end

function folders.quoted(path) return "'" .. path:gsub("'", "'\\''") .. "'" end

-- The sound files of a folder without its subfolders, sorted by name.
function folders.sounds(folder)
  local start = folder:gsub("/+$", "")
  if start == "" then start = "/" end
  local shown = start:sub(1, 1) == "-" and "./" .. start or start
  local list = io.popen("find -L " .. folders.quoted(shown)
                        .. " -maxdepth 1 -type f ! -name '.*' -print0 2>/dev/null")
  local found = {}
  for path in (list and list:read("a") or ""):gmatch("[^\0]+") do
    local extension = path:lower():match("%.([^./]+)$")
    if SOUNDS[extension] then found[#found + 1] = path end
  end
  if list then list:close() end
  table.sort(found)
  return found
end

return folders
