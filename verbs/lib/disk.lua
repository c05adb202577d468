-- Files on disk. What is no regular file, such as a named pipe, is never opened: it would block.
local disk = {}

-- The file, open for reading bytes (or in another mode); nil and the reason.
function disk.open(path, mode)
  local type, absent = host.fileType(path)
  if not type then return nil, absent end
  if type ~= "file" then return nil, type == "folder" and "is a folder" or "is no regular file" end
  local file, reason = io.open(path, mode or "rb")
  if not file then return nil, (reason:gsub("^.*: ", "")) end
  return file
end

-- Whether a file is there that can be read.
function disk.isFile(path)
  local file = disk.open(path)
  if file then file:close() end
  return file ~= nil
end

function disk.isFolder(path) return host.fileType(path) == "folder" end

return disk
