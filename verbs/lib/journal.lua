-- The undo journal: keeps the files that verbs replace, so that `zyl undo` can restore them.
--
-- A verb writes through programs.write, samples.write or disk.write, which keep the old file here. For
-- any other way of writing, call journal.save(path, write, ...), which keeps the file, calls
-- write(...) and returns its results; or journal.keep(path) directly before the file is written,
-- created or removed. journal.move(from, to) renames a file. A verb that replaces the files of its
-- command line calls journal.expect(files) before the first one, so that the user is warned
-- before anything is written if they exceed the limit. journal.all(body) restores the files that body
-- wrote if it raises an error. cli.finish
-- ends the batch. Nothing is stored unless a file is kept.
-- Each batch is a folder: see batches.lua.
local batches = require "batches"

local journal = {}

local DEFAULT_LIMIT = 1 << 30

local batch                   -- the open batch, nil before the first file
local off = false             -- whether nothing more is kept
local facts = {}              -- lines for the index of the batch, until it begins
local within                  -- in journal.all: the root to use; the limit does not apply

local function cli() return require "cli" end  -- cli requires this module

-- The maximum size of all batches in bytes.
local function limit()
  local text = os.getenv("ZYL_UNDO_LIMIT") or ""
  local bytes = batches.size(text)
  if bytes then return bytes end
  if text ~= "" and not journal.warned then
    cli().warn("undo", "ZYL_UNDO_LIMIT=" .. text .. " is not a size such as 500M: the limit is 1G")
    journal.warned = true
  end
  return DEFAULT_LIMIT
end

local function disable(reason)
  off = true
  cli().warn("undo", reason)
end

local function begin()
  local root = within or batches.root()
  if not root then
    off = true
    cli().note("undo", "neither XDG_STATE_HOME nor HOME is set: this cannot be undone")
    return false
  end
  local verb = (arg and arg[0] or ""):match("([^/]+)$") or "zyl"
  local number = batches.create(root, verb:gsub("%.lua$", ""), table.unpack(arg or {}))
  if not number then
    disable(root .. " cannot be written: this cannot be undone")
    return false
  end
  batch = { number = number, folder = root .. "/" .. number, count = 0, bytes = 0, roomFor = 0,
            byPath = {}, entries = {} }
  local index = io.open(batch.folder .. "/index", "ab")
  for _, fact in ipairs(index and facts or {}) do index:write(batches.line(table.unpack(fact, 1, fact.n))) end
  if index then index:close() end
  facts = {}
  if not within then batches.trim(limit(), 0, number) end
  return true
end

local function record(durable, ...)
  local path = batch.folder .. "/index"
  if durable then return host.appendFile(path, batches.line(...)) end
  local file = io.open(path, "ab")
  local done = file and file:write(batches.line(...))
  return file and file:close() and done
end

-- Adds a line about the whole batch to its index, when the first file is kept.
function journal.remark(...)
  if batch then record(false, ...) else facts[#facts + 1] = table.pack(...) end
end

-- Whether the file that was at the path before this batch can be restored from it.
function journal.keeps(path)
  local entry = batch and batch.byPath[host.absolutePath(path) or path]
  return entry ~= nil and entry.info ~= nil
end

-- Whether `bytes` more may be kept.
local function fits(bytes)
  if within then
    batch.bytes = batch.bytes + bytes
    return true
  end
  if batch.bytes + bytes > limit() then return false end
  if batch.bytes + bytes > batch.roomFor then
    -- Make room for more than this file, because trim lists the whole folder.
    batch.roomFor = math.min(math.max(2 * (batch.bytes + bytes), limit() // 16), limit())
    batches.trim(limit(), batch.roomFor - batch.bytes, batch.number)
  end
  batch.bytes = batch.bytes + bytes
  return true
end

-- Records the content of the file that was kept last.
local function settle()
  local entry = batch and batch.pending
  if not entry then return end
  batch.pending = nil
  local info = host.fileInfo(entry.path)
  local unchanged = entry.info and info and info.modified == entry.info.modified
                    and info.size == entry.info.size or not entry.info and not info
  if unchanged and not entry.done then
    os.remove(entry.old)
    record(false, "same", entry.id)
    batch.byPath[entry.path] = nil
  else
    entry.done, batch.changed = true, true
    record(false, "done", entry.id, info and host.digest(entry.path) or "-")
  end
end

-- Keeps a file that is about to be written, created or removed.
function journal.keep(path)
  settle()
  if off or not within and limit() == 0 then return end
  local real = host.absolutePath(path) or path
  local info = host.fileInfo(real)
  if info and info.type ~= "file" or not batch and not begin() then return end
  local entry = batch.byPath[real]
  if not entry then
    if not fits(info and info.size or 0) then
      return disable(("the batch exceeds the journal's limit of %s (ZYL_UNDO_LIMIT): from %s on it cannot be undone")
                     :format(batches.bytes(limit()), path))
    end
    batch.count = batch.count + 1
    local id = batch.count
    entry = { id = id, path = real, info = info, old = ("%s/%d.old"):format(batch.folder, id) }
    local kept, reason = true, nil
    if info then kept, reason = host.copyFile(real, entry.old, true) end
    if kept then
      kept, reason = record(true, "keep", id, real, info and info.size or "-", info and info.modified or "-")
    end
    if not kept then
      return disable(("%s cannot be kept (%s): from here on the batch cannot be undone"):format(path, reason))
    end
    batch.byPath[real] = entry
    batch.entries[#batch.entries + 1] = entry
  end
  batch.pending = entry
end

-- Keeps a file, calls write(...) and returns its results.
function journal.save(path, write, ...)
  journal.keep(path)
  local results = table.pack(write(...))
  settle()
  return table.unpack(results, 1, results.n)
end

-- Renames a file; fails if `to` exists. Returns true, or nil and the reason.
function journal.move(from, to)
  if host.fileType(to) then return nil, to .. " exists" end
  from, to = host.absolutePath(from) or from, host.absolutePath(to) or to
  settle()
  local kept = not off and (within or limit() > 0) and (batch or begin())
  if kept then
    batch.count = batch.count + 1
    record(true, "move", batch.count, from, to)
  end
  local moved, reason = os.rename(from, to)
  if kept and moved then
    batch.byPath[from], batch.byPath[to], batch.changed = nil, nil, true
    batch.entries[#batch.entries + 1] = { id = batch.count, from = from, to = to }
  elseif kept then
    record(false, "same", batch.count)
  end
  return moved, reason and reason:gsub("^.*: ", "")
end

local function revert(first)
  settle()
  for _ = first, #batch.entries do
    local entry = table.remove(batch.entries)
    local done
    if entry.from then
      done = os.rename(entry.to, entry.from)
    elseif not entry.done then
      done = true
    elseif entry.info then
      done = host.copyFile(entry.old, entry.path)
    else
      done = os.remove(entry.path)
    end
    if done then
      record(false, "same", entry.id)
      batch.byPath[entry.path or ""] = nil
    else
      cli().warn(entry.path or entry.to, "could not be restored after the failure")
    end
  end
  batch.changed = #batch.entries > 0
end

-- Calls body(...). If it raises an error, restores all files that it has written, and raises the error
-- again. Works without a journal too, with copies in the temporary folder.
function journal.all(body, ...)
  settle()
  local outer, wasOff = batch, off
  local temporary = off or limit() == 0 or not batches.root()
  if temporary then
    batch, off = nil, false
    within = ("%s/zyl-%s"):format(os.getenv("TMPDIR") or "/tmp", batches.process("self"))
  else
    within = batches.root()
  end
  local first = 1
  if batch then first, batch.byPath = #batch.entries + 1, {} end
  local results = table.pack(pcall(body, ...))
  if not results[1] and batch then revert(first) end
  settle()
  if temporary then
    batches.remove(within)
    batch, off = outer, wasOff
  elseif batch and batch.bytes > limit() then
    batches.remove(batch.folder)
    batch = nil
    disable(("the batch exceeds the journal's limit of %s (ZYL_UNDO_LIMIT): it cannot be undone"):format(
            batches.bytes(limit())))
  elseif batch then
    batches.trim(limit(), 0, batch.number)
  end
  within = nil
  if not results[1] then error(results[2], 0) end
  return table.unpack(results, 2, results.n)
end

-- If the files together exceed the limit, warns the user and keeps nothing in this batch.
function journal.expect(paths)
  local total = 0
  for _, path in ipairs(paths) do total = total + ((host.fileInfo(path) or {}).size or 0) end
  if not off and limit() > 0 and total > limit() then
    disable(("the files have %s, more than the journal's limit of %s (ZYL_UNDO_LIMIT): this batch cannot be undone")
            :format(batches.bytes(total), batches.bytes(limit())))
  end
end

-- Ends the batch, and removes it if no file was changed. Returns how many files were.
function journal.close()
  settle()
  local count = 0
  for _, entry in ipairs(batch and batch.entries or {}) do
    if entry.done or entry.from then count = count + 1 end
  end
  if batch and batch.changed then
    record(false, "end")
  elseif batch then
    batches.remove(batch.folder)
  end
  batch, off = nil, true
  return count
end

-- Also ends the batch of a script that does not call cli.finish.
journal.atExit = setmetatable({}, { __gc = function() pcall(journal.close) end })

return journal
