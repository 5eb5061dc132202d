#include "store/record_query.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "platform/base/text.h"
#include "store/query_terms.h"
#include "store/table_file.h"
#include "store/table_scan.h"

namespace jotlet {
namespace {

template <typename Value>
void PutValue(FieldValue& field, const Value& value)
{
    std::memcpy(field.bytes.data(), &value, sizeof value);
}

}  // namespace

int RecordQuery::Reset()
{
    terms = {};
    termCount = 0;
    results.reset();
    resultCount = room = 0;
    limitReached = reachesAll = false;
    sortFile = nullptr;
    sortComparator = nullptr;
    sortKeyOffset = kNoField;
    sortKeySize = kNoField;
    seenStamp = kNoStamp;
    return 1;
}

int RecordQuery::PrepareResults()
{
    terms = {};
    termCount = 0;
    resultCount = room = 0;
    limitReached = reachesAll = false;
    return MakeRoom(kMaxResults) ? 1 : 0;
}

int RecordQuery::PrepareAllResults()
{
    const int prepared = PrepareResults();
    reachesAll = true;
    return prepared;
}

bool RecordQuery::MakeRoom(std::int64_t slots)
{
    if (slots <= room)
        return true;
    results.reset(new (std::nothrow) RecordAddress[static_cast<std::size_t>(slots)]);
    room = results ? static_cast<std::int32_t>(slots) : 0;
    return results != nullptr;
}

FilterTerm* RecordQuery::NextTerm(TermKind kind, Connective connective)
{
    if (termCount < 0 || termCount >= kMaxTerms)
        return nullptr;
    FilterTerm& term = terms[static_cast<std::size_t>(termCount++)];
    term = FilterTerm{};
    term.kind = kind;
    term.connective = connective;
    return &term;
}

int RecordQuery::AddAllTerm()
{
    return NextTerm(TermKind::All, Connective::And) ? 1 : 0;
}

int RecordQuery::AddByteTerm(std::uint32_t fieldOffset, TermKind kind, std::uint8_t value, Connective connective)
{
    FilterTerm* term = NextTerm(kind, connective);
    if (!term)
        return 0;
    term->valueType = ValueType::Int8;
    term->fieldOffset = fieldOffset;
    term->fieldSize = 1;
    PutValue(term->value, value);
    return 1;
}

int RecordQuery::AddInt64Term(std::uint32_t fieldOffset, TermKind kind, std::uint32_t lowWord, std::uint32_t highWord,
                              Connective connective)
{
    return AddInt64Term(fieldOffset, kind, std::uint64_t{highWord} << 32 | lowWord, connective);
}

int RecordQuery::AddInt64Term(std::uint32_t fieldOffset, TermKind kind, std::uint64_t value, Connective connective)
{
    FilterTerm* term = NextTerm(kind, connective);
    if (!term)
        return 0;
    term->valueType = ValueType::Int64;
    term->fieldOffset = fieldOffset;
    term->fieldSize = sizeof value;
    PutValue(term->value, value);
    return 1;
}

int RecordQuery::AddDateTerm(std::uint32_t fieldOffset, TermKind kind, int day, int month, int year,
                             Connective connective)
{
    FilterTerm* term = NextTerm(kind, connective);
    if (!term)
        return 0;
    term->valueType = ValueType::Date;
    term->fieldOffset = fieldOffset;
    term->fieldSize = sizeof(DateValue);
    PutValue(term->value, DateValue{day, month, year});
    return 1;
}

int RecordQuery::AddTextTerm(std::uint32_t fieldOffset, std::uint32_t fieldSize, TermKind kind, std::string_view text,
                             Connective connective)
{
    FilterTerm* term = NextTerm(kind, connective);
    if (!term)
        return 0;
    term->valueType = ValueType::Text;
    term->fieldOffset = fieldOffset;
    term->fieldSize = fieldSize;
    text = CutText(text, term->value.bytes.size() - 1);
    std::memcpy(term->value.bytes.data(), text.data(), text.size());
    return 1;
}

int RecordQuery::AddTerm(const FilterTerm& given)
{
    FilterTerm* term = NextTerm(given.kind, given.connective);
    if (!term)
        return 0;
    *term = given;
    return 1;
}

int TableFile::RunQuery(RecordQuery& query) const
{
    query.resultCount = 0;
    query.limitReached = false;
    if (!IsOpen() || !query.results)
        return 0;
    ReadyTerms terms(query, recordSize);
    std::vector<AskedField> fields = terms.Fields();
    if (query.sortComparator)
        fields.push_back(query.SortField());
    TableScan scan(*this, fields);
    const bool showConfidential = SeesConfidential(scan.Header() ? RoleIn(*scan.Header()) : GetRole());
    if (query.reachesAll && !query.MakeRoom(scan.SlotCount()))
        return 0;
    if (terms.HasPredicate())
        scan.StopMapping();
    constexpr std::size_t kActiveAt = offsetof(RecordPrefix, active);
    constexpr std::size_t kConfidentialAt = offsetof(RecordPrefix, confidential);
    const auto look = [&](const SlotRun& run) {
        for (std::int64_t i = 0; i < run.count; ++i) {
            run.FetchAhead(i, 0);
            for (const ReadyTerm& term : terms.Terms())
                if (term.ReadsField())
                    run.FetchAhead(i, term.FieldOffset(), term.FetchSize());
            const std::byte* slot = run.Slot(i);
            if (slot[kActiveAt] != std::byte{1} || (slot[kConfidentialAt] != std::byte{0} && !showConfidential))
                continue;
            if (!terms.Match(slot))
                continue;
            if (query.resultCount < query.room)
                query.results[static_cast<std::size_t>(query.resultCount++)] = run.Address(i);
            else
                query.limitReached = true;
        }
        return true;
    };
    const bool allRead = scan.Run(
        0, scan.SlotCount(),
        [&] {
            query.resultCount = 0;
            query.limitReached = false;
        },
        look);
    terms.TellResults(query);
    return allRead ? 1 : 0;
}

}  // namespace jotlet
