// The script-visible sample object: it stands for one sample record and holds one use of it.
//
// It lives while a list holds it (a program's sample objects, or the module's temporary ones) and
// has no script methods of its own: methods of ZylSProgram take it as an argument.
#pragma once

#include "host/akai.h"
#include "host/base.h"

class ZylSProgram;

class CSample final : public RIOObject {
 public:
  static constexpr int kTypeId = 5587;

  // `parent` is null for a temporary sample.
  CSample(ZylSProgram* parent, zyl::SampleUse record);
  // Tells the registered modules, gives lock and use of the record back.
  ~CSample() override;
  // An object of its own fresh record: two empty channels, WAVE.
  static RIOObject* Factory(RIOObject* creator);

  int GetTypeID() const override { return kTypeId; }
  const char* GetTypeName() const override { return "CSample"; }
  bool isCSample() const override { return true; }

  // Sends "OnDeletingSmpl" to the modules registered with the parent program.
  void NotifyDeleting();

  int32_t refCount = 1;
  genericSample* sample;  // null: the object is dead
  ZylSProgram* parentProgram;
  bool locked = false;  // this object locked the record and must unlock it

 private:
  // The arguments of the notification, made with the object: its end must not need memory.
  ROCParams deletingArguments_;
};
