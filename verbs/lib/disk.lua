-- Files on disk. Only regular files are opened: opening a named pipe could block.
local journal = require "journal"

local disk = {}

-- Opens a file for reading bytes (or in another mode). Returns nil and the reason on failure.
function disk.open(path, mode)
  local type, absent = host.fileType(path)
  if not type then return nil, absent end
  if type ~= "file" then return nil, type == "folder" and "is a folder" or "is not a regular file" end
  local file, reason = io.open(path, mode or "rb")
  if not file then return nil, (reason:gsub("^.*: ", "")) end
  return file
end

-- Whether a readable file exists.
function disk.isFile(path)
  local file = disk.open(path)
  if file then file:close() end
  return file ~= nil
end

function disk.isFolder(path) return host.fileType(path) == "folder" end

-- Replaces the content of a file atomically and keeps the old one for `zyl undo`. Returns true, or
-- nil and the reason.
function disk.write(path, bytes) return journal.save(path, host.writeFile, path, bytes) end
-- The same for a copy of another file, with its mode and time.
function disk.copy(from, to) return journal.save(to, host.copyFile, from, to) end

return disk
