#include "sample/SampleList.h"

#include <cstring>
#include <utility>
#include <vector>

void SampleList::AddIfAbsent(CSample* object) {
  if (Find(object) == nullptr) AddTail(object);
}

CSample* SampleList::Contains(CSample* object) const {
  return Find(object) == nullptr ? nullptr : object;
}

CSample* SampleList::FindBySample(const genericSample* record) const {
  const Node* node = FindIf([&](const CSample* object) { return object->sample == record; });
  return node == nullptr ? nullptr : node->item;
}

CSample* SampleList::FindTemp(const char* path, int32_t channel) const {
  const Node* node = FindIf([&](const CSample* object) {
    const genericSample* record = object->sample;
    return record != nullptr && record->channel == channel && record->filePath != nullptr &&
           std::strcmp(record->filePath, path) == 0;
  });
  return node == nullptr ? nullptr : node->item;
}

// Unlink objects before destroying them: the destructor notifies scripts, which may change this
// list.
void SampleList::RemoveAndRelease(CSample* object) {
  Node* node = Find(object);
  if (node == nullptr || --object->refCount > 0) return;
  Remove(node);
  delete object;
}

void SampleList::DeleteBySample(const genericSample* record) {
  Node* node = FindIf([&](const CSample* object) { return object->sample == record; });
  if (node == nullptr) return;
  CSample* object = node->item;
  Remove(node);
  delete object;
}

void SampleList::DeleteAll() {
  for (int32_t left = Count(); left > 0 && !IsEmpty(); --left) {
    CSample* object = Tail()->item;
    Remove(Tail());
    delete object;
  }
}

void SampleList::PurgeUnshared() {
  const auto unshared = [](const CSample* object) {
    return object->sample == nullptr || object->sample->useCount < 2;
  };
  while (Node* node = FindIf(unshared)) {
    CSample* object = node->item;
    Remove(node);
    delete object;
  }
}

void SampleList::RebindAfterReload(zyl::FileReload& reload) {
  std::vector<std::pair<CSample*, zyl::SampleUse>> rebound;
  for (const Node* node = Head(); node != nullptr; node = node->next) {
    const genericSample* old = node->item->sample;
    if (old == nullptr || (old->filePath != nullptr && !reload.Replaces(*old))) continue;
    zyl::SampleUse record = reload.Record(old->channel);
    if (record != nullptr) rebound.emplace_back(node->item, std::move(record));
  }
  reload.Commit();
  for (auto& [object, record] : rebound) {
    genericSample* old = object->sample;
    object->sample = record.release();
    record.reset(old);
  }
}
