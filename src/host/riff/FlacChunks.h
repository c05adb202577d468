// The chunks of a WAVE file inside a FLAC file that was made from it.
//
// flac --keep-foreign-metadata stores the file's head, every chunk and the head of the sound's
// chunk in "APPLICATION" metadata blocks of the application "riff", one after the other.
#pragma once

#include "ByteOrder.h"
#include "ByteSource.h"

namespace zyl {

// The WAVE file that these blocks make, with an empty sound; empty when there are none.
Bytes WaveChunksOfFlac(const ByteSource& source);

}  // namespace zyl
