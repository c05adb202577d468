// Extracts the WAVE chunks that a FLAC file keeps of its source file.
//
// flac --keep-foreign-metadata stores the form's header, every chunk and the header of the "data"
// chunk as consecutive "APPLICATION" metadata blocks with the application ID "riff".
#pragma once

#include "../byteOrder.h"
#include "ByteSource.h"

namespace zyl {

// Assembles the WAVE file from these blocks, without sound data. Empty if there are no blocks.
Bytes WaveChunksOfFlac(const ByteSource& source);

}  // namespace zyl
