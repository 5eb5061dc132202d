// The JSON that jotctl prints. The forms are stable: keys may be added, none is ever renamed or removed. Texts are
// valid UTF-8 whatever bytes the file holds. Its source alone knows the library that writes JSON.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "notes/model/note_record.h"
#include "store/copies.h"
#include "store/table_file.h"

namespace jotlet {

// What `info` tells of a file.
struct FileInfo {
    std::uint32_t headerSize = 0;
    std::uint32_t categorySize = 0;
    std::uint32_t recordSize = 0;
    TableHeader header;
    CategoryBlock categories;
    SlotCounts counts;
    std::vector<CopyInfo> copies;  // of the others
};

// An object; line breaks of the texts as stored (CR LF), and null for a date or time that does not exist.
std::string NoteJson(const NoteRecord& note, RecordAddress address);
// An array of notes, made one by one, so that a long list is never there twice.
class NoteListJson {
public:
    void Add(const NoteRecord& note, RecordAddress address);
    std::string Take();

private:
    std::string text;
};

std::string InfoJson(const FileInfo& info);
// "name: value" lines of the same values.
std::string InfoText(const FileInfo& info);

std::string ImportJson(std::size_t rows, std::size_t added, std::size_t dropped);

}  // namespace jotlet
