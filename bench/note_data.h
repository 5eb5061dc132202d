// The notes that both sides work on: the same for everybody who runs the benchmarks.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "notes/model/note_record.h"
#include "platform/base/calendar.h"

namespace jotlet {

inline constexpr int kNoteCount = 10'000;
// Stands in the title or the text of about 35 of 100 notes, and nowhere by chance.
inline constexpr std::string_view kSoughtText = "quartz";
inline constexpr std::string_view kSoughtCategory = "Meetings";

struct SampleNote {
    std::uint64_t id = 0;
    std::string title;     // 10 to 60 bytes
    std::string text;      // 50 to 1500 bytes
    std::string category;  // one of 15
    DateValue date;        // in 3 years
    std::uint32_t colour = 0;
};

// `count` notes; another seed gives other notes.
std::vector<SampleNote> MakeNotes(int count = kNoteCount, std::uint64_t seed = 1);

// The record of a sample, ready to be added.
NoteRecord RecordOf(const SampleNote& sample, const NoteRecord& fresh);

// Rows as the export writes them, with their header row.
std::string CsvOf(const std::vector<SampleNote>& notes);

}  // namespace jotlet
