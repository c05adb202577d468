#include "Registry.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "../hostapp.h"
#include "../platform/Platform.h"

namespace zyl {
namespace {

struct Registered {
  const void* module;
  const ZylDllRegisterClass* classRecord;  // null for an object type or a call
  std::string typeName;
  std::function<void()> beforeUnload;
};

std::vector<Registered>& All() {
  // Never destroyed: a module may be unloaded during static destruction.
  static auto& all = *new std::vector<Registered>;
  return all;
}
const void* loadingModule = nullptr;

}  // namespace

const ZylDllRegisterClass* FindClass(std::string_view className) {
  for (const Registered& entry : All()) {
    if (entry.classRecord != nullptr && className == entry.classRecord->className) {
      return entry.classRecord;
    }
  }
  return nullptr;
}

void BeginModule(const void* module) { loadingModule = module; }

void RunBeforeUnload(const void* module) {
  for (const Registered& entry : All()) {
    if (entry.module == module && entry.beforeUnload) entry.beforeUnload();
  }
}

void UnregisterModule(const void* module) {
  std::erase_if(All(), [&](const Registered& entry) { return entry.module == module; });
}

}  // namespace zyl

int ZylNewDllInfoTag(const char*, ZylDllRegisterClass* record) {
  if (record == nullptr || zyl::FindClass(record->className) != nullptr) return 0;
  zyl::All().push_back({zyl::loadingModule, record, {}, {}});
  return 1;
}

int RegisterRIOObject(const char* typeName, int typeId, int, RIOObject* (*)(RIOObject*)) {
  zyl::All().push_back({zyl::loadingModule, nullptr, typeName, {}});
  return typeId;
}

void ZylBeforeUnload(std::function<void()> call) {
  zyl::All().push_back({zyl::loadingModule, nullptr, {}, std::move(call)});
}

std::unique_ptr<ZylModule> ZylModule::Load(const std::string& path, std::string& reason) {
  ZylSetScriptThread();
  // Create the object first: its address identifies the module during registration.
  std::unique_ptr<ZylModule> module(new ZylModule(nullptr));
  zyl::BeginModule(module.get());
  module->library_ = zyl::LoadLibraryFile(path, reason);
  bool registered = false;
  if (module->library_ != nullptr) {
    using RegisterFunction = int (*)(const char*);
    auto* registerAll = reinterpret_cast<RegisterFunction>(
        zyl::FindLibrarySymbol(module->library_, "RegisterAllClasses"));
    if (registerAll == nullptr) {
      reason = path + ": exports no RegisterAllClasses";
    } else {
      registered = registerAll(path.c_str()) == 1;
      if (!registered) reason = path + ": RegisterAllClasses failed";
    }
  }
  zyl::BeginModule(nullptr);
  if (!registered) return nullptr;
  return module;
}

ZylModule::~ZylModule() {
  zyl::RunBeforeUnload(this);
  zyl::UnregisterModule(this);
  if (library_ != nullptr) zyl::UnloadLibraryFile(library_);
}

ROCAlgo* ZylNewScriptObject(const char* className) {
  const ZylDllRegisterClass* record = zyl::FindClass(className);
  if (record == nullptr) return nullptr;
  auto algo = std::make_unique<ROCAlgo>(className);
  ZylDispatch* dispatch = record->factory(algo.get());
  if (dispatch == nullptr) return nullptr;
  algo->SetDispatch(dispatch);
  return algo.release();
}

std::vector<std::string> ZylClassNames() {
  std::vector<std::string> names;
  for (const zyl::Registered& entry : zyl::All()) {
    if (entry.classRecord != nullptr) names.emplace_back(entry.classRecord->className);
  }
  return names;
}

const ZylFuncInfo* ZylClassMethods(const char* className) {
  const std::unique_ptr<ROCAlgo> algo(ZylNewScriptObject(className));
  return algo == nullptr ? nullptr : algo->GetDispatch(true)->GetFuncTable();
}

namespace {

class PlainObject final : public RIOObject {
 public:
  explicit PlainObject(std::string typeName) : typeName_(std::move(typeName)) {}
  const char* GetTypeName() const override { return typeName_.c_str(); }

 private:
  std::string typeName_;
};

}  // namespace

RIOObject* ZylNewPlainObject(const std::string& typeName) { return new PlainObject(typeName); }
