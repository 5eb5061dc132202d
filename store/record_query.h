// The one way to get at a table's records as a set: terms, the addresses of the records that match, a remembered sort.
//
// Calling order: Reset, PrepareResults, one or more Add...Term, TableFile::RunQuery, then Sort if wanted. The terms
// stay, so RunQuery can be repeated; the sort stays for Resort until Reset. The results are a snapshot: a record may be
// deleted or changed by another copy before it is read, which ReadRecord tells.
//
// Pair rule: with one term it must hold. With more, each two neighbours are looked at: where both are tied by And, both
// must hold, else at least one. No precedence, no brackets. If the first term is the All term, every record matches.
//
// Units:   addresses are byte offsets (record_address.h).
// Owns:    the results. Not the file of the last sort, which must live as long as Resort may be called.
// Threads: one.
// Errors:  nothing throws but std::bad_alloc in the face of no memory; results as told at each operation.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "store/field_comparators.h"
#include "store/record_address.h"
#include "store/table_memory.h"

namespace jotlet {

class TableFile;

inline constexpr int kMaxTerms = 50;
inline constexpr int kMaxResults = 10'000;  // the first in file order; see RecordQuery::limitReached
inline constexpr std::uint64_t kNoStamp = ~std::uint64_t{0};
inline constexpr std::uint32_t kNoField = ~std::uint32_t{0};

// How a field is compared with the term's value. Texts always without regard to case. Never renumber.
enum class TermKind : std::int32_t {
    All = 0,
    Equal = 1,
    NotEqual = 2,
    AtMost = 3,
    AtLeast = 4,
    Above = 5,
    Below = 6,
    Contains = 7,  // 7 to 12 are for texts; with other types the plain ones never match, the negated ones always
    NotContains = 8,
    BeginsWith = 9,
    NotBeginsWith = 10,
    EndsWith = 11,
    NotEndsWith = 12,
    Predicate = 13,
};

enum class Connective : std::int32_t { And = 1, Or = 2 };

// The value side of a comparison, in the field's own form, zero-filled: a text has at most 499 characters.
struct FieldValue {
    std::array<std::byte, 500> bytes{};
};

struct FilterTerm {
    ValueType valueType = ValueType::Int8;
    std::uint32_t fieldOffset = 0;
    std::uint32_t fieldSize = 0;
    TermKind kind = TermKind::All;
    FieldValue value;
    Connective connective = Connective::And;
    std::int32_t result = -1;  // for the record looked at last: 1, 0, or -1 before the first
    // Kind 13 alone: 1 for a match. Gets a private copy of the field.
    int (*predicate)(const std::byte* field, const FieldValue& value) = nullptr;
};

class RecordQuery {
public:
    std::array<FilterTerm, kMaxTerms> terms;
    std::int32_t termCount = 0;
    std::unique_ptr<RecordAddress[]> results;  // `room` entries; none before PrepareResults
    std::int32_t resultCount = 0;
    std::int32_t room = 0;
    bool limitReached = false;  // the last run found more than there was room for, and dropped them
    TableFile* sortFile = nullptr;
    FieldComparator sortComparator = nullptr;
    std::uint32_t sortKeyOffset = kNoField;
    std::uint32_t sortKeySize = kNoField;
    std::uint64_t seenStamp = kNoStamp;  // the changeStamp that the results stand for

    // Terms, results and sort dropped, seenStamp unknown. Always 1.
    int Reset();
    // Terms and results dropped, room for results made. 1, or 0 without memory.
    int PrepareResults();
    // The same for work that must reach every match: each run makes as much room as the file has slots.
    int PrepareAllResults();

    // Each gives 0 and adds nothing when there are kMaxTerms terms already, else 1.
    int AddAllTerm();
    int AddByteTerm(std::uint32_t fieldOffset, TermKind kind, std::uint8_t value, Connective connective);
    int AddInt64Term(std::uint32_t fieldOffset, TermKind kind, std::uint32_t lowWord, std::uint32_t highWord,
                     Connective connective);
    int AddInt64Term(std::uint32_t fieldOffset, TermKind kind, std::uint64_t value, Connective connective);
    int AddDateTerm(std::uint32_t fieldOffset, TermKind kind, int day, int month, int year, Connective connective);
    // `text` is cut at the last whole character within 499 bytes.
    int AddTextTerm(std::uint32_t fieldOffset, std::uint32_t fieldSize, TermKind kind, std::string_view text,
                    Connective connective);
    // Any other term, as it stands.
    int AddTerm(const FilterTerm& term);

    // Sorts the results, ascending, and remembers how. Equal keys keep their order. If seenStamp is unknown it becomes
    // the file's present stamp. 1, or 0 when a key could not be read (the order is then as good as it could be made).
    int Sort(TableFile& file, std::uint32_t keyOffset, std::uint32_t keySize, FieldComparator comparator);
    // The remembered sort on the present results; seenStamp stays. 0 also when no sort is remembered.
    int Resort();

    // The matching addresses.
    std::span<const RecordAddress> Results() const
    {
        return {results.get(), static_cast<std::size_t>(results ? resultCount : 0)};
    }

private:
    friend class TableFile;
    FilterTerm* NextTerm(TermKind kind, Connective connective);
    // False without memory.
    bool MakeRoom(std::int64_t slots);
    int SortResults(TableFile& file);
    AskedField SortField() const;

    bool reachesAll = false;
};

}  // namespace jotlet
