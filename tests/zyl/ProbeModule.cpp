// A small module for the tests of zyl: one class, "Probe", whose methods use every kind of value,
// every way to report a failure, calls back into the script, and pads.
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "host/base.h"
#include "host/qx.h"

namespace {

// An object that belongs to the module.
class Thing final : public RIOObject {
 public:
  const char* GetTypeName() const override { return "Thing"; }
};

class Probe final : public ZylDLLDispatch {
 public:
  ~Probe() override {
    for (ROCParam* value : registered_) deleteROCParam(value);
    deleteROCParam(kept_);
  }

  ZylFuncInfo* GetFuncTable() override { return table; }
  uint32_t* GetAuxTable() override { return &auxTable; }
  hashEntry* GetHashTable() override {
    if (hashTable == nullptr) hashTable.reset(ZylCreateFuncHashTable(this));
    return hashTable.get();
  }
  hashEntry* RebuildHashTable() override {
    hashTable.reset();
    return GetHashTable();
  }
  const char* GetClassName() const override { return "Probe"; }
  const char* GetBaseClassName() const override { return "ZylDisplayObject"; }
  void Destroy() override { delete this; }

  // The number of entries, and their type codes with "-" for an absent one.
  int Count(ROCParams* list, ROCParam** result) {
    *result = newROCParam(int32_t{list->count});
    return 0;
  }
  int Types(ROCParams* list, ROCParam** result) {
    std::string codes;
    for (int i = 0; i < list->count; ++i) {
      const ROCParam* value = list->Entry(i);
      codes += (i == 0 ? "" : " ") + (value == nullptr ? "-" : std::to_string(value->Type()));
    }
    *result = newROCParam(codes.c_str());
    return 0;
  }
  int Echo(ROCParams* list, ROCParam** result) {
    if (list->Entry(0) != nullptr) *result = new ROCParam(*list->Entry(0));
    return 0;
  }
  int Nothing(ROCParams*, ROCParam**) { return 0; }
  int NullObject(ROCParams*, ROCParam** result) {
    *result = new ROCParam;
    return 0;
  }
  int Self(ROCParams*, ROCParam** result) {
    *result = newROCParam(owner);
    return 0;
  }
  // One object of the module's own, the same until DropThing.
  int GetThing(ROCParams*, ROCParam** result) {
    if (thing_ == nullptr) thing_ = std::make_unique<Thing>();
    *result = newROCParam(thing_.get());
    return 0;
  }
  int DropThing(ROCParams*, ROCParam**) {
    thing_.reset();
    return 0;
  }

  // Changes its argument in place: numbers double, texts and lists grow.
  int Change(ROCParams* list, ROCParam**) {
    ROCParam* value = list->Entry(0);
    if (value == nullptr) return 0;
    if (value->Type() == kTypeInteger) value->SetInt(2 * value->Int());
    if (value->Type() == kTypeDouble) value->SetDouble(2 * value->Double());
    if (value->Type() == kTypeString) value->SetStr(value->Str() + "!");
    if (value->Type() == kTypeObject) value->SetRIOPtr(owner);
    if (value->Type() == kTypeArray) {
      for (int i = 0; i < value->ElementCount(); ++i) {
        ROCParam& element = value->Element(i);
        if (element.Type() == kTypeInteger) element.SetInt(2 * element.Int());
      }
      value->SetSize(value->GetSize() + 4);
    }
    return 0;
  }
  // Sets the length of a list.
  int Resize(ROCParams* list, ROCParam**) {
    list->Entry(0)->SetSize(4 * list->Entry(1)->Int());
    return 0;
  }

  int NeedInteger(ROCParams* list, ROCParam** result) {
    const ROCParam* value = list->Entry(0);
    if (value == nullptr || value->Type() != kTypeInteger) {
      return ZylArgTypeException(result, "Probe::NeedInteger", "Number", kTypeInteger, 1);
    }
    if (value->Int() < 0) return ZylArgValueException(result, "Probe::NeedInteger", "Number", 1);
    if (value->Int() > 100) {
      return ZylArgUserException(result, "Probe::NeedInteger", "the number is too large", 1);
    }
    return 0;
  }
  int NeedSample(ROCParams* list, ROCParam** result) {
    RIOObject* object = list->Entry(0)->Object();
    return ZylArgPTypeException(result, "Probe::NeedSample", object->GetTypeName(), "CSample", 1);
  }
  int Fail(ROCParams*, ROCParam** result) {
    return ZylException(result, "Probe::Fail: it never works");
  }
  int FailSilently(ROCParams*, ROCParam**) { return 99; }
  // Reports a failure, and does well all the same.
  int ReportAndGoOn(ROCParams*, ROCParam** result) {
    ZylException(result, "Probe::ReportAndGoOn: of no importance");
    return 0;
  }

  int Keep(ROCParams* list, ROCParam**) {
    deleteROCParam(kept_);
    kept_ = list->Entry(0);
    kept_->AddReference();
    return 0;
  }
  int Kept(ROCParams*, ROCParam** result) {
    kept_->AddReference();
    *result = kept_;
    return 0;
  }

  int Register(ROCParams* list, ROCParam**) {
    registered_.push_back(list->Entry(0));
    registered_.back()->AddReference();
    return 0;
  }
  // Calls the named method of everything registered, with the list itself; how many had it.
  int Notify(ROCParams* list, ROCParam** result) {
    const std::string name = list->Entry(0)->Str();
    int reached = 0;
    for (size_t i = 0; i < registered_.size(); ++i) {
      RIOObject* object = registered_[i]->Object();
      ZylDispatch* dispatch = object == nullptr ? nullptr : object->GetDispatch(true);
      if (dispatch == nullptr) continue;
      if (ZylCallVirtualMethodVoidIfExists(dispatch, name.c_str(), list) !=
          ZylDispatch::kNoSuchMethod) {
        ++reached;
      }
    }
    *result = newROCParam(int32_t{reached});
    return 0;
  }
  // Calls the named method of the object at position 1 without arguments; its result.
  int Ask(ROCParams* list, ROCParam** result) {
    ZylDispatch* dispatch = list->Entry(0)->Object()->GetDispatch(true);
    const std::string name = list->Entry(1)->Str();
    const int status = ZylCallVirtualMethodIfExists(dispatch, name.c_str(), nullptr, result);
    if (status == ZylDispatch::kNoSuchMethod) {
      return ZylException(result, "Probe::Ask: no such method");
    }
    return ZylHandleException(status, result);
  }

  // Sends on the pad of that name of the object at position 1: here, or as often as position 3
  // says from another thread.
  int Send(ROCParams* list, ROCParam** result) {
    ROCPad* pad = FindPad(list);
    if (pad == nullptr) return ZylException(result, "Probe::Send: no such pad");
    const ROCParam* times = list->Entry(2);
    if (times == nullptr) {
      pad->Send(0, 0);
      return 0;
    }
    std::thread([pad, count = times->Int()] {
      for (int i = 0; i < count; ++i) {
        pad->Value()->SetInt(i + 1);
        pad->Send(0, 0);
      }
    }).join();
    return 0;
  }
  int Update(ROCParams* list, ROCParam** result) {
    ROCPad* pad = FindPad(list);
    if (pad == nullptr) return ZylException(result, "Probe::Update: no such pad");
    pad->UpdateOwner();
    return 0;
  }
  // Appends a byte of value 1 to a data pad.
  int Grow(ROCParams* list, ROCParam** result) {
    RIOObject* object = list->Entry(0)->Object();
    if (!object->isRODPad()) {
      return ZylArgPTypeException(result, "Probe::Grow", object->GetTypeName(), "RODPad", 1);
    }
    ROCParam* data = static_cast<RODPad*>(object)->DataValue();
    const int size = data->GetSize();
    data->SetSize(size + 1);
    data->Data()[size] = std::byte{1};
    return 0;
  }

  // A handle of a buffer of four floats, or 0 with `true`, which withdraws it.
  int Buffer(ROCParams* list, ROCParam** result) {
    static const float content[] = {0.5f, -1.0f, 2.0f, 0.25f};
    int32_t handle = 0;
    if (list->count > 0) {
      qxWithdrawBuffer(content);
    } else {
      handle = qxBufferHandle(content, sizeof content);
    }
    *result = newROCParam(handle);
    return 0;
  }

  static ZylDispatch* Make(RIOObject* creator) {
    auto* probe = new Probe;
    probe->owner = creator;
    return probe;
  }

 private:
  static ROCPad* FindPad(ROCParams* list) {
    return ZylFindPad(list->Entry(0)->Object()->GetDispatch(true), list->Entry(1)->Str().c_str());
  }

  static ZylFuncInfo table[];
  static uint32_t auxTable;
  static std::unique_ptr<hashEntry> hashTable;

  std::vector<ROCParam*> registered_;
  ROCParam* kept_ = nullptr;
  std::unique_ptr<Thing> thing_;
};

template <class Member>
constexpr ZylFuncInfo Method(const char* name, Member member) {
  return {name, static_cast<ZylHandler>(member), 1, 0xFFFF, 0xFFFF};
}

ZylFuncInfo Probe::table[] = {Method("Count", &Probe::Count),
                              Method("Types", &Probe::Types),
                              Method("Echo", &Probe::Echo),
                              Method("Nothing", &Probe::Nothing),
                              Method("NullObject", &Probe::NullObject),
                              Method("Self", &Probe::Self),
                              Method("GetThing", &Probe::GetThing),
                              Method("DropThing", &Probe::DropThing),
                              Method("Change", &Probe::Change),
                              Method("Resize", &Probe::Resize),
                              Method("NeedInteger", &Probe::NeedInteger),
                              Method("NeedSample", &Probe::NeedSample),
                              Method("Fail", &Probe::Fail),
                              Method("FailSilently", &Probe::FailSilently),
                              Method("ReportAndGoOn", &Probe::ReportAndGoOn),
                              Method("Keep", &Probe::Keep),
                              Method("Kept", &Probe::Kept),
                              Method("Register", &Probe::Register),
                              Method("Notify", &Probe::Notify),
                              Method("Ask", &Probe::Ask),
                              Method("Send", &Probe::Send),
                              Method("Update", &Probe::Update),
                              Method("Grow", &Probe::Grow),
                              Method("Buffer", &Probe::Buffer),
                              {nullptr, nullptr, 0, 0xFFFF, 0xFFFF}};
uint32_t Probe::auxTable = 0;
std::unique_ptr<hashEntry> Probe::hashTable;

ZylDllRegisterClass record = {nullptr, "Probe", "ZylDisplayObject", Probe::Make, 0x10001, 0};

}  // namespace

extern "C" ZYLHOST_API int RegisterAllClasses(const char* moduleFile) {
  return ZylNewDllInfoTag(moduleFile, &record);
}
