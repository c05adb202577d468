// A program object's record, for tests that check its bytes.
#pragma once

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include "support/ScriptSurface.h"

namespace zyl::test {

// Owns one use of the record. Concatenates the images of header, keygroups and extensions.
class ProgramRecord {
 public:
  explicit ProgramRecord(const Program& program) {
    static int last = 0;
    const std::string before = program("PRGname").Text();
    const std::string name = "record " + std::to_string(++last);
    program("PRGname", name);
    record_ = findAkaiProgram(0, name.c_str());
    program("PRGname", before);
  }
  ~ProgramRecord() { deleteAkaiProgram(record_); }
  ProgramRecord(const ProgramRecord&) = delete;
  ProgramRecord& operator=(const ProgramRecord&) = delete;

  akaiProgram* operator->() const { return record_; }
  akaiProgram* Get() const { return record_; }

  size_t KeygroupPlace(int k) const {
    return sizeof(akaiProgramHdrImage) + sizeof(akaiKeyGroup) * static_cast<size_t>(k);
  }
  size_t ExtensionPlace(int k) const {
    return KeygroupPlace(record_->AllocatedKeyGroups()) +
           sizeof(vendlKeyGroupImage) * static_cast<size_t>(k);
  }

  std::vector<std::byte> Image() const {
    std::vector<std::byte> row;
    const auto add = [&](const void* from, size_t size) {
      const auto* first = static_cast<const std::byte*>(from);
      row.insert(row.end(), first, first + size);
    };
    const int count = record_->AllocatedKeyGroups();
    add(static_cast<const akaiProgramHdrImage*>(record_), sizeof(akaiProgramHdrImage));
    for (int k = 0; k < count; ++k) add(record_->keyGroupArray + k, sizeof(akaiKeyGroup));
    for (int k = 0; k < count; ++k) {
      add(static_cast<const vendlKeyGroupImage*>(record_->keyGroupExtensions + k),
          sizeof(vendlKeyGroupImage));
    }
    return row;
  }
  static std::vector<size_t> Changed(const std::vector<std::byte>& before,
                                     const std::vector<std::byte>& after) {
    std::vector<size_t> places;
    for (size_t i = 0; i < before.size() && i < after.size(); ++i) {
      if (before[i] != after[i]) places.push_back(i);
    }
    return places;
  }

 private:
  akaiProgram* record_;
};

}  // namespace zyl::test
