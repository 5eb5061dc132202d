#include "notes/model/duplicates.h"

#include <array>
#include <cstring>
#include <functional>
#include <string_view>

#include "notes/model/palette.h"
#include "platform/base/text.h"
#include "store/table_file.h"

namespace jotlet {

namespace {

// Colour, title and text lie side by side at the end of a note: all that IsSameNote looks at.
constexpr FieldRange kContent = {kColourOffset, kNoteRecordSize - kColourOffset};

std::uint64_t HashOf(std::uint32_t colour, std::string_view title, std::string_view text)
{
    const std::hash<std::string_view> hash;
    std::uint64_t value = hash(text) + 0x9E3779B97F4A7C15u * colour;
    value ^= hash(title) + 0x9E3779B97F4A7C15u + (value << 6) + (value >> 2);
    return value;
}

std::uint64_t HashOf(const NoteRecord& note)
{
    return HashOf(note.colour, FieldText(note.title), FieldText(note.text));
}

std::uint64_t HashOfContent(std::span<const std::byte> content)
{
    std::uint32_t colour = 0;
    std::memcpy(&colour, content.data(), sizeof colour);
    const std::span<const char> chars(reinterpret_cast<const char*>(content.data()), content.size());
    return HashOf(colour, FieldText(chars.subspan(kTitleOffset - kColourOffset, kTitleSize)),
                  FieldText(chars.subspan(kTextOffset - kColourOffset, kTextSize)));
}

void Complete(NoteRecord& note, const Clock& clock)
{
    TimeValue now;
    Now(now, 5, clock);
    DateValue today;
    Today(today, clock);
    note.alarmTime = now;
    note.alarmDate = today;
    if (FieldText(note.title).empty())
        StoreText(note.title, "Untitled");
    note.colour = IndexToColour(static_cast<std::int32_t>(note.colour.Get()));
}

}  // namespace

void NoteDuplicates::Scan()
{
    addresses.clear();
    stamp = file.GetChangeStamp();  // before the scan: what comes in during it is looked at again
    const std::array<FieldRange, 1> fields = {kContent};
    file.ForEachRecord(fields, [this](RecordAddress address, std::span<const std::byte> content) {
        addresses.emplace(HashOfContent(content), address);
        return true;
    });
    scanned = true;
}

bool NoteDuplicates::Contains(const NoteRecord& note)
{
    if (!scanned || (expected.empty() && file.GetChangeStamp() != stamp))
        Scan();
    const std::uint64_t hash = HashOf(note);
    const auto [firstExpected, lastExpected] = expected.equal_range(hash);
    for (auto at = firstExpected; at != lastExpected; ++at) {
        if (IsSameNote(at->second, note) == 0)
            return true;
    }
    const auto [first, last] = addresses.equal_range(hash);
    for (auto at = first; at != last; ++at) {
        NoteRecord other;
        if (file.ReadRecord(BytesOf(other), at->second) == 1 && IsSameNote(other, note) == 0)
            return true;
    }
    return false;
}

void NoteDuplicates::Expect(const NoteRecord& note)
{
    expected.emplace(HashOf(note), note);
}

void NoteDuplicates::Added(const NoteRecord& note, RecordAddress address)
{
    const std::uint64_t hash = HashOf(note);
    const auto [first, last] = expected.equal_range(hash);
    for (auto at = first; at != last; ++at) {
        if (IsSameNote(at->second, note) == 0) {
            expected.erase(at);
            break;
        }
    }
    addresses.emplace(hash, address);
    ++stamp;
}

int PrepareImportedNote(NoteRecord& note, NoteDuplicates& duplicates, const Clock& clock)
{
    Complete(note, clock);
    return duplicates.Contains(note) ? 0 : 1;
}

int PrepareImportedNote(NoteRecord& note, TableFile& file, const Clock& clock)
{
    NoteDuplicates duplicates(file);
    return PrepareImportedNote(note, duplicates, clock);
}

}  // namespace jotlet
