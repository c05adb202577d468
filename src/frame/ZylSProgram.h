// The script object through which one sampler program is seen and edited.
//
// It owns its use of the program record, the sample objects that it handed out, and one reference
// on the value of each registered module. All objects of the module stand in one registry, through
// which those that share a record compute the record's channel mask. Script thread only.
#pragma once

#include <cstdint>

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
  static constexpr int32_t kDetaching = 99;  // counts for no channel

  ZylSProgram();
  ~ZylSProgram() override;

  ZylFuncInfo* GetFuncTable() override;
  uint32_t* GetAuxTable() override;
  hashEntry* GetHashTable() override;
  hashEntry* RebuildHashTable() override;
  const char* GetClassName() const override;
  const char* GetBaseClassName() const override;
  // At once, or at the end of the call that runs.
  void Destroy() override;

  // The program object behind an algorithm object: null when it leads to none.
  static ZylSProgram* Behind(RIOObject* object);

  // Lets the record go, if there is one.
  void Detach();
  // Takes a record (or null) over, without its channel.
  void Attach(akaiProgram* record);
  void LockAttached();

  int32_t GetMidiChannel() const { return midiChannel; }
  // Negative is Omni; 32 and more change nothing. Returns the channel that is then set.
  int32_t SetMidiChannel(int32_t channel);
  // Sets the channel from a typed text (1..32, or a text with an o for Omni) and rewrites the text
  // to the channel that is then set; an empty text does nothing.
  void SetMidiChannelText(ROCParam* text);
  std::string GetMidiChannelText() const;
  // Recomputes the record's mask: one bit for each channel of the objects that hold the record.
  void UpdateChannelMask();

  // Calls the named script method of every registered module that has a dispatch, in list order. A
  // called script may register and delete modules: one registered during the walk is called too.
  // With `dropDead`, modules without an object or a dispatch are removed from the list.
  void CallRegistered(const char* method, ROCParams& arguments, bool dropDead);

  // Gives the list's reference on a sample object back and clears the caller's pointer.
  void ReleaseSampleObject(CSample*& object);
  void PurgeSampleObjects() { sampleObjects.PurgeUnshared(); }

  SampleList sampleObjects;
  akaiProgram* program = nullptr;
  uint32_t attachment = 0;  // a new number with each record: another one may lie at an old address
  bool dirty = false;
  bool enableRegisterCall = true;
  int32_t maxIndyOut = 0;
  int32_t midiChannel = kOmni;
  int32_t minPeriod = 2000;  // highest expected pitch in Hz
  int32_t maxPeriod = 50;    // lowest expected pitch in Hz
  int32_t smoothLength = 0;
  int32_t findPitchLen = 10;
  double rmsThres = 1e-5;
  PlexList<ROCParam*> registeredModules;  // during a notification some entries may be null

  // Every script method's handler: M reads the arguments and runs the method's body.
  template <class M>
  int Handle(ROCParams* arguments, ROCParam** result) {
    return RunCall(M::kName, M::Run, arguments, result);
  }

 private:
  // Module state, defined in frame/entry/Module.cpp: all program objects, and whether records are
  // locked while they are attached.
  static PlexList<ZylSProgram*>& Registry();
  static bool LocksRecords();

  // Runs one call and returns its status. An exception becomes a report to the host. An object that
  // is destroyed during the call is deleted when its outermost call returns.
  int RunCall(const char* method, void (*run)(Call&), ROCParams* arguments,
              ROCParam** result) noexcept;

  // A walk over registeredModules during which no node is removed, so that it is safe whatever the
  // called scripts do: an entry that is dropped loses its value, and the end of the outermost walk
  // removes it.
  struct RegisteredWalk {
    explicit RegisteredWalk(ZylSProgram& object) : program(object) { ++program.walks_; }
    ~RegisteredWalk();
    RegisteredWalk(const RegisteredWalk&) = delete;
    RegisteredWalk& operator=(const RegisteredWalk&) = delete;

    ZylSProgram& program;
  };

  int walks_ = 0;
  int runningCalls_ = 0;
  bool destroyed_ = false;
};
