#include "notes/title_jump.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "notes/model/note_record.h"
#include "platform/base/case_fold.h"
#include "platform/base/text.h"

namespace jotlet {
namespace {

// One character fits, and the next may be cut: its bytes say where it would end.
constexpr std::size_t kStartBytes = 8;
constexpr std::size_t kCharacterBytes = 4;
using TitleStart = std::array<char, kStartBytes>;

// The beginnings of titles, as they are in the file now. Read note by note at first; a walk that goes on takes those of
// all notes in one pass over the file, which is many times faster than as many single reads.
class TitleStarts {
public:
    explicit TitleStarts(const TableFile& file) : file(file) {}

    TitleStart At(RecordAddress address)
    {
        if (++asked == kSingleReads)
            ReadAll();
        const auto known = std::ranges::lower_bound(all, address, {}, &Known::address);
        if (known != all.end() && known->address == address)
            return known->start;
        TitleStart start{};
        file.ReadListedField(BytesOf(start), {kTitleOffset, kStartBytes}, address);
        return start;
    }

private:
    static constexpr int kSingleReads = 200;
    struct Known {
        RecordAddress address;
        TitleStart start;
    };

    void ReadAll()
    {
        const FieldRange range{kTitleOffset, kStartBytes};
        file.ForEachRecord(
            std::span(&range, 1),
            [this](RecordAddress address, std::span<const std::byte> bytes) {
                Known one{address, {}};
                std::ranges::copy(bytes, BytesOf(one.start).begin());
                all.push_back(one);
                return true;
            },
            ScanScope::All);
    }

    const TableFile& file;
    int asked = 0;
    std::vector<Known> all;  // in file order
};

// The first result whose title's start fits, -1 when none does.
template <class Fits>
int FindFirst(const TableFile& file, const RecordQuery& query, const Fits& fits)
{
    TitleStarts starts(file);
    int index = 0;
    for (const RecordAddress address : query.Results()) {
        if (fits(starts.At(address)))
            return index;
        ++index;
    }
    return -1;
}

std::string Folded(std::string_view text)
{
    std::string folded(text.size() * kFoldGrowth, '\0');
    folded.resize(FoldCase(text, folded));
    return folded;
}

std::string Utf8Of(char32_t c)
{
    const auto tail = [c](int shift) { return static_cast<char>(0x80 | ((c >> shift) & 0x3F)); };
    if (c < 0x80)
        return {static_cast<char>(c)};
    if (c < 0x800)
        return {static_cast<char>(0xC0 | (c >> 6)), tail(0)};
    if (c < 0x10000)
        return {static_cast<char>(0xE0 | (c >> 12)), tail(6), tail(0)};
    return {static_cast<char>(0xF0 | (c >> 18)), tail(12), tail(6), tail(0)};
}

}  // namespace

int FindTitleFrom(const TableFile& file, const RecordQuery& query, char letter)
{
    const auto upper = [](char c) { return static_cast<signed char>(c >= 'a' && c <= 'z' ? c - ('a' - 'A') : c); };
    const signed char wanted = upper(letter);
    const int found = FindFirst(file, query, [&](const TitleStart& start) { return upper(start[0]) >= wanted; });
    return found < 0 ? query.resultCount - 1 : found;
}

int FindTitleWith(const TableFile& file, const RecordQuery& query, char32_t character)
{
    const std::string wanted = Folded(Utf8Of(character));
    return FindFirst(file, query, [&](const TitleStart& start) {
        return Folded(CutText(FieldText(start), kCharacterBytes)).starts_with(wanted);
    });
}

}  // namespace jotlet
