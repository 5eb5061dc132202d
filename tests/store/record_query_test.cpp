#include "store/record_query.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <set>

#include "support/failing_file_system.h"
#include "table_fixture.h"

namespace jotlet::test {
namespace {

constexpr auto kAnd = Connective::And;
constexpr auto kOr = Connective::Or;
using Terms = std::vector<std::function<void(RecordQuery&)>>;

std::function<void(RecordQuery&)> Title(TermKind kind, const std::string& text, Connective tie = kAnd)
{
    return [=](RecordQuery& query) { query.AddTextTerm(kTitleAt, kTitleWidth, kind, text, tie); };
}
std::function<void(RecordQuery&)> Text(TermKind kind, const std::string& text, Connective tie = kAnd)
{
    return [=](RecordQuery& query) { query.AddTextTerm(kTextAt, kTextWidth, kind, text, tie); };
}

// Every query runs on a mapping and by reads, and both must agree.
class RecordQueryTest : public TableTest {
protected:
    // Titles of the matches, in file order, with blanks between.
    std::string Found(const Terms& terms)
    {
        const std::string mapped = FoundNow(terms);
        FailingFileSystem remote;
        remote.isRemote = true;
        const ScopedFileSystem scope(remote);
        TableFile second(path, table->Password());
        table.swap(kept);
        table = std::make_unique<TableFile>(path, kept->Password());
        EXPECT_EQ(FoundNow(terms), mapped);
        table.swap(kept);
        kept.reset();
        return mapped;
    }
    std::string FoundNow(const Terms& terms)
    {
        query.Reset();
        query.PrepareResults();
        for (const auto& add : terms)
            add(query);
        EXPECT_EQ(table->RunQuery(query), 1);
        return Listed();
    }
    std::string Listed()
    {
        std::string titles;
        for (const RecordAddress address : query.Results())
            titles += (titles.empty() ? "" : " ") + TitleAt(address);
        return titles;
    }

    RecordQuery query;
    std::unique_ptr<TableFile> kept;
};

template <typename Value>
Value At(const std::byte* bytes)
{
    Value value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

struct Field {
    ValueType type;
    std::uint32_t at;
    std::uint32_t width;
};

std::string LoweredText(const std::byte* bytes, std::uint32_t width)
{
    return LowerAscii(FieldText({reinterpret_cast<const char*>(bytes), std::min(width, 500u)}));
}

// The rules, told as simply as can be.
int ModelCompare(const Field& field, const std::byte* a, const std::byte* b)
{
    const auto sign = [](auto first, auto second) { return (first > second) - (first < second); };
    switch (field.type) {
        case ValueType::Text:
            return sign(LoweredText(a, field.width).compare(LoweredText(b, field.width)), 0);
        case ValueType::Date:
            return sign(DayNumberOf(At<DateValue>(a)), DayNumberOf(At<DateValue>(b)));
        case ValueType::Time:
            return sign(TimeSlot(At<TimeValue>(a)), TimeSlot(At<TimeValue>(b)));
        case ValueType::Int8:
            return sign(At<std::int8_t>(a), At<std::int8_t>(b));
        case ValueType::Int64:
            return sign(At<std::int64_t>(a), At<std::int64_t>(b));
        case ValueType::Int32:
        case ValueType::Int32Alternative:
            return sign(At<std::int32_t>(a), At<std::int32_t>(b));
        default:
            return !(At<double>(a) >= At<double>(b)) ? -1 : At<double>(a) != At<double>(b);
    }
}

bool ModelHolds(const FilterTerm& term, const Record& record)
{
    const std::byte* field = record.data() + term.fieldOffset;
    const int kind = static_cast<int>(term.kind);
    const int compared =
        ModelCompare({term.valueType, term.fieldOffset, term.fieldSize}, field, term.value.bytes.data());
    const bool answers[] = {true,          compared == 0, compared != 0, compared <= 0,
                            compared >= 0, compared > 0,  compared < 0};
    if (kind <= 6)
        return answers[kind];
    bool isIn = false;
    if (term.valueType == ValueType::Text) {
        const std::string text = LoweredText(field, term.fieldSize);
        const std::string sought = LoweredText(term.value.bytes.data(), 500);
        isIn = kind <= 8    ? text.find(sought) != std::string::npos
               : kind <= 10 ? text.starts_with(sought)
                            : text.ends_with(sought);
    }
    return kind > 12 || isIn == (kind % 2 == 1);
}

bool ModelMatches(const std::vector<FilterTerm>& terms, const Record& record)
{
    if (terms[0].kind == TermKind::All || (terms.size() == 1 && ModelHolds(terms[0], record)))
        return true;
    bool all = terms.size() > 1;
    for (std::size_t i = 1; i < terms.size(); ++i) {
        const bool first = ModelHolds(terms[i - 1], record);
        const bool second = ModelHolds(terms[i], record);
        const bool both = terms[i - 1].connective == kAnd && terms[i].connective == kAnd;
        all = all && (both ? first && second : first || second);
    }
    return all;
}

// Adds the term by the operation that its type has.
void AddAs(RecordQuery& query, const FilterTerm& term)
{
    const std::byte* value = term.value.bytes.data();
    const auto date = At<DateValue>(value);
    if (term.valueType == ValueType::Text)
        query.AddTextTerm(term.fieldOffset, term.fieldSize, term.kind, reinterpret_cast<const char*>(value),
                          term.connective);
    else if (term.valueType == ValueType::Date)
        query.AddDateTerm(term.fieldOffset, term.kind, date.day, date.month, date.year, term.connective);
    else if (term.valueType == ValueType::Int8)
        query.AddByteTerm(term.fieldOffset, term.kind, At<std::uint8_t>(value), term.connective);
    else if (term.valueType == ValueType::Int64)
        query.AddInt64Term(term.fieldOffset, term.kind, At<std::uint32_t>(value), At<std::uint32_t>(value + 4),
                           term.connective);
    else
        query.AddTerm(term);
}

TEST_F(RecordQueryTest, AnyQueryAndSortGivesWhatANaiveModelGives)
{
    std::mt19937 random(23);
    const auto pick = [&](int from, int to) { return from + static_cast<int>(random() % unsigned(to - from + 1)); };
    const auto word = [&] {
        std::string text;
        for (int left = pick(0, 4); left > 0; --left)
            text += "aAbBx"[random() % 5];
        return text;
    };
    constexpr std::uint32_t kNumberAt = 600, kFloatAt = 620;
    const double floats[] = {0.0, -0.0, 1.5, -1.5, std::numeric_limits<double>::quiet_NaN()};
    std::vector<Record> records;
    for (int i = 0; i < 130; ++i) {
        Record record = RecordOf({.title = word(),
                                  .text = word() + word(),
                                  .category = word(),
                                  .date = {pick(0, 3), pick(1, 2), pick(1999, 2001)},
                                  .id = (std::uint64_t(pick(-1, 1)) << 32) + unsigned(pick(0, 2))});
        Put(record, kNumberAt, std::int32_t{pick(-2, 2)});
        Put(record, kFloatAt, floats[random() % 5]);
        Put(record, kTimeAt, TimeValue{pick(9, 10), pick(0, 11), pick(0, 59), pick(1, 2)});
        ASSERT_EQ(table->AddRecord(record), 1);
        records.push_back(record);
    }
    const Field fields[] = {
        {ValueType::Text, kTitleAt, kTitleWidth},
        {ValueType::Text, kTextAt, kTextWidth},
        {ValueType::Text, kTitleAt, 2},
        {ValueType::Text, kCategoryAt, kCategoryWidth},
        {ValueType::Date, kDateAt, 12},
        {ValueType::Time, kTimeAt, 16},
        {ValueType::Int8, kNumberAt, 1},
        {ValueType::Int32, kNumberAt, 4},
        {ValueType::Int32Alternative, kNumberAt, 4},
        {ValueType::Int64, 6, 8},
        {ValueType::Float, kFloatAt, 8},
        {ValueType::Float8, kFloatAt, 8},
        {ValueType::Float12, kFloatAt, 12},
    };
    FailingFileSystem share;
    const ScopedFileSystem scope(share);
    TableFile far(path, "");
    for (int round = 0; round < 1000; ++round) {
        share.isRemote = round % 2 == 1;  // by reading, or on a mapping
        TableFile& source = share.isRemote ? far : *table;
        query.Reset();
        query.PrepareResults();
        std::vector<FilterTerm> terms;
        for (int left = pick(1, 4); left > 0; --left) {
            const Field& field = fields[random() % std::size(fields)];
            FilterTerm& term = terms.emplace_back();
            term.valueType = field.type;
            term.fieldOffset = field.at;
            term.fieldSize = field.width;
            term.kind = static_cast<TermKind>(pick(0, 12));
            term.connective = random() % 2 ? kAnd : kOr;
            const std::byte* value = records[random() % records.size()].data() + term.fieldOffset;
            const std::uint32_t beyond = field.type == ValueType::Text ? 2 : 0;  // a value may be longer than its field
            std::copy_n(value, std::min<std::size_t>(term.fieldSize + beyond, 499), term.value.bytes.begin());
            AddAs(query, term);
        }
        std::vector<RecordAddress> expected;
        const auto recordAt = [&](RecordAddress address) {
            return records[(address - kFirstRecordOffset) / kNoteRecordSize].data();
        };
        for (std::size_t i = 0; i < records.size(); ++i)
            if (ModelMatches(terms, records[i]))
                expected.push_back(static_cast<RecordAddress>(kFirstRecordOffset + i * kNoteRecordSize));
        SCOPED_TRACE(round);
        ASSERT_EQ(source.RunQuery(query), 1);
        ASSERT_EQ(std::vector(query.Results().begin(), query.Results().end()), expected);

        const Field& key = fields[random() % std::size(fields)];
        std::ranges::stable_sort(expected, [&](RecordAddress a, RecordAddress b) {
            const std::byte* second = recordAt(b) + key.at;
            // What is no number comes first, and none of them before another.
            const bool isNan = key.at == kFloatAt && std::isnan(At<double>(second));
            return !isNan && ModelCompare(key, recordAt(a) + key.at, second) < 0;
        });
        // A comparator of numbers reads what its type has, however short the key.
        const std::uint32_t width = key.type == ValueType::Text ? key.width : 1 + random() % key.width;
        ASSERT_EQ(query.Sort(source, key.at, width, ComparatorOf(key.type)), 1);
        ASSERT_EQ(std::vector(query.Results().begin(), query.Results().end()), expected);
    }
}

TEST_F(RecordQueryTest, AWordIsFoundWhereverItStandsInTheText)
{
    const std::string filler(40, 'n');
    for (const std::size_t at : {0, 1, 15, 16, 17, 31, 100, 1990, 2016, 2017}) {
        std::string text(at, 'n');
        text += "NeeDle";
        Add({.title = std::to_string(at), .text = text + (at < 1900 ? filler : "")});
    }
    Add({.title = "cut", .text = std::string(2018, 'n') + "needle"});  // the last byte goes to the terminator
    EXPECT_EQ(Found({Text(TermKind::Contains, "needle")}), "0 1 15 16 17 31 100 1990 2016 2017");
    EXPECT_EQ(Found({Text(TermKind::EndsWith, "needle")}), "1990 2016 2017");
    EXPECT_EQ(Found({Text(TermKind::Contains, std::string(499, 'N') + std::string(40, 'x'))}), "1990 2016 2017 cut");
}

TEST_F(RecordQueryTest, OddTermsHaveTheirAnswerAndNeverReadOutside)
{
    Add({.title = "note"});
    struct Case {
        int type;
        int kind;
        std::uint32_t offset;
        std::uint32_t size;
        const char* found;
    };
    for (const Case& c :
         {Case{0, 1, 0, 4, ""}, Case{11, 2, 0, 4, ""}, Case{4, 99, 0, 4, "note"}, Case{1, 7, 0, 4, ""},
          Case{1, 8, 0, 4, "note"}, Case{1, 9, 0, 4, ""}, Case{1, 12, 0, 4, "note"}, Case{10, 2, 3550, 8, ""},
          Case{4, 7, 3500, 58, ""}, Case{4, 7, ~0u, 2, ""}, Case{4, 7, 4, ~0u, ""}, Case{4, 8, ~0u, ~0u, "note"},
          Case{5, 2, 3546, 1, ""}, Case{13, 13, 0, 4, ""}, Case{4, 7, 3557, 0, "note"}}) {
        SCOPED_TRACE(testing::Message() << c.type << " " << c.kind << " " << c.offset << " " << c.size);
        FilterTerm term;
        term.valueType = static_cast<ValueType>(c.type);
        term.kind = static_cast<TermKind>(c.kind);
        term.fieldOffset = c.offset;
        term.fieldSize = c.size;
        EXPECT_EQ(Found({[&](RecordQuery& q) { q.AddTerm(term); }}), c.found);
    }
}

TEST_F(RecordQueryTest, APredicateDecidesAndEachTermTellsItsOutcome)
{
    Add({.title = "odd"});
    Add({.title = "even"});
    FilterTerm longTitle;
    longTitle.kind = TermKind::Predicate;
    longTitle.fieldOffset = kTitleAt;
    longTitle.fieldSize = kTitleWidth;
    longTitle.value.bytes[0] = std::byte{4};
    longTitle.predicate = [](const std::byte* field, const FieldValue& value) {
        return strlen(reinterpret_cast<const char*>(field)) >= std::to_integer<std::size_t>(value.bytes[0]) ? 1 : 0;
    };
    EXPECT_EQ(Found({[&](RecordQuery& q) { q.AddTerm(longTitle); }, Title(TermKind::Contains, "v")}), "even");
    EXPECT_EQ(query.terms[0].result, 1);
    EXPECT_EQ(query.terms[1].result, 1);
    EXPECT_EQ(Found({Title(TermKind::Contains, "o"), Title(TermKind::Contains, "d")}), "odd");
    EXPECT_EQ(query.terms[0].result, 0);  // of "even", the last one looked at
}

TEST_F(RecordQueryTest, OnlyTheOwnerSeesConfidentialRecordsAndOnlyActiveOneIsLive)
{
    Add({.title = "open"});
    Add({.title = "secret", .confidential = 1});
    Add({.title = "odd", .confidential = 7});
    for (const int active : {0, 2, 255})
        Add({.title = "dead", .active = static_cast<std::uint8_t>(active)});
    const Terms all = {[](RecordQuery& q) { q.AddAllTerm(); }};
    EXPECT_EQ(Found(all), "open secret odd");
    SetPasswords("boss", "aide", "guest");
    for (const char* password : {"boss", "aide", "guest", "nobody"}) {
        Reopen(password);
        EXPECT_EQ(Found(all), *password == 'b' ? "open secret odd" : "open") << password;
    }
}

TEST_F(RecordQueryTest, TheLimitKeepsTheFirstMatchesInFileOrder)
{
    const Record record = RecordOf({.title = "note"});
    for (int i = 0; i < kMaxResults; ++i)
        ASSERT_EQ(table->AddRecord(record), 1);
    const RecordAddress last = Add({.title = "last"});
    query.PrepareResults();
    query.AddAllTerm();
    EXPECT_EQ(table->RunQuery(query), 1);
    EXPECT_EQ(query.resultCount, kMaxResults);
    EXPECT_TRUE(query.limitReached);
    EXPECT_EQ(query.Results().back(), last - 3557);

    query.PrepareAllResults();
    query.AddAllTerm();
    EXPECT_EQ(table->RunQuery(query), 1);
    EXPECT_FALSE(query.limitReached);
    EXPECT_EQ(query.Results().back(), last);
    const RecordAddress behind = Add({.title = "z"});  // a run makes room for what came since
    EXPECT_EQ(table->RunQuery(query), 1);
    EXPECT_EQ(query.Results().back(), behind);

    table->DeleteRecord(last);
    table->DeleteRecord(behind);
    query.PrepareResults();
    query.AddAllTerm();
    EXPECT_EQ(table->RunQuery(query), 1);
    EXPECT_EQ(query.resultCount, kMaxResults);
    EXPECT_FALSE(query.limitReached) << "as many as there is room for are all of them";
}

TEST_F(RecordQueryTest, WithoutRoomForResultsNothingRunsAndTheFiftyFirstTermIsRefused)
{
    Add({.title = "note"});
    query.AddAllTerm();
    EXPECT_EQ(table->RunQuery(query), 0);
    query.PrepareResults();
    for (int i = 0; i < kMaxTerms; ++i)
        EXPECT_EQ(query.AddTextTerm(kTitleAt, kTitleWidth, TermKind::Equal, "note", kAnd), 1);
    EXPECT_EQ(query.AddTextTerm(kTitleAt, kTitleWidth, TermKind::Equal, "else", kAnd) + query.AddAllTerm() +
                  query.AddByteTerm(0, TermKind::Equal, 0, kAnd) + query.AddInt64Term(0, TermKind::Equal, 0, 0, kAnd) +
                  query.AddDateTerm(0, TermKind::Equal, 1, 1, 2001, kAnd) + query.AddTerm({}),
              0);
    EXPECT_EQ(table->RunQuery(query), 1);
    EXPECT_EQ(query.resultCount, 1);
    query.Reset();
    EXPECT_TRUE(query.Results().empty());
    EXPECT_EQ(query.Resort(), 0);
}

TEST_F(RecordQueryTest, ADroppedShareIsAFailure)
{
    for (int i = 0; i < 120; ++i)
        Add({.title = std::to_string(i)});
    FailingFileSystem share;
    share.isRemote = true;
    const ScopedFileSystem scope(share);
    TableFile far(path, "");
    query.PrepareResults();
    query.AddAllTerm();
    ASSERT_EQ(far.RunQuery(query), 1);
    EXPECT_EQ(query.Sort(far, kTitleAt, kTitleWidth, CompareTitles), 1);
    share.failReads = true;
    EXPECT_EQ(query.resultCount, 120);
    EXPECT_EQ(far.RunQuery(query), 0);
    EXPECT_EQ(far.GetRole(), Role::None);
    EXPECT_EQ(far.GetChangeStamp(), 0u);
    share.failReads = false;
    EXPECT_EQ(far.RunQuery(query), 1);
}

TEST_F(RecordQueryTest, TheStampIsTakenAtTheFirstSortAndAnOddComparatorLosesNothing)
{
    for (const char* title : {"\xC3\xA4", "a long title that goes on 2", "A long title that goes on 1", "[", "Z", "a"})
        Add({.title = title});
    Found({[](RecordQuery& q) { q.AddAllTerm(); }});
    EXPECT_EQ(query.seenStamp, kNoStamp);
    EXPECT_EQ(query.Sort(*table, kTitleAt, kTitleWidth, CompareTitles), 1);
    const std::string expected = "[ a A long title that goes on 1 a long title that goes on 2 Z \xC3\xA4";
    EXPECT_EQ(Listed(), expected);
    EXPECT_EQ(query.seenStamp, 16u);
    Add({.title = "0"});
    EXPECT_EQ(query.Resort(), 1);
    EXPECT_EQ(Listed(), expected);
    EXPECT_EQ(query.seenStamp, 16u);
    // One that contradicts itself stays in bounds.
    EXPECT_EQ(query.Sort(*table, 0, 4, [](const std::byte*, const std::byte*, std::size_t) { return -1; }), 1);
    const std::set<RecordAddress> all(query.Results().begin(), query.Results().end());
    EXPECT_EQ(all.size(), 6u);
}

TEST_F(RecordQueryTest, KeysOutsideTheRecordOrTheFileAreAFailure)
{
    for (const char* title : {"b", "a", "c"})
        Add({.title = title});
    Found({[](RecordQuery& q) { q.AddAllTerm(); }});
    for (const auto& [at, width] : {std::pair{3550u, 8u}, {~0u, 8u}, {8u, ~0u}})
        EXPECT_EQ(query.Sort(*table, at, width, CompareInt64), 0) << at;
    const std::pair<FieldComparator, std::uint32_t> sizes[] = {
        {CompareTimes, 16}, {CompareDates, 12}, {CompareInt64, 8}, {CompareFloat, 8}, {CompareInt32, 4}};
    for (const auto& [comparator, size] : sizes) {
        EXPECT_EQ(query.Sort(*table, 3558 - size, 1, comparator), 0) << size;
        EXPECT_EQ(query.Sort(*table, 3557 - size, 1, comparator), 1) << size;
    }
    EXPECT_EQ(Listed(), "b a c");
    CutBytes(3557);
    EXPECT_EQ(query.Sort(*table, kTitleAt, kTitleWidth, CompareTitles), 0);
    EXPECT_EQ(query.resultCount, 3);
    query.results[0] = 100;
    EXPECT_EQ(query.Resort(), 0);
}

}  // namespace
}  // namespace jotlet::test
