-- Failures of methods: the fields of the error and its line.
local check = dofile(arg[0]:match("^(.*/)") .. "Check.lua")
local p = host.new("Probe")

local function failure(f, ...)
  local done, value = pcall(f, ...)
  check.equal(done, false)
  check.equal(type(value), "table")
  return value
end

-- All fields there are, and no others.
local function expect(value, fields)
  for _, name in ipairs { "kind", "method", "argument", "expected", "position", "given",
                          "required", "message" } do
    check.equal(value[name], fields[name], name)
  end
end

local method = "Probe::NeedInteger"
local line = method .. ': argument 1 "Number": an integer was expected, got '
for _, case in ipairs {
  { "abc", 'string "abc"' }, { 1.5, "double 1.5" }, { true, "bool true" },
  { { 1, 2 }, "an array of 2" }, { p, "an object of class ROCAlgo" }, { host.null, "a null object" },
  { host.var("x"), 'string "x"' }, { ("y"):rep(60), 'string "' .. ("y"):rep(40) .. '..."' },
  { "two\nlines", 'string "two lines"' },
} do
  local value = failure(p.NeedInteger, p, case[1])
  expect(value, { kind = "ArgType", method = method, argument = "Number", expected = 1,
                  position = 1, message = line .. case[2] })
end
check.equal(failure(p.NeedInteger, p).message, line .. "nothing")
check.equal(failure(p.NeedInteger, p, nil, 5).message, line .. "nothing")

local value = failure(p.NeedInteger, p, -5)
expect(value, { kind = "ArgValue", method = method, argument = "Number", position = 1,
                message = value.message })
check.equal(value.message:match("got (.*)"), "integer -5")

value = failure(p.NeedInteger, p, 101)
expect(value, { kind = "ArgUser", method = method, position = 1,
                message = "the number is too large" })
check.raises(method .. ": argument 1: the number is too large, got integer 101", p.NeedInteger, p, 101)

value = failure(p.NeedSample, p, host.object("Gadget"))
expect(value, { kind = "ArgPType", method = "Probe::NeedSample", position = 1, given = "Gadget",
                required = "CSample", message = value.message })

value = failure(p.Fail, p)
expect(value, { kind = "Exception", message = "Probe::Fail: it never works" })

-- One line that starts with the script's position, also through other functions.
value = failure(function() p:NeedInteger("abc") end)
local here = debug.getinfo(1, "l").currentline - 1
check.equal(tostring(value):match("Errors%.lua:(%d+): "), tostring(here))
check.equal(tostring(value):find("\n"), nil)
check.equal("so: " .. value, "so: " .. tostring(value))

-- A status without a report, and a report without a failing status.
check.raises("FailSilently failed with status 99", p.FailSilently, p)
check.equal(select("#", p:ReportAndGoOn()), 0)
check.raises("it never works", p.Fail, p)
