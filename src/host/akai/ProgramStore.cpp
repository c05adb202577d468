// Lists the program records in use, counts their memory, and makes snapshots of them.
#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "../base.h"
#include "../platform/Platform.h"
#include "ProgramStore.h"
#include "SampleFile.h"

using zyl::SampleFile;

int64_t akaiProgram::RecordMemory() const {
  return static_cast<int64_t>(
      sizeof(akaiProgram) + (tolmoChunk == nullptr ? 0 : sizeof(TolmoChunk)) +
      keyGroupStore_.size() * (sizeof(akaiKeyGroup) + sizeof(vendlKeyGroup)) +
      sampleStore_.size() * sizeof(void*));
}

namespace {

int ClampToInt(int64_t bytes) { return static_cast<int>(std::min<int64_t>(bytes, INT32_MAX)); }

// Sums a measure over the sample files of the programs' zones, each file once.
template <class Measure>
int64_t SampleMemory(const std::vector<const akaiProgram*>& programs, Measure measure) {
  std::set<const SampleFile*> files;
  for (const akaiProgram* program : programs) {
    for (int i = 0; i < kZones * program->AllocatedKeyGroups(); ++i) {
      if (program->sampleTable[i] != nullptr) files.insert(SampleFile::Of(program->sampleTable[i]));
    }
  }
  int64_t sum = 0;
  for (const SampleFile* file : files) sum += (file->*measure)();
  return sum;
}

std::vector<const akaiProgram*> Programs() {
  return {zyl::AllPrograms().begin(), zyl::AllPrograms().end()};
}

}  // namespace

int akaiProgram::getTotalMem(bool samples) const {
  const int64_t sound = samples ? SampleMemory({this}, &SampleFile::Memory) : 0;
  return ClampToInt(RecordMemory() + sound);
}

int akaiProgram::getTotalLockedMem(bool samples) const {
  const int64_t sound = samples ? SampleMemory({this}, &SampleFile::LockedMemory) : 0;
  return ClampToInt((lockCount != 0 ? RecordMemory() : 0) + sound);
}

int getTotalMem() {
  int64_t sum = SampleMemory(Programs(), &SampleFile::Memory);
  for (const akaiProgram* program : Programs()) sum += program->getTotalMem(false);
  return ClampToInt(sum);
}

int getTotalLockedMem() {
  int64_t sum = SampleMemory(Programs(), &SampleFile::LockedMemory);
  for (const akaiProgram* program : Programs()) sum += program->getTotalLockedMem(false);
  return ClampToInt(sum);
}

// ---- Programs in use ----

namespace {

// Never destroyed: programs may be released during static destruction.
std::vector<akaiProgram*>& LivePrograms() {
  static auto& programs = *new std::vector<akaiProgram*>;
  return programs;
}

}  // namespace

namespace zyl {
const std::vector<akaiProgram*>& AllPrograms() { return LivePrograms(); }
}  // namespace zyl

akaiProgram* ProgramStore::Make() {
  struct Deleter {
    void operator()(akaiProgram* program) const { delete program; }
  };
  std::unique_ptr<akaiProgram, Deleter> program(new akaiProgram);
  LivePrograms().push_back(program.get());
  return program.release();
}

// A snapshot is listed, so that reloads and path changes of samples update its zones, too.
akaiProgram* ProgramStore::MakeSnapshot(const akaiProgram& program) {
  struct Deleter {
    void operator()(akaiProgram* copy) const { Destroy(copy); }
  };
  std::unique_ptr<akaiProgram, Deleter> copy(Make());
  copy->isSnapshot_ = true;
  copy->CopyContents(program);
  return copy.release();
}

void ProgramStore::Destroy(akaiProgram* program) {
  std::erase(LivePrograms(), program);
  delete program;
}

void ProgramStore::Fill(akaiProgram* program, std::vector<akaiKeyGroup> keygroups,
                        std::vector<vendlKeyGroup> extensions, std::vector<ListChunk> otherChunks) {
  program->sampleStore_.assign(kZones * keygroups.size(), nullptr);
  program->keyGroupStore_ = std::move(keygroups);
  program->extensionStore_ = std::move(extensions);
  program->otherChunks_ = std::move(otherChunks);
  program->Rebind();
}

akaiProgram* newAkaiProgram() {
  try {
    return ProgramStore::Make();
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void deleteAkaiProgram(akaiProgram* program) {
  if (program != nullptr && --ProgramStore::Uses(program) == 0) ProgramStore::Destroy(program);
}

void lockAkaiProgram(akaiProgram* program) {
  if (++program->lockCount > 1) return;
  ProgramStore::Lock(program);
}

void unlockAkaiProgram(akaiProgram* program) {
  if (program->lockCount == 0) return;
  if (program->lockCount == 1) ProgramStore::Unlock(program);
  --program->lockCount;
}

akaiProgram* findAkaiProgram(int, const char* name) {
  if (name == nullptr || *name == '\0') return nullptr;
  const std::string path = zyl::AbsolutePath(name);
  const auto find = [](auto matches) {
    const auto& programs = LivePrograms();
    const auto found = std::ranges::find_if(programs, [&](const akaiProgram* program) {
      return !ProgramStore::IsSnapshot(*program) && matches(*program);
    });
    return found == programs.end() ? nullptr : *found;
  };
  akaiProgram* found = find([&](const akaiProgram& program) {
    const std::string& own = program.GetFileName();
    return !own.empty() && zyl::AbsolutePath(own) == path;
  });
  if (found == nullptr) {
    found = find([&](const akaiProgram& program) {
      const std::string_view own(program.name, strnlen(program.name, sizeof(program.name)));
      return own == name || FileString(program.GetFileName()).BaseName() == name;
    });
  }
  if (found != nullptr) ++ProgramStore::Uses(found);
  return found;
}

// ---- Snapshots ----

zyl::ProgramSnapshot::ProgramSnapshot(akaiProgram* program)
    : record_(program), copy_(ProgramStore::MakeSnapshot(*program)) {
  ++ProgramStore::Uses(record_);
}

zyl::ProgramSnapshot::~ProgramSnapshot() {
  deleteAkaiProgram(copy_);
  deleteAkaiProgram(record_);
}

akaiProgram* zyl::ProgramSnapshot::Restore() noexcept {
  ProgramStore::Swap(*record_, *copy_);
  ++ProgramStore::Uses(record_);
  return record_;
}
