// What the readers of both formats remember of a file, so that it can be written again as it was.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "ChunkWalker.h"
#include "SampleAccess.h"

namespace zyl {

// Notes the place of the chunk that `walker` has just returned as `head`.
void AddPlace(const ByteSource& source, const ChunkWalker& walker, const ChunkHead& head, Slot slot,
              FileOrigin& origin);

// Adds a remark to `reason` when the sizes do not fit the file; otherwise remembers the form's
// declared length and what follows its last chunk.
void RememberForm(const ByteSource& source, const ChunkWalker& walker, FileOrigin& origin,
                  std::string& reason);

// Remembers what follows the last whole frame in the sound's chunk. `offset` is the place of the
// first frame.
void RememberSoundTail(const ByteSource& source, const ChunkHead& sound, uint64_t offset,
                       uint64_t soundBytes, FileOrigin& origin);

// Remembers what the sample is after it was read.
void RememberOrigin(const BasicSample& sample, FileOrigin& origin);

// Forgets other chunks that describe how values were stored, where those were decoded.
void DropChunks(BasicSample& sample, FileOrigin& origin,
                std::initializer_list<std::string_view> ids);

}  // namespace zyl
