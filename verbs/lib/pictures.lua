-- The names of pictures for the files of a command line.
local cli = require "cli"

local pictures = {}

-- Returns a function that returns the picture for a file: `picture`, or with several files
-- PICTURE-NAME.png, where equal names get numbers. A name that does not end in .png or .svg is an error
-- of the command line; `label` names the option.
function pictures.names(label, picture, count)
  local base, kind = picture:match("^(.*)%.(%a+)$")
  kind = kind and kind:lower()
  if kind ~= "png" and kind ~= "svg" then
    cli.usage(("%s: '%s' does not end in .png or .svg"):format(label, picture))
  end
  local taken = {}
  return function(path)
    if count == 1 then return picture end
    local name = path:match("[^/]*$")
    local stem = base .. "-" .. (name:match("^(.+)%.[^.]*$") or name)
    local try, number = stem, 1
    while taken[try] do
      number = number + 1
      try = stem .. "-" .. number
    end
    taken[try] = true
    return try .. "." .. kind
  end
end

return pictures
