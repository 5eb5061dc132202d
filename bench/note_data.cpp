#include "bench/note_data.h"

#include <array>

#include "notes/model/palette.h"
#include "platform/base/text.h"

namespace jotlet {
namespace {

// A small generator of our own, so that the notes do not depend on the standard library's distributions.
class Random {
public:
    explicit Random(std::uint64_t seed) : state(seed * 0x9E3779B97F4A7C15u + 1) {}

    std::uint64_t Next()
    {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        return state;
    }
    int Between(int low, int high)
    {
        return low + static_cast<int>(Next() % static_cast<std::uint64_t>(high - low + 1));
    }

private:
    std::uint64_t state;
};

constexpr std::array<std::string_view, 15> kCategories = {"Calls",    "Clients", "Expenses", "Follow up", "Ideas",
                                                          "Meetings", "Issues",  "People",   "Personal",  "Projects",
                                                          "Public",   "Holiday", "Travel",   "Vacation",  "Test"};

// No syllable and no join of two holds the sought text.
std::string Word(Random& random)
{
    static constexpr std::array<std::string_view, 20> kSyllables = {"an", "ber", "co", "den", "el",  "fa", "gor",
                                                                    "hi", "in",  "jo", "ka",  "lim", "mo", "nu",
                                                                    "or", "pas", "re", "sti", "tu",  "ve"};
    std::string word;
    for (int left = random.Between(1, 4); left > 0; --left)
        word += kSyllables[random.Next() % kSyllables.size()];
    return word;
}

std::string Words(Random& random, std::size_t length)
{
    std::string words = Word(random);
    words[0] = static_cast<char>(words[0] - 'a' + 'A');
    while (words.size() < length)
        words += ' ' + Word(random);
    words.resize(length);
    return words;
}

}  // namespace

std::vector<SampleNote> MakeNotes(int count, std::uint64_t seed)
{
    Random random(seed);
    std::vector<SampleNote> notes(static_cast<std::size_t>(count));
    for (SampleNote& note : notes) {
        note.id = random.Next() >> 1;
        note.title = Words(random, static_cast<std::size_t>(random.Between(10, 60)));
        note.text = Words(random, static_cast<std::size_t>(random.Between(50, 1500)));
        if (random.Between(1, 100) <= 35)
            note.text.replace(random.Next() % (note.text.size() - kSoughtText.size()), kSoughtText.size(), kSoughtText);
        note.category = kCategories[random.Next() % kCategories.size()];
        note.date = {random.Between(1, 28), random.Between(1, 12), random.Between(2017, 2019)};
        note.colour = kPalette[random.Next() % kPalette.size()].colour;
    }
    return notes;
}

NoteRecord RecordOf(const SampleNote& sample, const NoteRecord& fresh)
{
    NoteRecord note = fresh;
    note.uniqueId = sample.id;
    StoreText(note.title, sample.title);
    StoreText(note.text, sample.text);
    StoreText(note.category, sample.category);
    note.date = sample.date;
    note.colour = sample.colour;
    return note;
}

std::string CsvOf(const std::vector<SampleNote>& notes)
{
    std::string csv = "\"Title\",\"Text\",\"Color\",\"Category\"\r\n";
    for (const SampleNote& note : notes)
        csv += '"' + note.title + "\",\"" + note.text + "\",\"" + std::to_string(ColourToIndex(note.colour)) + "\",\"" +
               note.category + "\"\r\n";
    return csv;
}

}  // namespace jotlet
