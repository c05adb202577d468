// A list of sample objects; each entry holds one reference on its object. All walks run from head
// to tail and stop at the first match.
#pragma once

#include "sample/CSample.h"
#include "util/PlexList.h"

class SampleList : private PlexList<CSample*> {
 public:
  using PlexList<CSample*>::Count;
  using PlexList<CSample*>::Head;

  // Appends the object unless it is there; its reference count stays.
  void AddIfAbsent(CSample* object);
  CSample* Contains(CSample* object) const;
  CSample* FindBySample(const genericSample* record) const;
  // By the record's path, byte for byte, and channel.
  CSample* FindTemp(const char* path, int32_t channel) const;
  // Gives one reference back. An object that was handed out more than once stays in the list, where
  // it is found again, until the last one; then it is unlinked and destroyed.
  void RemoveAndRelease(CSample* object);
  // Destroys the record's object whatever its reference count.
  void DeleteBySample(const genericSample* record);
  // Destroys all objects, from the tail, whatever their reference counts. What a script that is
  // told of it adds meanwhile stays: one that asks for its sample again would never let this end.
  void DeleteAll();
  // Destroys the objects without record, and those whose record nobody else uses.
  void PurgeUnshared();
  // Commits the reload and gives the objects whose records have no path then the file's new
  // records. Throws before anything has changed.
  void RebindAfterReload(zyl::FileReload& reload);
};

// The module's temporary samples; defined in frame/entry/Module.cpp.
SampleList& TempSamples();
