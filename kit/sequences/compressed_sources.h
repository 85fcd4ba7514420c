// Sources of bytes that are compressed (kit/sequences/byte_source.h).

#ifndef PALVOR_KIT_SEQUENCES_COMPRESSED_SOURCES_H_
#define PALVOR_KIT_SEQUENCES_COMPRESSED_SOURCES_H_

#include <memory>

#include "kit/sequences/byte_source.h"
#include "kit/sequences/source_file.h"

namespace kit {

// gzip, and bgzf. Throws std::bad_alloc.
std::unique_ptr<ByteSource> gzipSource(std::unique_ptr<SourceFile> file);

// bzip2, xz and zstd, as libarchive knows them by their first bytes, and what
// is none of them, as it stands. Throws std::bad_alloc.
std::unique_ptr<ByteSource> archiveSource(std::unique_ptr<SourceFile> file);

}  // namespace kit

#endif  // PALVOR_KIT_SEQUENCES_COMPRESSED_SOURCES_H_
