// The sample object that scripts see. It refers to one sample record and owns one use of it.
//
// A list owns the object: a program's sample objects or the module's temporary samples. The object
// has no script methods; methods of ZylSProgram take it as an argument.
#pragma once

#include "host/akai.h"
#include "host/base.h"

class ZylSProgram;

class CSample final : public RIOObject {
 public:
  static constexpr int kTypeId = 5587;

  // `parent` is null for a temporary sample.
  CSample(ZylSProgram* parent, zyl::SampleUse record);
  // Notifies the registered modules, then releases the record's lock and its use.
  ~CSample() override;
  // Creates an object with a new WAVE record of two empty channels.
  static RIOObject* Factory(RIOObject* creator);

  int GetTypeID() const override { return kTypeId; }
  const char* GetTypeName() const override { return "CSample"; }
  bool isCSample() const override { return true; }

  // Sends "OnDeletingSmpl" to the modules registered with the parent program.
  void NotifyDeleting();

  int32_t refCount = 1;
  genericSample* sample;  // null after the record was destroyed
  ZylSProgram* parentProgram;
  bool locked = false;  // this object locked the record and must unlock it

 private:
  // The notification's arguments, built by the constructor so that destruction never allocates.
  ROCParams deletingArguments_;
};
