-- Checks for the test scripts.
local check = {}

function check.equal(got, wanted, what)
  if got ~= wanted then
    error(("%s: got %s, wanted %s"):format(what or "value", tostring(got), tostring(wanted)), 2)
  end
end

-- Calls f(...), which must raise an error that contains `part`; returns the error value.
function check.raises(part, f, ...)
  local done, failure = pcall(f, ...)
  if done or not tostring(failure):find(part, 1, true) then
    error(("the error was: %s; wanted: %s"):format(tostring(failure), part), 2)
  end
  return failure
end

return check
