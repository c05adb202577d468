-- What the numbers of a program mean: the unit and the curve of each field, for converting programs to
-- other formats and back. A program stores numbers from 0 to 99 or -50 to 50 without units; the curves
-- here are this system's choice. docs/formats.md describes them.
--
-- stored(value(v)) is v for every number v that a field stores, also outside its usual range.
local meanings = {}

-- A curve: unit, formula (for documents; v is the stored number), value(v) and its inverse.
local function linear(unit, perStep, formula, zero)
  zero = zero or 0
  return { unit = unit, formula = formula, value = function(v) return (v - zero) * perStep end,
           stored = function(u) return math.floor(u / perStep + zero + 0.5) end }
end

local function exponential(unit, atZero, perStep, formula)
  local rate = math.log(perStep)
  return { unit = unit, formula = formula, value = function(v) return atZero * math.exp(v * rate) end,
           stored = function(u) return math.floor(math.log(u / atZero) / rate + 0.5) end }
end

local CURVES = {
  time = exponential("s", 0.001, 20000 ^ (1 / 99), "0.001 · 20000^(v/99)"),
  cutoff = exponential("Hz", 20, 2 ^ (1 / 10), "20 · 2^(v/10)"),
  cutoffAmount = linear("ct", 120, "120 v"),
  speed = linear("Hz", 0.1, "v / 10"),
  loudness = linear("dB", 0.5, "(v - 99) / 2", 99),
  level = linear("dB", 0.5, "v / 2"),
  -- Like the volume controller of MIDI, with 99 as its highest value.
  output = { unit = "dB", formula = "40 · log10(v/99)",
             value = function(v) return 40 * math.log(v / 99, 10) end,
             stored = function(u) return math.floor(99 * 10 ^ (u / 40) + 0.5) end },
  percent = linear("%", 100 / 99, "100 v / 99"),
  pan = linear("%", 2, "2 v"),
  pitchAmount = linear("ct", 24, "24 v"),
  tuning = linear("ct", 100 / 256, "100 v / 256"),
  semitones = linear("ct", 100, "100 v"),
  octaves = linear("ct", 1200, "1200 v"),
  resonance = linear("dB", 0.25, "v / 4"),
  fineResonance = linear("dB", 0.25 / 256, "v / 1024"),
  steps = linear("steps", 1, "v"),
}

-- The fields of each curve.
local LISTS = {
  time = [[KGampEnvAttack KGampEnvDecay KGampEnvRelease KGenv2Rate1 KGenv2Rate2 KGenv2Rate3 KGenv2Rate4
           KGenv3Rate1 KGenv3Rate2 KGenv3Rate3 KGenv3Rate4 PRGLFOdelay PRGLFO2delay]],
  cutoff = "KGfilterFreq",
  cutoffAmount = [[ZonefilterOffset KGfilterKey KGfilterVel KGfilterLFO2 KGfilterEnv2 KGvelFilterEnv
                   KGfilterModGain1 KGfilterModGain2 KGfilterModGain3 KGenv3VelFilter
                   PRGsoftPedalFilter]],
  speed = "PRGLFOspeed PRGLFO2speed",
  loudness = "PRGloudness",
  level = [[ZoneloudnessOffset PRGloudVel PRGloudKey PRGloudPrs KGvelVolume PRGampModGain2
            PRGampModGain3 KGampModGain PRGsoftPedalLoudness]],
  output = "PRGstereoLevel",
  percent = [[KGampEnvSustain KGenv2Level1 KGenv2Level2 KGenv2Level3 KGenv2Level4 KGenv3Level1
              KGenv3Level2 KGenv3Level3 KGenv3Level4 PRGLFOdepth PRGLFOdepthWheel PRGLFOdepthPrs
              PRGLFOdepthVel PRGLFO2depth]],
  pan = "PRGstereoPan ZonepanOffset PRGpanKey PRGpanModWheel PRGpanModGain1 PRGpanModGain2 PRGpanModGain3",
  pitchAmount = "KGenvPitch KGpitchModLFO1 KGpitchModGain",
  tuning = "PRGtune KGtune ZonetuneOffset",
  semitones = "PRGbendRangeUp PRGpitchBendDown PRGpressurePitchBend",
  octaves = "PRGplayOctave",
  resonance = "KGresonance KGfilterResonanceModGain",
  fineResonance = "KGfilterResonance",
  -- Added to the numbers of the times that they change.
  steps = [[KGampVelModAtt KGampVelModRel KGampVelModOffRel KGampKeyModDecRel KGenv2VelModRate1
            KGenv2VelModRate4 KGenv2VelModOffRate4 KGenv2KeyModRate34 KGenv3VelModRate1
            KGenv3VelModRate4 KGenv3VelModOffRate4 KGenv3KeyModRate34 PRGsoftPedalAttack]],
}

local curveOf = {}
for name, list in pairs(LISTS) do
  for method in list:gmatch("%w+") do curveOf[method] = CURVES[name] end
end

-- The curve of a field's method, or nil if its number has no unit.
function meanings.of(method) return curveOf[method] end
-- The value of a stored number in the field's unit.
function meanings.value(method, stored) return curveOf[method].value(stored) end
function meanings.stored(method, value) return curveOf[method].stored(value) end
-- The seconds of a time, as a number on the scale of 0 to 99.
meanings.seconds = CURVES.time.value

-- Markdown rows: fields, unit, formula and examples, in the order of the methods.
function meanings.rows()
  local order, fieldsOf = {}, {}
  for _, method in ipairs(host.methods()) do
    local curve = curveOf[method]
    if curve and not fieldsOf[curve] then
      fieldsOf[curve] = {}
      order[#order + 1] = curve
    end
    if curve then table.insert(fieldsOf[curve], "`" .. method .. "`") end
  end
  local rows = {}
  for i, curve in ipairs(order) do
    rows[i] = ("| %s | %s | %s | %.4g | %.4g |"):format(table.concat(fieldsOf[curve], ", "),
              curve.formula, curve.unit, curve.value(1), curve.value(50))
  end
  return rows
end

return meanings
