-- The functions of `require "zyl"`, for help and for the editor stubs, as in zyl.hostapi. Each is also
-- a method of a program: prg:keygroups() is zyl.keygroups(prg).
return {
  { name = "keygroups", result = "fun(): zyl.Keygroup?",
    meaning = "Loop over the keygroups: for kg in prg:keygroups() do ... end." },
  { name = "zones", result = "fun(): zyl.Zone?",
    meaning = "Loop over the zones of all keygroups: for zone in prg:zones() do ... end." },
  { name = "select", result = "integer[]",
    meaning = "Select the keygroups that have everything that is asked for, and no others; gives "
              .. "their indexes.",
    { "wanted", "zyl.Wanted", "indexes, key, keys, sample, where, all, add" } },
  { name = "transaction", result = "any",
    meaning = "Call body(program) and give its results; when it fails, put the program back as it "
              .. "was and raise the error again.",
    { "body", "fun(program: ZylSProgram): any" } },
}
