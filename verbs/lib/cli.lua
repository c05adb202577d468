-- The command line of a verb: options, help, messages, and the batch of files that goes on when
-- one of them fails.
local disk = require "disk"
local folders = require "folders"
local json = require "json"
local progress = require "progress"

local CLOSED_PIPE = 32  -- EPIPE
local cli = { FAILED = 4, USAGE = 2 }
local verb, anyFailed, quiet, answers = "zyl", false, false, false

local function say(text)
  progress.hide()
  io.stderr:write("zyl ", verb, ": ", text, "\n")
end

local function usage(text)
  say(text)
  io.stderr:write("Try 'zyl ", verb, " --help'.\n")
  os.exit(cli.USAGE, true)
end
cli.usage = usage

-- The name of an option with its value, as help and messages show it.
local function shown(option)
  local short = option.short and "-" .. option.short .. ", " or ""
  return short .. "--" .. option.name .. (option.value and " " .. option.value or "")
end

local function help(form)
  local operands = form.operands or form.folders and "FILE|FOLDER…" or "FILE…"
  io.write("zyl ", form.verb, " [OPTION…] ", operands, "\n\n", form.about, "\n\n")
  local rows, width = {}, 0
  for _, option in ipairs(form.options) do width = math.max(width, #shown(option)) end
  for _, option in ipairs(form.options) do
    local text = option.help:gsub("\n", "\n" .. (" "):rep(width + 4))
    rows[#rows + 1] = ("  %-" .. width .. "s  %s"):format(shown(option), text)
  end
  io.write(table.concat(rows, "\n"), "\n")
  if form.more then io.write("\n", form.more, "\n") end
  io.write("\nExit status: ", form.status or "0 done, 2 wrong command line, 4 some files failed",
           ", 130 Ctrl-C.\n")
end

local function valueOf(option, text)
  if option.kind == "text" then
    if text == "" then usage(shown(option) .. ": an empty value") end
    return text
  end
  local number = text:match("^[%d.+-]") and tonumber(text) or nil
  if number and option.kind == "integer" then number = math.tointeger(number) end
  if not number or number ~= number then
    usage(("%s: '%s' is not %s"):format(shown(option), text,
          option.kind == "integer" and "a whole number" or "a number"))
  end
  if number < option.low or number > option.high then
    usage(("%s: %s is outside %s to %s"):format(shown(option), text, option.low, option.high))
  end
  return number
end

-- Files and the sound files of folders, each one once.
local function withoutFolders(words)
  local files, seen = {}, {}
  local function add(file)
    if not seen[file] then files[#files + 1] = file end
    seen[file] = true
  end
  for _, word in ipairs(words) do
    if disk.isFolder(word) then
      local inside = folders.sounds(word)
      for _, file in ipairs(inside) do add(file) end
      if #inside == 0 then cli.failed(word, "no sound file in this folder") end
    else
      add(word)
    end
  end
  return files
end

-- Reads the global `arg` and answers the options by name and the list of files, each one once.
-- form: verb, about, options; an option: name, help, and but for flags a kind ("integer",
-- "number", "text"), the value's name in help, low and high, default; `short` for a letter of its
-- own. `answers` says that the status 1 is an answer of the verb. With `folders` a folder stands for its sound files; with `repeats` words stay as they are
-- written. `operands`, `more` and `status` are parts of the help. Ends the script after --help and
-- on a wrong command line.
function cli.parse(form)
  verb, answers = form.verb, form.answers
  local byName, options, files, seen = {}, {}, {}, {}
  for _, option in ipairs(form.options) do byName[option.name] = option end
  if not byName.quiet then
    table.insert(form.options, { name = "quiet", help = "no progress and no notes, failures and warnings only" })
  end
  table.insert(form.options, { name = "help", help = "print this" })
  for _, option in ipairs(form.options) do
    byName[option.name] = option
    if option.short then byName["-" .. option.short] = option end
    options[option.name] = option.default
  end
  local i, onlyFiles = 1, false
  while i <= #arg do
    local word = arg[i]
    if not onlyFiles and word == "--" then
      onlyFiles = true
    elseif not onlyFiles and word:sub(1, 1) == "-" and word ~= "-" then
      local name, joined = word:match("^%-%-([%w-]+)=(.*)$")
      name = name or word:match("^%-%-([%w-]+)$") or word == "-h" and "help"
      local option = byName[name or word]
      if not option then usage("there is no option " .. word) end
      if not option.kind then
        if joined then usage(shown(option) .. " takes no value") end
        options[option.name] = true
      else
        if not joined then i = i + 1 end
        local text = joined or arg[i]
        if not text then usage(shown(option) .. ": the value is missing") end
        options[option.name] = valueOf(option, text)
      end
    elseif form.repeats or not seen[word] then
      seen[word] = true
      files[#files + 1] = word
    end
    i = i + 1
  end
  if options.help then
    help(form)
    os.exit(0, true)
  end
  quiet = options.quiet == true
  if quiet then progress.forbid() end
  if #files == 0 then usage("no " .. (form.operands or "FILE"):match("^%a+") .. " given") end
  return options, form.folders and withoutFolders(files) or files
end

-- Tells why a file failed; the batch goes on and ends with status 4.
function cli.failed(file, reason)
  anyFailed = true
  say(file .. ": " .. reason)
end

function cli.anyFailed() return anyFailed end

-- What is worth knowing and no failure.
function cli.note(file, text)
  if not quiet then say(file .. ": " .. text) end
end

-- What the result lacks without being a failure; said with --quiet too.
function cli.warn(file, text) say(file .. ": " .. text) end

-- An error of a method or of Lua as one line.
function cli.reason(failure)
  return (tostring(failure):match("[^\n]*"):gsub("^[^\n]-%.lua:%d+: ", ""))
end

-- Runs body(...) and answers what it returned; an error becomes (nil, reason).
function cli.try(body, ...)
  local results = table.pack(pcall(body, ...))
  if results[1] then return table.unpack(results, 2, results.n) end
  return nil, cli.reason(results[2])
end

-- Prints results in the order of the files, as soon as those before them are there. A result is
-- text, or with `asJson` a value for json.lua; nil prints nothing.
function cli.printer(asJson)
  local waiting, nextIndex, printed = {}, 1, 0
  local printer = {}
  if asJson then io.write("[") end
  function printer.result(index, value)
    waiting[index] = { value = value }
    while waiting[nextIndex] do
      local item = waiting[nextIndex].value
      waiting[nextIndex] = nil
      nextIndex = nextIndex + 1
      if item ~= nil then
        progress.hide()
        if asJson then
          io.write(printed > 0 and ",\n " or "\n ", json.encode(item))
        else
          io.write(item)
        end
        printed = printed + 1
      end
    end
  end
  function printer.close()
    if asJson then io.write(printed > 0 and "\n]\n" or "]\n") end
  end
  return printer
end

-- Leaves the script with the batch's status.
function cli.finish()
  progress.hide()
  local flushed, _, code = io.stdout:flush()
  -- Lost output is told of by zyl itself, with status 1 in the place of 0.
  local lost = answers and not flushed and code ~= CLOSED_PIPE
  if anyFailed or lost then os.exit(cli.FAILED, true) end
end

return cli
