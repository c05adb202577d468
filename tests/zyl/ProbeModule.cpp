// A module for the tests of zyl: the class "Probe" uses every kind of value and error, callbacks
// and pads.
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "host/base.h"
#include "host/qx.h"

namespace {

class Probe final : public ZylDLLDispatch {
 public:
  ~Probe() override {
    for (ROCParam* value : registered_) deleteROCParam(value);
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

  // The type codes of all entries, with "-" for an absent one.
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
  // Changes its argument in place: numbers double, texts grow, lists change their length.
  int Change(ROCParams* list, ROCParam**) {
    ROCParam* value = list->Entry(0);
    if (value->Type() == kTypeInteger) value->SetInt(2 * value->Int());
    if (value->Type() == kTypeDouble) value->SetDouble(2 * value->Double());
    if (value->Type() == kTypeString) value->SetStr(value->Str() + "!");
    if (value->Type() == kTypeObject) value->SetRIOPtr(owner);
    if (value->Type() == kTypeArray) {
      for (int i = 0; i < value->ElementCount(); ++i) {
        ROCParam& element = value->Element(i);
        if (element.Type() == kTypeInteger) element.SetInt(2 * element.Int());
      }
      value->SetSize(4 * list->Entry(1)->Int());
    }
    return 0;
  }

  // Reports a failure of the kind that its second argument names, as a rule about the first one.
  int Fail(ROCParams* list, ROCParam** result) {
    const std::string kind = list->count > 1 ? list->Entry(1)->Str() : "";
    const char* const method = "Probe::Fail";
    if (kind == "ArgType") return ZylArgTypeException(result, method, "Number", kTypeInteger, 1);
    if (kind == "ArgFloat") return ZylArgTypeException(result, method, "Number", kTypeDouble, 1);
    if (kind == "missing") return ZylArgTypeException(result, method, "Third", kTypeBool, 3);
    if (kind == "ArgValue") return ZylArgValueException(result, method, "Number", 1);
    if (kind == "ArgUser") return ZylArgUserException(result, method, "too large", 1);
    if (kind == "ArgPType") return ZylArgPTypeException(result, method, "Gadget", "CSample", 1);
    if (kind == "no report") return 99;
    const int status = ZylException(result, "Probe::Fail: it never works");
    return kind == "no status" ? 0 : status;
  }

  int Register(ROCParams* list, ROCParam**) {
    list->Entry(0)->AddReference();
    registered_.push_back(list->Entry(0));
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
      const int status = ZylCallVirtualMethodVoidIfExists(dispatch, name.c_str(), list);
      if (status != ZylDispatch::kNoSuchMethod) ++reached;
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

  // Sends on the named pad of the object at position 1: once on this thread, or position 3 times on
  // another thread.
  int Send(ROCParams* list, ROCParam**) {
    ROCPad* pad = FindPad(list);
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
  int Update(ROCParams* list, ROCParam**) {
    FindPad(list)->UpdateOwner();
    return 0;
  }
  // A handle of a buffer of four floats, or 0 with `true`, which withdraws it.
  int Buffer(ROCParams* list, ROCParam** result) {
    static const float content[] = {0.5f, -1.0f, 2.0f, 0.25f};
    const bool withdraw = list->count > 0;
    if (withdraw) qxWithdrawBuffer(content);
    *result = newROCParam(withdraw ? int32_t{0} : qxBufferHandle(content, sizeof content));
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
};

template <class Member>
constexpr ZylFuncInfo Method(const char* name, Member member) {
  return {name, static_cast<ZylHandler>(member), 1, 0xFFFF, 0xFFFF};
}

ZylFuncInfo Probe::table[] = {
    Method("Types", &Probe::Types),       Method("Echo", &Probe::Echo),
    Method("Change", &Probe::Change),     Method("Fail", &Probe::Fail),
    Method("Register", &Probe::Register), Method("Notify", &Probe::Notify),
    Method("Ask", &Probe::Ask),           Method("Send", &Probe::Send),
    Method("Update", &Probe::Update),     Method("Buffer", &Probe::Buffer),
    {nullptr, nullptr, 0, 0xFFFF, 0xFFFF}};
uint32_t Probe::auxTable = 0;
std::unique_ptr<hashEntry> Probe::hashTable;

ZylDllRegisterClass record = {nullptr, "Probe", "ZylDisplayObject", Probe::Make, 0x10001, 0};

}  // namespace

extern "C" ZYLHOST_API int RegisterAllClasses(const char* moduleFile) {
  return ZylNewDllInfoTag(moduleFile, &record);
}
