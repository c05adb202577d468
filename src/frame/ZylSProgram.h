// The script object that edits one sampler program.
//
// It owns a use of the program record, the sample objects that it returned to scripts, and one
// reference to the value of each registered module. A registry lists all program objects; the
// channel mask of a record is computed from those that share it. Script thread only.
#pragma once

#include <cstdint>
#include <memory>

#include <wx/string.h>

#include "host/akai.h"
#include "host/base.h"
#include "sample/SampleList.h"
#include "util/PlexList.h"

class Call;

class ZylSProgram final : public ZylDLLDispatch {
 public:
  static constexpr int32_t kOmni = -1;
  static constexpr int32_t kChannels = 32;
  static constexpr int32_t kDetaching = 99;  // belongs to no channel

  ZylSProgram();
  ~ZylSProgram() override;

  ZylFuncInfo* GetFuncTable() override;
  uint32_t* GetAuxTable() override;
  hashEntry* GetHashTable() override;
  hashEntry* RebuildHashTable() override;
  const char* GetClassName() const override;
  const char* GetBaseClassName() const override;
  // Deletes the object now, or when its running call returns.
  void Destroy() override;
  std::unique_ptr<ZylState> SaveState() override;

  // The program object of an algorithm object, or null.
  static ZylSProgram* FromObject(RIOObject* object);

  // Releases the record, if one is attached.
  void Detach();
  // Takes ownership of a use of a record (or null). The channel stays unchanged.
  void Attach(akaiProgram* record);
  void LockAttached();

  int32_t GetMidiChannel() const { return midiChannel; }
  // Negative is Omni; 32 and more change nothing. Returns the resulting channel.
  int32_t SetMidiChannel(int32_t channel);
  // Sets the channel from a typed text (1..32, or a text with an o for Omni) and replaces the text
  // with the resulting channel; an empty text does nothing.
  void SetMidiChannelText(ROCParam* text);
  std::string GetMidiChannelText() const;
  // Recomputes the record's mask: one bit for each channel of the objects that share the record.
  void UpdateChannelMask();

  // Calls the named script method of every registered module that has a dispatch, in list order. A
  // called script may register and delete modules; modules registered by one are called too.
  // With `dropDead`, modules without an object or a dispatch are removed from the list.
  void CallRegistered(const char* method, ROCParams& arguments, bool dropDead);

  // Releases the list's reference to a sample object and clears the caller's pointer.
  void ReleaseSampleObject(CSample*& object);
  void PurgeSampleObjects() { sampleObjects.PurgeUnshared(); }

  SampleList sampleObjects;
  akaiProgram* program = nullptr;
  uint32_t attachment = 0;  // changes with each record: a new one may reuse an old address
  bool dirty = false;
  bool enableRegisterCall = true;
  int32_t maxIndyOut = 0;
  int32_t midiChannel = kOmni;
  int32_t minPeriod = 2000;  // highest expected pitch in Hz
  int32_t maxPeriod = 50;    // lowest expected pitch in Hz
  int32_t smoothLength = 0;
  int32_t findPitchLen = 10;
  double rmsThres = 1e-5;
  PlexList<ROCParam*> registeredModules;  // entries may be null during a notification

  // The handler of every script method: M reads the arguments and runs the body.
  template <class M>
  int Handle(ROCParams* arguments, ROCParam** result) {
    return RunCall(M::kName, M::Run, arguments, result);
  }

 private:
  // Module state, defined in frame/entry/Module.cpp: all program objects, and whether attached
  // records are locked.
  static PlexList<ZylSProgram*>& Registry();
  static bool LocksRecords();

  // Runs one call and returns its status. Exceptions are reported to the host. An object destroyed
  // during the call is deleted when its outermost call returns.
  int RunCall(const char* method, void (*run)(Call&), ROCParams* arguments,
              ROCParam** result) noexcept;

  // Defers the removal of nodes from registeredModules while iterating, since called scripts may
  // change the list: a dropped entry becomes null, and the end of the outermost iteration removes
  // it.
  struct DeferredRemoval {
    explicit DeferredRemoval(ZylSProgram& object) : program(object) { ++program.iterations_; }
    ~DeferredRemoval();
    DeferredRemoval(const DeferredRemoval&) = delete;
    DeferredRemoval& operator=(const DeferredRemoval&) = delete;

    ZylSProgram& program;
  };

  int iterations_ = 0;
  int runningCalls_ = 0;
  bool destroyed_ = false;
};
