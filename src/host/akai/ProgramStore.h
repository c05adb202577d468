// Creates and destroys program records, and lists those in use.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "../akai.h"

struct ProgramStore {
  static akaiProgram* Make();
  static void Destroy(akaiProgram* program);
  // A copy of a record that findAkaiProgram ignores.
  static akaiProgram* MakeSnapshot(const akaiProgram& program);
  static bool IsSnapshot(const akaiProgram& program) { return program.isSnapshot_; }
  static void Swap(akaiProgram& program, akaiProgram& unlocked) noexcept {
    program.SwapContents(unlocked);
  }
  static int& Uses(akaiProgram* program) { return program->useCount_; }
  static void Lock(akaiProgram* program) {
    program->Lock();
    program->LockSamples();
  }
  static void Unlock(akaiProgram* program) {
    program->Unlock();
    program->UnlockSamples();
  }
  // Sets the contents of an empty record that a program file stores outside the header.
  static void Fill(akaiProgram* program, std::vector<akaiKeyGroup> keygroups,
                   std::vector<vendlKeyGroup> extensions, std::vector<ListChunk> otherChunks);
  static const std::vector<ListChunk>& OtherChunks(const akaiProgram* program) {
    return program->otherChunks_;
  }
};

namespace zyl {

// All programs in use, oldest first.
const std::vector<akaiProgram*>& AllPrograms();

// Makes the contents of a program file to be written to `path`. Doesn't store samples.
std::vector<std::byte> ProgramImage(const akaiProgram& program, const std::string& path, int mode);
// Reads a program from the contents of the file at `path`. Returns null and sets `reason` if they
// are damaged.
akaiProgram* ProgramFromImage(std::span<const std::byte> image, const std::string& path,
                              bool loadSamples, std::string& reason);

}  // namespace zyl
