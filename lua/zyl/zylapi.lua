-- The functions of `require "zyl"`, for help and for the editor stubs, as in zyl.hostapi. Each is
-- also a method of a program: prg:keygroups() is zyl.keygroups(prg).
return {
  { name = "keygroups", result = "fun(): zyl.Keygroup?",
    meaning = "Iterate over the keygroups: for kg in prg:keygroups() do ... end." },
  { name = "zones", result = "fun(): zyl.Zone?",
    meaning = "Iterate over the zones of all keygroups: for zone in prg:zones() do ... end." },
  { name = "select", result = "integer[]",
    meaning = "Select exactly the keygroups that match all criteria; returns their indexes.",
    { "wanted", "zyl.Wanted", "indexes, key, keys, sample, where, all, add" } },
  { name = "transaction", result = "any",
    meaning = "Call body(program) and return its results; if it fails, restore the program and "
              .. "raise the error again.",
    { "body", "fun(program: ZylSProgram): any" } },
}
