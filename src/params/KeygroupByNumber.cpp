// The parameters of keygroups and of their zones, by number.
#include "frame/ChangeNotice.h"
#include "params/ByNumber.h"
#include "params/Keygroups.h"
#include "params/ParameterNumbers.h"
#include "params/ParameterTable.h"
#include "params/ParameterTexts.h"
#include "params/ProgramMethods.h"

namespace {

constexpr int32_t kLastKeygroup = number::kFirstZone - 1;
constexpr int32_t kLastZone = number::kFirstSample - 1;

// By number, only -2 addresses the selected keygroups; every other negative index addresses all.
KeygroupRange AddressedByNumber(akaiProgram& record, int32_t index) {
  return AddressedKeygroups(record, index < -2 ? -1 : index);
}

// Visits the addressed keygroups. A visit may call a script that changes the program; the iteration
// ends when the record is detached.
template <class Visit>
void ForEachByNumber(ZylSProgram& object, int32_t index, Visit visit) {
  const LoadedProgram program = LoadedProgram::Of(object);
  AddressedByNumber(*program.record, index).ForEach([&](int k) {
    visit(*program.record, k);
    return program.IsAttachedTo(object) && k + 1 < program->KeyGroupCount();
  });
}

// The value of a typed text, parsed once, at the first keygroup that needs it: parsing replaces the
// text, and the replacement may parse to another value.
class TypedValue {
 public:
  explicit TypedValue(TypedText typed) : typed_(typed) {}
  template <class FromText>
  int32_t Value(FromText fromText) {
    if (typed_ == nullptr) return kNoValue;
    if (!known_) value_ = fromText(*typed_);
    known_ = true;
    return value_;
  }

 private:
  TypedText typed_;
  bool known_ = false;
  int32_t value_ = kNoValue;
};

int32_t GetZoneOutput(const ZylSProgram& object, int keygroup, int zone) {
  const akaiProgram& record = *object.program;
  const auto output =
      static_cast<int8_t>(record.keyGroupArray[keygroup].outOffset[zone] + GetIndyOutput(record));
  return output >= object.maxIndyOut ? -1 : output;
}

// Sets the output of a zone in some keygroups. Apply() doesn't allocate.
class ZoneOutputChange {
 public:
  explicit ZoneOutputChange(ZylSProgram& object)
      : object_(object),
        value_(newROCParam(0)),
        offsetNotice_(object, number::kOutOffset, value_.get()),
        outputNotice_(object, number::kZoneOutput, value_.get()) {}

  void Apply(int32_t output, int keygroup, int zone) {
    value_->SetInt(output);
    akaiProgram& record = *object_.program;
    record.keyGroupArray[keygroup].outOffset[zone] = static_cast<uint8_t>(
        static_cast<uint32_t>(output) - static_cast<uint32_t>(GetIndyOutput(record)));
    offsetNotice_.Send();
    outputNotice_.Send();
  }

 private:
  ZylSProgram& object_;
  ROCParamPtr value_;
  ChangeNotice offsetNotice_;
  ChangeNotice outputNotice_;
};

}  // namespace

int32_t KeyGroupParamValue(ZylSProgram& object, int32_t number, int32_t keygroup,
                           std::optional<int32_t> newValue) {
  const Parameter* row = RowOfNumber(number, number::kFirstKeygroup, kLastKeygroup);
  int32_t value = -1;
  ForEachByNumber(object, keygroup, [&](akaiProgram& record, int k) {
    if (row != nullptr) {
      value = LoadField(KeygroupField(record, *row, k), row->type);
      if (newValue) StoreInKeygroups(*row, {record, k, k + 1}, *newValue);
    } else if (number == number::kKeygroupNumber) {
      value = k + 1;
    } else if (number == number::kKeygroupIndex) {
      value = k;
    }
  });
  return value;
}

int32_t KGIntValue(ZylSProgram& object, LoadedProgram, KeyGroupIndex keygroup,
                   Arg<int32_t, "Index"> number, Opt<int32_t, "NewValue"> newValue) {
  std::optional<int32_t> stored;
  if (newValue) stored = *newValue;
  std::optional<ChangeNotice> notice;
  if (newValue) notice.emplace(object, number.param, newValue.param, keygroup.param);
  const int32_t value = KeyGroupParamValue(object, *number, *keygroup, stored);
  if (newValue && *newValue != value) {
    object.dirty = true;
    notice->Send();
  }
  return value;
}

std::string KGStringValue(ZylSProgram& object, LoadedProgram, KeyGroupIndex keygroup,
                          Arg<int32_t, "Index"> number, OptVar<std::string, "NewString"> newText) {
  const Parameter* row = RowOfNumber(*number, number::kFirstKeygroup, kLastKeygroup);
  std::string text;
  if (row == nullptr || row->text == nullptr) return text;
  TypedValue typed(newText.param);
  ForEachByNumber(object, *keygroup, [&](akaiProgram& record, int k) {
    std::byte* field = KeygroupField(record, *row, k);
    text = ValueText(*row->text, LoadField(field, row->type));
    const int32_t value =
        typed.Value([&](ROCParam& given) { return ValueFromText(*row->text, given); });
    if (value != kNoValue) StoreField(field, row->type, value);
  });
  return text;
}

int32_t ZoneParamValue(ZylSProgram& object, int32_t number, int32_t keygroup, int zone,
                       std::optional<int32_t> newValue) {
  const Parameter* row = RowOfNumber(number, number::kFirstZone, kLastZone);
  int32_t value = -1;
  std::optional<ZoneOutputChange> output;
  if (number == number::kZoneOutput && newValue) output.emplace(object);
  ForEachByNumber(object, keygroup, [&](akaiProgram& record, int k) {
    if (row != nullptr) {
      std::byte* field = ZoneField(record, *row, k, zone);
      value = LoadField(field, row->type);
      if (newValue) StoreField(field, row->type, *newValue);
    } else if (number == number::kZoneOutput) {
      value = GetZoneOutput(object, k, zone);
      if (output) output->Apply(*newValue, k, zone);
    } else if (number == number::kZoneNumber) {
      value = zone + 1;
    }
  });
  return value;
}

std::string ZoneParamText(ZylSProgram& object, int32_t number, int32_t keygroup, int zone,
                          TypedText newText) {
  const Parameter* row = RowOfNumber(number, number::kFirstZone, kLastZone);
  std::string text;
  TypedValue typed(newText);
  std::optional<ZoneOutputChange> change;
  ForEachByNumber(object, keygroup, [&](akaiProgram& record, int k) {
    if (row != nullptr && row->text != nullptr) {
      std::byte* field = ZoneField(record, *row, k, zone);
      text = ValueText(*row->text, LoadField(field, row->type));
      const int32_t value =
          typed.Value([&](ROCParam& given) { return ValueFromText(*row->text, given); });
      if (value != kNoValue) StoreField(field, row->type, value);
    } else if (number == number::kZoneOutput) {
      text = OutputText(GetZoneOutput(object, k, zone));
      if (newText == nullptr) return;
      if (!change) change.emplace(object);  // may throw; parsing replaces the typed text
      const int32_t output =
          typed.Value([&](ROCParam& given) { return OutputFromText(given, object.maxIndyOut); });
      change->Apply(output, k, zone);
    }
  });
  return text;
}

namespace {

// Disables notifications in a scope, and enables them at its end even if they were off before.
class NotificationsOff {
 public:
  explicit NotificationsOff(ZylSProgram& object) : object_(object) {
    object_.enableRegisterCall = false;
  }
  ~NotificationsOff() { object_.enableRegisterCall = true; }
  NotificationsOff(const NotificationsOff&) = delete;
  NotificationsOff& operator=(const NotificationsOff&) = delete;

 private:
  ZylSProgram& object_;
};

// Notifies the modules of a zone's new value: once for each addressed keygroup.
void NotifyZone(ZylSProgram& object, ChangeNotice& notice, int32_t keygroup) {
  if (keygroup >= 0) {
    notice.SendFor(keygroup);
  } else {
    ForEachByNumber(object, keygroup, [&](const akaiProgram&, int k) { notice.SendFor(k); });
  }
}

}  // namespace

std::optional<int32_t> ZoneIntValue(Call& call, LoadedProgram, KeyGroupIndex keygroup, OneZone zone,
                                    Arg<int32_t, "Index"> number, Opt<int32_t, "NewValue"> newValue,
                                    Deferred<Opt<int32_t, "UpdateKG">> updated) {
  ZylSProgram& object = call.program;
  std::optional<int32_t> stored;
  if (newValue) stored = *newValue;
  const ROCParamPtr index(newROCParam(-1));
  std::optional<ChangeNotice> notice;
  if (newValue) notice.emplace(object, number.param, newValue.param, index.get(), zone.param);
  // Setting the output of a zone sends its own notices; suppress them, since this method sends the
  // same notice for every parameter.
  const int32_t value = [&] {
    const NotificationsOff off(object);
    return ZoneParamValue(object, *number, *keygroup, *zone, stored);
  }();
  if (newValue && *newValue != value) {
    object.dirty = true;
    if (!updated.ReadNow(call)) return {};
    NotifyZone(object, *notice, updated.value.ValueOr(*keygroup));
  }
  return value;
}

std::string ZoneStringValue(ZylSProgram& object, LoadedProgram, KeyGroupIndex keygroup,
                            OneZone zone, Arg<int32_t, "Index"> number,
                            OptVar<std::string, "NewString"> newText) {
  return ZoneParamText(object, *number, *keygroup, *zone, newText.param);
}
