#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "../base.h"
#include "../hostapp.h"
#include "Registry.h"

namespace {

// FNV-1a folded to 16 bits, the size of the hash in a table entry.
uint16_t HashName(std::string_view name) {
  uint32_t hash = 2166136261u;
  for (const char c : name) hash = (hash ^ static_cast<uint8_t>(c)) * 16777619u;
  return static_cast<uint16_t>(hash ^ (hash >> 16));
}

constexpr uint16_t kNoEntry = 0xFFFF;

}  // namespace

ZylDispatch::~ZylDispatch() = default;
bool ZylDispatch::isTemp() const { return false; }
bool ZylDispatch::isScript() const { return false; }
std::unique_ptr<ZylState> ZylDispatch::SaveState() { return nullptr; }
const char* ZylState::GetTypeName() const { return "ZylState"; }

int ZylDispatch::CallFunctionIndirect(const char* name, ROCParams* arguments, ROCParam** result) {
  const hashEntry* table = GetHashTable();
  const ZylFuncInfo* method = table == nullptr ? nullptr : table->Find(name);
  return method == nullptr ? kNoSuchMethod : CallFunctionDirect(*method, arguments, result);
}

int ZylDispatch::CallFunctionDirect(const ZylFuncInfo& method, ROCParams* arguments,
                                    ROCParam** result) {
  return (this->*method.handler)(arguments, result);
}

hashEntry* ZylCreateFuncHashTable(ZylDispatch* dispatch) {
  auto* hash = new hashEntry;
  hash->table = dispatch->GetFuncTable();
  uint32_t count = 0;
  while (hash->table[count].name != nullptr) ++count;
  uint32_t buckets = 1;
  while (buckets < 2 * count) buckets *= 2;
  hash->mask = buckets - 1;
  hash->firstInBucket.assign(buckets, kNoEntry);
  for (uint32_t i = 0; i < count; ++i) {
    ZylFuncInfo& entry = hash->table[i];
    entry.hash = HashName(entry.name);
    uint16_t& first = hash->firstInBucket[entry.hash & hash->mask];
    entry.nextInBucket = first;
    first = static_cast<uint16_t>(i);
  }
  return hash;
}

ZylFuncInfo* hashEntry::Find(std::string_view name) const {
  const uint16_t wanted = HashName(name);
  for (uint16_t i = firstInBucket[wanted & mask]; i != kNoEntry; i = table[i].nextInBucket) {
    if (table[i].hash == wanted && name == table[i].name) return &table[i];
  }
  return nullptr;
}

int ZylCallVirtualMethodVoidIfExists(ZylDispatch* dispatch, const char* name,
                                     ROCParams* arguments) {
  ROCParam* result = nullptr;
  const int status = ZylCallVirtualMethodIfExists(dispatch, name, arguments, &result);
  deleteROCParam(result);
  return status;
}

int ZylCallVirtualMethodIfExists(ZylDispatch* dispatch, const char* name, ROCParams* arguments,
                                 ROCParam** result) {
  if (dispatch == nullptr) return ZylDispatch::kNoSuchMethod;
  return dispatch->CallFunctionIndirect(name, arguments, result);
}

bool ZylIsKindOf(const ZylDispatch* dispatch, const char* className) {
  if (dispatch == nullptr) return false;
  const std::string_view wanted = className;
  std::string_view name = dispatch->GetClassName();
  std::string_view base = dispatch->GetBaseClassName();
  // The bound on depth stops cyclic registrations.
  for (int depth = 0; depth < 32; ++depth) {
    if (name == wanted) return true;
    if (base.empty()) return false;
    name = base;
    const ZylDllRegisterClass* record = zyl::FindClass(name);
    base = record == nullptr ? std::string_view() : record->baseClassName;
  }
  return false;
}
