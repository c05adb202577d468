// Records the layout of a file while it is read, so that it can be written back unchanged.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "ChunkWalker.h"
#include "SampleAccess.h"

namespace zyl {

// Records the chunk `head` that `walker` has just returned.
void AddPlace(const ByteSource& source, const ChunkWalker& walker, const ChunkHead& head, Slot slot,
              FileOrigin& origin);

// Records the form's declared length and the bytes after its last chunk. If a declared size is
// inconsistent with the file, records nothing and adds a remark to `reason`.
void RememberForm(const ByteSource& source, const ChunkWalker& walker, FileOrigin& origin,
                  std::string& reason);

// Records the bytes after the last whole frame in the sound chunk. `offset` is the position of the
// first frame in the file.
void RememberSoundTail(const ByteSource& source, const ChunkHead& sound, uint64_t offset,
                       uint64_t soundBytes, FileOrigin& origin);

// Records the format, parameters and name of the sample as read.
void RememberOrigin(const BasicSample& sample, FileOrigin& origin);

// Removes unknown chunks with these IDs. Used for chunks that describe an encoding that was
// decoded.
void DropChunks(BasicSample& sample, FileOrigin& origin,
                std::initializer_list<std::string_view> ids);

}  // namespace zyl
