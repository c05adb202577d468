#include "../platform/AtomicFile.h"
#include "../riff.h"

struct RiffFile::Inside {
  Inside(const std::string& path, uint8_t flag) : file(path), formatFlag(flag) {}
  zyl::AtomicFile file;
  uint8_t formatFlag;
};

RiffFile::RiffFile(const std::string& path, uint8_t formatFlag)
    : inside_(std::make_unique<Inside>(path, formatFlag)) {}

RiffFile::~RiffFile() = default;

bool RiffFile::Write(const void* bytes, size_t count) { return inside_->file.Write(bytes, count); }

bool RiffFile::Close() { return inside_->file.Commit(); }

void RiffFile::Abandon() { inside_->file.Abandon(); }

bool RiffFile::Good() const { return inside_->file.Good(); }

uint8_t RiffFile::FormatFlag() const { return inside_->formatFlag; }

const std::string& RiffFile::Error() const { return inside_->file.Error(); }
