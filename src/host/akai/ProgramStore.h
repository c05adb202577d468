// The programs that are held, and the making and ending of their records.
#pragma once

#include <vector>

#include "../akai.h"

struct ProgramStore {
  static akaiProgram* Make();
  static void End(akaiProgram* program);
  static int& Uses(akaiProgram* program) { return program->useCount_; }
  static void LockArrays(akaiProgram* program) { program->Lock(); }
  static void UnlockArrays(akaiProgram* program) { program->Unlock(); }
  // What a program file holds beside the header: fills an empty record, or reads one.
  static void Fill(akaiProgram* program, std::vector<akaiKeyGroup> keygroups,
                   std::vector<vendlKeyGroup> extensions, std::vector<ListChunk> otherChunks);
  static const std::vector<ListChunk>& OtherChunks(const akaiProgram* program) {
    return program->otherChunks_;
  }
};

namespace zyl {

// All held programs, oldest first.
const std::vector<akaiProgram*>& AllPrograms();

}  // namespace zyl
