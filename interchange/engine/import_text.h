#pragma once

#include <cstddef>
#include <string>

#include "platform/base/file_error.h"

// From the bytes of a file to text that DelimitedReader understands.

namespace jotlet {

enum class ImportFileError {
    None,
    System,    // the system refused: see `detail`
    TooLarge,  // beyond kMaxImportBytes
    OutOfMemory,
};

struct ImportFileResult {
    ImportFileError error = ImportFileError::None;
    FileError detail;

    explicit operator bool() const { return error == ImportFileError::None; }
};

inline constexpr std::size_t kMaxImportBytes = (std::size_t{1} << 31) - 16;

// The whole of a regular file. `bytes` is empty after a failure.
ImportFileResult ReadImportFile(const std::string& path, std::string& bytes);

// The first `limit` bytes of the file, or fewer when it is shorter; for a look at a file of any size.
ImportFileResult ReadImportHead(const std::string& path, std::size_t limit, std::string& bytes);

enum class LineEnds {
    Auto,  // a text in which no CR LF stands has each LF turned into CR LF
    CrLf,  // line ends stay as they are
};

// Drops a UTF-8 byte order mark, turns UTF-16 with one (either byte order) into UTF-8, and sees to the line ends. All
// other bytes stay: those that are no UTF-8 are text of Windows-1252.
std::string PrepareImportText(std::string bytes, LineEnds lineEnds = LineEnds::Auto);

class DelimitedReader;

// ReadImportFile and PrepareImportText into the reader, whose text is empty after a failure.
ImportFileResult LoadImportText(DelimitedReader& reader, const std::string& path, LineEnds lineEnds = LineEnds::Auto);

}  // namespace jotlet
