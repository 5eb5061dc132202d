// The terms of a query, made ready for a scan: bounds checked once, texts folded once. For the store's own use.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "store/record_query.h"
#include "store/table_memory.h"
#include "store/text_search.h"

namespace jotlet {

// One term. Holds reads a record and owns nothing, so that it may run on a mapping.
class ReadyTerm {
public:
    ReadyTerm(const FilterTerm& term, std::uint32_t recordSize);
    bool Holds(const std::byte* record) const { return test(*this, record); }
    Connective GetConnective() const { return connective; }
    std::uint32_t FieldOffset() const { return offset; }
    bool ReadsField() const { return readsField; }
    // All that Holds reads of the record.
    AskedField Field() const { return {{offset, reads}, isText}; }
    // Bytes of the field worth having at hand: a search walks through the text, and most texts are short.
    std::uint32_t FetchSize() const { return size < kFetchLimit ? size : kFetchLimit; }

private:
    static constexpr std::uint32_t kFetchLimit = 1536;
    using Test = bool (*)(const ReadyTerm&, const std::byte* record);
    static Test TestOf(const FilterTerm& term, bool inside);
    static Test TextTestOf(const FilterTerm& term, bool inside);
    template <bool kAnswer>
    static bool Always(const ReadyTerm&, const std::byte*);
    template <TermKind kKind>
    static bool Compares(const ReadyTerm&, const std::byte*);
    template <bool (*kTest)(const std::byte*, std::size_t, const Needle&), bool kAnswer>
    static bool Searches(const ReadyTerm&, const std::byte*);
    static bool EqualsText(const ReadyTerm&, const std::byte*);
    static bool AsksPredicate(const ReadyTerm&, const std::byte*);

    Test test;
    std::uint32_t offset;
    std::uint32_t size;
    Connective connective;
    bool readsField;
    std::uint32_t reads;
    bool isText;
    FieldComparator comparator;
    int (*predicate)(const std::byte*, const FieldValue&);
    FieldValue value;
    Needle needle;
};

class ReadyTerms {
public:
    ReadyTerms(const RecordQuery& query, std::uint32_t recordSize);

    // Whether the record matches by the pair rule. Every term is evaluated.
    bool Match(const std::byte* record);
    // Tells the query how each term came out for the record that was looked at last.
    void TellResults(RecordQuery& query) const;
    // A caller's own code takes part, which must not run on a mapping.
    bool HasPredicate() const { return hasPredicate; }
    const std::vector<ReadyTerm>& Terms() const { return terms; }
    std::vector<AskedField> Fields() const;

private:
    std::vector<ReadyTerm> terms;
    std::array<bool, kMaxTerms> held{};
    bool everythingMatches = false;
    bool hasPredicate = false;
    bool looked = false;
};

}  // namespace jotlet
