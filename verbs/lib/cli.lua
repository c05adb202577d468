-- The command line of a verb: options, help, messages, and batches that continue after a failed
-- file.
local disk = require "disk"
local folders = require "folders"
local journal = require "journal"
local json = require "json"
local notes = require "notes"
local progress = require "progress"

local CLOSED_PIPE = 32  -- EPIPE
local cli = { FAILED = 4, USAGE = 2 }
local verb, anyFailed, quiet, resultStatus = "zyl", false, false, false
local isOpen, openList = false, false   -- between cli.parse and cli.finish; in a JSON list
local FILES = { sounds = "sound file", programs = "program", banks = "SoundFont bank" }  -- of form.folders
local searched = {}         -- how folders are expanded: kind and recursive

local function say(text)
  progress.hide()
  io.stderr:write("zyl ", verb, ": ", text, "\n")
end

local function usage(text)
  say(text)
  io.stderr:write("Try 'zyl ", verb, " --help'.\n")
  isOpen = false
  os.exit(cli.USAGE, true)
end
cli.usage = usage

-- An option with its value, as shown in help and messages.
local function shown(option)
  local short = option.short and "-" .. option.short .. ", " or ""
  return short .. "--" .. option.name .. (option.value and " " .. option.value or "")
end

local function help(form)
  io.write("zyl ", form.verb, " [OPTION…] ", form.operands, "\n\n", form.about, "\n\n")
  local rows, width = {}, 0
  for _, option in ipairs(form.options) do width = math.max(width, #shown(option)) end
  for _, option in ipairs(form.options) do
    local text = option.help:gsub("\n", "\n" .. (" "):rep(width + 4))
    rows[#rows + 1] = ("  %-" .. width .. "s  %s"):format(shown(option), text)
  end
  io.write(table.concat(rows, "\n"), "\n")
  if form.more then io.write("\n", form.more, "\n") end
  io.write("\nExit status: ", form.status or "0 success, 2 wrong command line, 4 some files failed",
           ", 130 Ctrl-C.\n")
end

local function valueOf(option, text)
  if option.kind == "text" then
    if text == "" then usage(shown(option) .. ": the value is empty") end
    return text
  end
  local number = text:match("^[%d.+-]") and tonumber(text) or nil
  if number and option.kind == "integer" then number = math.tointeger(number) end
  if not number or number ~= number or math.abs(number) == math.huge then
    usage(("%s: '%s' is not %s"):format(shown(option), text,
          option.kind == "integer" and "a whole number" or "a number"))
  end
  if number < option.low or number > option.high then
    usage(("%s: %s is outside %s to %s"):format(shown(option), text, option.low, option.high))
  end
  return number
end

-- Whether a word is the number that may follow an option: no file has that name.
local function isNumber(word)
  return word ~= nil and word:match("^[+-]?%d*%.?%d+$") ~= nil and not host.fileType(word)
end

-- Replaces folders with the files of the kind in them, and removes duplicates. Also returns the paths
-- below the folders, false for other files.
local function withoutFolders(words)
  local files, below, seen = {}, {}, {}
  local function add(file, inside)
    if not seen[file] then files[#files + 1], below[#files + 1] = file, inside or false end
    seen[file] = true
  end
  for _, word in ipairs(words) do
    if disk.isFolder(word) then
      local found, inside = folders.files(word, searched.kind, searched.recursive)
      for i, file in ipairs(found) do add(file, inside[i]) end
      if #found == 0 then
        cli.failed(word, ("no %s in this folder"):format(FILES[searched.kind]))
      end
    else
      add(word)
    end
  end
  return files, below
end
cli.withoutFolders = withoutFolders

-- Parses the global `arg` and returns the options by name and the list of files without duplicates.
-- Exits after --help and on a wrong command line. Fields of `form`:
--   verb, about   name and description
--   options       list of { name, help }, and, except for flags, kind ("integer", "number", "text"),
--                 value (its name in the help), low, high, default; optionally short (a letter) and many
--                 (the option can be repeated, and its value is a list), number (an option as here: a number
--                 may follow, which becomes the option number.of)
--   resultStatus  the verb may return exit status 1 as a result
--   folders       "sounds", "programs" or "banks": replace folders with these files; adds the option --recursive
--   mixed         not all words are files: the verb calls cli.withoutFolders
--   repeats       keep duplicates
--   takes         function(word, options) that returns whether it takes an operand that is no file
--   notes         the verb prints or parses notes: adds the option --octave
--   optional      operands may be missing
--   operands, more, status   texts of the help
function cli.parse(form)
  verb, resultStatus = form.verb, form.resultStatus
  form.operands = form.operands or form.folders == "programs" and "PROGRAM|FOLDER…"
                  or form.folders and "FILE|FOLDER…" or "FILE…"
  local byName, options, files, seen = {}, {}, {}, {}
  for _, option in ipairs(form.options) do byName[option.name] = option end
  if form.notes then
    table.insert(form.options, { name = "octave", kind = "integer", value = "N",
      low = notes.LOWEST_MIDDLE, high = notes.HIGHEST_MIDDLE,
      help = "octave of key 60 in note names: with 4, C4 is key 60\n(default: ZYL_MIDDLE_C, or 3 as in the editor)" })
  end
  if form.folders then
    table.insert(form.options, { name = "recursive", short = "r", help = "search the subfolders of folders too" })
  end
  if not byName.quiet then
    table.insert(form.options, { name = "quiet", help = "print only failures and warnings, no notes and no progress" })
  end
  table.insert(form.options, { name = "help", help = "print this help" })
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
    elseif not onlyFiles and word:match("^%-.") and not word:match("^%-%d") then
      local name, joined = word:match("^%-%-([%w-]+)=(.*)$")
      name = name or word:match("^%-%-([%w-]+)$") or word == "-h" and "help"
      local option = byName[name or word]
      if not option then usage("there is no option " .. word) end
      local number
      if not option.kind then
        if joined and not option.number then usage(shown(option) .. " takes no value") end
        options[option.name], number = true, joined
      else
        if not joined then i = i + 1 end
        local text = joined or arg[i]
        if not text then usage(shown(option) .. ": the value is missing") end
        local value = valueOf(option, text)
        if option.many then
          options[option.name] = options[option.name] or {}
          table.insert(options[option.name], value)
        else
          options[option.name] = value
        end
      end
      if option.number and not number and isNumber(arg[i + 1]) then
        i = i + 1
        number = arg[i]
      end
      if number then options[option.number.of] = valueOf(option.number, number) end
    elseif (onlyFiles or not form.takes or not form.takes(word, options))
           and (form.repeats or not seen[word]) then
      seen[word] = true
      files[#files + 1] = word
    end
    i = i + 1
  end
  isOpen = not options.help
  if options.help then
    help(form)
    os.exit(0, true)
  end
  if form.notes then
    if options.octave then notes.setMiddle(options.octave) end
    local _, failure = cli.try(notes.middle)
    if failure then usage(failure) end
  end
  quiet = options.quiet == true
  if quiet then progress.forbid() end
  if #files == 0 and not form.optional then usage("no " .. form.operands:match("^%a+") .. " given") end
  searched = { kind = form.folders or "sounds", recursive = options.recursive }
  return options, form.folders and not form.mixed and withoutFolders(files) or files
end

-- A message about a file, or, with nil, about all of them.
local function about(file, text) say(file and file .. ": " .. text or text) end

-- Reports why a file failed; the batch continues and ends with status 4.
function cli.failed(file, reason)
  anyFailed = true
  about(file, reason)
end

function cli.anyFailed() return anyFailed end

-- Prints a note unless --quiet is given.
function cli.note(file, text)
  if not quiet then about(file, text) end
end

-- Prints a warning, even with --quiet.
cli.warn = about

-- Formats an error of a method or of Lua as one line without the script position.
function cli.reason(failure)
  return (tostring(failure):match("[^\n]*"):gsub("^[^\n]-%.lua:%d+: ", ""))
end

-- Runs body(...) and returns its results, or nil and the reason on an error.
function cli.try(body, ...)
  local results = table.pack(pcall(body, ...))
  if results[1] then return table.unpack(results, 2, results.n) end
  return nil, cli.reason(results[2])
end

-- Prints results in the order of the files, each as soon as all earlier ones are available. A
-- result is a string, or with `asJson` a value for json.lua; nil prints nothing.
function cli.printer(asJson)
  local waiting, nextIndex, printed = {}, 1, 0
  local printer = {}
  if asJson then
    io.write("[")
    openList = true
  end
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
    openList = false
  end
  return printer
end

-- Exits with the status of the batch.
function cli.finish()
  isOpen = false
  journal.close()
  progress.hide()
  local flushed, _, code = io.stdout:flush()
  -- zyl itself reports lost output and changes status 0 to 1.
  local lost = resultStatus and not flushed and code ~= CLOSED_PIPE
  if anyFailed or lost then os.exit(cli.FAILED, true) end
end

-- After Ctrl-C: closes the JSON list, and says what was written.
local function stopped()
  if not isOpen then return end
  if openList then io.write("\n]\n") end
  local count = journal.close()
  if count > 0 then
    say(("%d file%s written; 'zyl undo --last' restores %s"):format(count, count == 1 and " was" or "s were",
        count == 1 and "it" or "them"))
  end
end
cli.atExit = setmetatable({}, { __gc = function() pcall(stopped) end })

return cli
