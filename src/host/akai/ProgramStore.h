// The programs that are held, and the making and ending of their records.
#pragma once

#include <cstddef>
#include <span>
#include <string>
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

// The bytes of a program file that is to lie at `path`; the samples stay as they are.
std::vector<std::byte> ProgramImage(const akaiProgram& program, const std::string& path, int mode);
// The program that these bytes, found at `path`, hold; null with a reason when they are not whole.
akaiProgram* ProgramFromImage(std::span<const std::byte> image, const std::string& path,
                              bool loadSamples, std::string& reason);

}  // namespace zyl
