-- Failures of methods: the fields of the error and its line.
local check = dofile(arg[0]:match("^(.*/)") .. "Check.lua")
local p = host.new("Probe")

local function failure(...) return select(2, pcall(p.Fail, p, ...)) end

-- All fields there are, and no others.
local function expect(value, fields)
  for _, name in ipairs { "kind", "method", "argument", "expected", "position", "given",
                          "required", "message" } do
    check.equal(value[name], fields[name], name)
  end
end

local method = "Probe::Fail"
local line = method .. ': argument 1 "Number": an integer was expected, got '
for _, case in ipairs {
  { 'string "abc"', "abc" }, { "double 1.5", 1.5 }, { "bool true", true },
  { "an array of 2", { 1, 2 } }, { "an object of class ROCAlgo", p },
  { "a null object", host.null }, { 'string "two lines"', "two\nlines" },
  { 'string "' .. ("y"):rep(40) .. '..."', ("y"):rep(60) }, { "nothing", nil },
} do
  expect(failure(case[2], "ArgType"), { kind = "ArgType", method = method, argument = "Number",
                                        expected = 1, position = 1, message = line .. case[1] })
end

local value = failure(-5, "ArgValue")
expect(value, { kind = "ArgValue", method = method, argument = "Number", position = 1,
                message = value.message })
check.equal(value.message:match("got (.*)"), "integer -5")
value = failure(101, "ArgUser")
expect(value, { kind = "ArgUser", method = method, position = 1, message = "too large" })
check.equal(tostring(value):match("Probe.*"), method .. ": argument 1: too large, got integer 101")
value = failure(host.object("Gadget"), "ArgPType")
expect(value, { kind = "ArgPType", method = method, position = 1, given = "Gadget",
                required = "CSample", message = value.message })
expect(failure(), { kind = "Exception", message = "Probe::Fail: it never works" })

-- One line that starts with the script's position, also through other functions.
value = select(2, pcall(function() p:Fail("abc", "ArgType") end))
local here = debug.getinfo(1, "l").currentline - 1
check.equal(tostring(value):match("Errors%.lua:(%d+): "), tostring(here))
check.equal(tostring(value):find("\n"), nil)

-- A status without a report, and a report without a failing status.
check.raises("Fail failed with status 99", p.Fail, p, 1, "no report")
check.equal(select("#", p:Fail(1, "no status")), 0)
check.raises("it never works", p.Fail, p)
