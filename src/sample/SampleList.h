// A list of sample objects; the list owns them. Searches run from head to tail and stop at the
// first match.
#pragma once

#include "sample/CSample.h"
#include "util/PlexList.h"

class SampleList : private PlexList<CSample*> {
 public:
  using PlexList<CSample*>::Count;
  using PlexList<CSample*>::Head;

  // Appends the object unless it is in the list. Does not change its reference count.
  void AddIfAbsent(CSample* object);
  CSample* Contains(CSample* object) const;
  CSample* FindBySample(const genericSample* record) const;
  // Compares the record's path byte by byte, and its channel.
  CSample* FindTemp(const char* path, int32_t channel) const;
  // Releases one reference. Releasing the last one unlinks and destroys the object; until then it
  // stays in the list and can be found.
  void RemoveAndRelease(CSample* object);
  // Destroys the record's object, regardless of its reference count.
  void DeleteBySample(const genericSample* record);
  // Destroys all objects from the tail, regardless of their reference counts. Objects that notified
  // scripts add during the call stay: a script that requests its sample again on every notification
  // would otherwise keep the call from returning.
  void DeleteAll();
  // Destroys the objects without a record and those whose record has no other user.
  void PurgeUnshared();
  // Commits the reload and assigns the file's new records to the objects whose records then have no
  // path. Throws before anything changes.
  void RebindAfterReload(zyl::FileReload& reload);
};

// The module's temporary samples; defined in frame/entry/Module.cpp.
SampleList& TempSamples();
