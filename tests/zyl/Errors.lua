-- Failures of methods: the fields of the error and its line.
local check = dofile(arg[0]:match("^(.*/)") .. "Check.lua")
local p = host.new("Probe")

local function failure(...) return select(2, pcall(p.Fail, p, ...)) end

-- Expects these fields and no others.
local function expect(value, fields)
  for _, name in ipairs { "kind", "method", "argument", "expected", "position", "given",
                          "required", "message" } do
    check.equal(value[name], fields[name], name)
  end
end

local method = "Probe::Fail"
for _, case in ipairs {
  { "a string", "abc" }, { "a float", 1.5 }, { "a boolean", true }, { "a table", { 1, 2 } },
  { "an object of class ROCAlgo", p }, { "an object of class ROCAlgo", host.var(p) },
  { "a null object", host.null }, { "a string", host.var("abc") }, { "nil", nil },
} do
  local line = 'Fail: argument 1 "Number" is ' .. case[1] .. ", expected an integer"
  expect(failure(case[2], "ArgType"), { kind = "ArgType", method = method, argument = "Number",
                                        expected = 1, position = 1, message = line })
end
check.equal(failure(2.0, "ArgType").readable,
            'Fail: argument 1 "Number" is a float, expected an integer (write 2)')
check.equal(failure(3, "ArgFloat").readable,
            'Fail: argument 1 "Number" is an integer, expected a float (write 3.0)')

check.equal(failure(1, "missing").readable,
            'Fail: argument 3 "Third" is missing, expected a boolean')

local value = failure(-5, "ArgValue")
expect(value, { kind = "ArgValue", method = method, argument = "Number", position = 1,
                message = value.message })
check.equal(value.message, 'Fail: argument 1 "Number" is -5, a value that is not allowed')
check.raises('is "two lines",', p.Fail, p, "two\nlines", "ArgValue")
check.raises('is "' .. ("y"):rep(40) .. '...",', p.Fail, p, ("y"):rep(60), "ArgValue")
value = failure(101, "ArgUser")
expect(value, { kind = "ArgUser", method = method, position = 1, message = "too large" })
check.equal(value.readable, "Fail: argument 1 is 101: too large")
value = failure(host.object("Gadget"), "ArgPType")
expect(value, { kind = "ArgPType", method = method, position = 1, given = "Gadget",
                required = "CSample", message =
                "Fail: argument 1 is an object of class Gadget, expected one of class CSample" })
check.equal(failure().readable, "Fail: it never works")
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
