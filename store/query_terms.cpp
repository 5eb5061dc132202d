#include "store/query_terms.h"

#include <algorithm>
#include <cstring>

namespace jotlet {
namespace {

// Whether the result of a comparator passes a kind.
template <TermKind kKind>
constexpr bool Passes(int compared)
{
    switch (kKind) {
        case TermKind::Equal:
            return compared == 0;
        case TermKind::NotEqual:
            return compared != 0;
        case TermKind::AtMost:
            return compared <= 0;
        case TermKind::AtLeast:
            return compared >= 0;
        case TermKind::Above:
            return compared > 0;
        default:
            return compared < 0;
    }
}

}  // namespace

template <bool kAnswer>
bool ReadyTerm::Always(const ReadyTerm&, const std::byte*)
{
    return kAnswer;
}

template <TermKind kKind>
bool ReadyTerm::Compares(const ReadyTerm& term, const std::byte* record)
{
    return Passes<kKind>(term.comparator(record + term.offset, term.value.bytes.data(), term.size));
}

template <bool (*kTest)(const std::byte*, std::size_t, const Needle&), bool kAnswer>
bool ReadyTerm::Searches(const ReadyTerm& term, const std::byte* record)
{
    const std::byte* field = record + term.offset;
    return kTest(field, TextLength(field, term.size), term.needle) == kAnswer;
}

// What CompareTitles calls equal, on the folded value.
bool ReadyTerm::EqualsText(const ReadyTerm& term, const std::byte* record)
{
    const std::byte* field = record + term.offset;
    const std::size_t length = term.needle.length;
    return BeginsWithAscii(field, term.size, term.needle) && (length == term.size || field[length] == std::byte{0});
}

bool ReadyTerm::AsksPredicate(const ReadyTerm& term, const std::byte* record)
{
    const std::vector<std::byte> field(record + term.offset, record + term.offset + term.size);
    return term.predicate(field.data(), term.value) == 1;
}

ReadyTerm::ReadyTerm(const FilterTerm& term, std::uint32_t recordSize)
    : offset(term.fieldOffset),
      size(term.fieldSize),
      connective(term.connective),
      comparator(ComparatorOf(term.valueType)),
      predicate(term.predicate),
      value(term.value)
{
    value.bytes.back() = std::byte{0};
    const bool searches = term.kind > TermKind::Below;
    needle = searches ? Needle::Of(value.bytes) : Needle::OfAscii(value.bytes);
    // A comparison sees no more of the value than the field could hold; a search needs all of it.
    if (!searches)
        needle.length = std::min<std::size_t>(needle.length, size);
    const std::uint64_t asked = std::max<std::uint64_t>(size, FixedSizeOf(term.valueType));
    const bool inside = offset + asked <= recordSize;
    reads = inside ? static_cast<std::uint32_t>(asked) : 0;
    isText = term.valueType == ValueType::Text && term.kind != TermKind::Predicate;
    readsField = inside && term.kind != TermKind::All;
    test = TestOf(term, inside);
}

ReadyTerm::Test ReadyTerm::TestOf(const FilterTerm& term, bool inside)
{
    const bool compares = inside && ComparatorOf(term.valueType) != nullptr;
    switch (term.kind) {
        case TermKind::Equal:
            if (compares && term.valueType == ValueType::Text)
                return EqualsText;
            return compares ? Compares<TermKind::Equal> : Always<false>;
        case TermKind::NotEqual:
            return compares ? Compares<TermKind::NotEqual> : Always<false>;
        case TermKind::AtMost:
            return compares ? Compares<TermKind::AtMost> : Always<false>;
        case TermKind::AtLeast:
            return compares ? Compares<TermKind::AtLeast> : Always<false>;
        case TermKind::Above:
            return compares ? Compares<TermKind::Above> : Always<false>;
        case TermKind::Below:
            return compares ? Compares<TermKind::Below> : Always<false>;
        case TermKind::Predicate:
            return inside && term.predicate ? AsksPredicate : Always<false>;
        case TermKind::Contains:
        case TermKind::NotContains:
        case TermKind::BeginsWith:
        case TermKind::NotBeginsWith:
        case TermKind::EndsWith:
        case TermKind::NotEndsWith:
            return TextTestOf(term, inside);
        case TermKind::All:
            break;
    }
    return Always<true>;  // also for a kind that there isn't
}

ReadyTerm::Test ReadyTerm::TextTestOf(const FilterTerm& term, bool inside)
{
    const bool searches = inside && term.valueType == ValueType::Text;
    switch (term.kind) {
        case TermKind::Contains:
            return searches ? Searches<ContainsFolded, true> : Always<false>;
        case TermKind::NotContains:
            return searches ? Searches<ContainsFolded, false> : Always<true>;
        case TermKind::BeginsWith:
            return searches ? Searches<BeginsWithFolded, true> : Always<false>;
        case TermKind::NotBeginsWith:
            return searches ? Searches<BeginsWithFolded, false> : Always<true>;
        case TermKind::EndsWith:
            return searches ? Searches<EndsWithFolded, true> : Always<false>;
        default:
            return searches ? Searches<EndsWithFolded, false> : Always<true>;
    }
}

ReadyTerms::ReadyTerms(const RecordQuery& query, std::uint32_t recordSize)
{
    const auto count = static_cast<std::size_t>(std::clamp(query.termCount, 0, kMaxTerms));
    terms.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        terms.emplace_back(query.terms[i], recordSize);
        hasPredicate = hasPredicate || query.terms[i].kind == TermKind::Predicate;
    }
    everythingMatches = count == 0 || query.terms[0].kind == TermKind::All;
}

bool ReadyTerms::Match(const std::byte* record)
{
    looked = true;
    const std::size_t count = terms.size();
    for (std::size_t i = 0; i < count; ++i)
        held[i] = terms[i].Holds(record);
    if (everythingMatches)
        return true;
    if (count == 1)
        return held[0];
    for (std::size_t i = 1; i < count; ++i) {
        const bool both =
            terms[i - 1].GetConnective() == Connective::And && terms[i].GetConnective() == Connective::And;
        if (both ? !(held[i - 1] && held[i]) : !(held[i - 1] || held[i]))
            return false;
    }
    return true;
}

std::vector<AskedField> ReadyTerms::Fields() const
{
    std::vector<AskedField> fields;
    for (const ReadyTerm& term : terms)
        if (term.ReadsField())
            fields.push_back(term.Field());
    return fields;
}

void ReadyTerms::TellResults(RecordQuery& query) const
{
    if (!looked)
        return;
    for (std::size_t i = 0; i < terms.size(); ++i)
        query.terms[i].result = held[i] ? 1 : 0;
}

}  // namespace jotlet
