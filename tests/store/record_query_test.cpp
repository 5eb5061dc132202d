#include "store/record_query.h"

#include <algorithm>
#include <cstring>
#include <limits>

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
std::function<void(RecordQuery&)> Category(TermKind kind, const std::string& text, Connective tie = kAnd)
{
    return [=](RecordQuery& query) { query.AddTextTerm(kCategoryAt, kCategoryWidth, kind, text, tie); };
}
std::function<void(RecordQuery&)> Date(TermKind kind, int day, int month, int year, Connective tie = kAnd)
{
    return [=](RecordQuery& query) { query.AddDateTerm(kDateAt, kind, day, month, year, tie); };
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

TEST_F(RecordQueryTest, EachTextKindIgnoresCaseAndHasItsOpposite)
{
    for (const char* title : {"Tax", "taxes", "Syntax", "milk", ""})
        Add({.title = title});
    struct Case {
        TermKind kind;
        const char* value;
        const char* found;
    };
    for (const Case& c :
         {Case{TermKind::Equal, "TAX", "Tax"}, Case{TermKind::NotEqual, "tax", "taxes Syntax milk "},
          Case{TermKind::Contains, "tAX", "Tax taxes Syntax"}, Case{TermKind::NotContains, "tax", "milk "},
          Case{TermKind::BeginsWith, "TAX", "Tax taxes"}, Case{TermKind::NotBeginsWith, "tax", "Syntax milk "},
          Case{TermKind::EndsWith, "TAX", "Tax Syntax"}, Case{TermKind::NotEndsWith, "tax", "taxes milk "},
          Case{TermKind::Above, "syntax", "Tax taxes"}, Case{TermKind::AtMost, "milk", "milk "},
          Case{TermKind::AtLeast, "Tax", "Tax taxes"}, Case{TermKind::Below, "N", "milk "},
          Case{TermKind::Contains, "", "Tax taxes Syntax milk "},
          Case{TermKind::BeginsWith, "", "Tax taxes Syntax milk "}, Case{TermKind::Contains, "taxesx", ""},
          Case{TermKind::Equal, "", ""}}) {
        SCOPED_TRACE(testing::Message() << static_cast<int>(c.kind) << " " << c.value);
        EXPECT_EQ(Found({Title(c.kind, c.value)}), c.found);
    }
    EXPECT_EQ(Found({Title(TermKind::Equal, "")}).size(), 0u);
    EXPECT_EQ(query.resultCount, 1);  // the empty title
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
    Add({.title = "near", .text = "needl needlf Needl\xE5 \xCE\xA5needl"});
    EXPECT_EQ(Found({Text(TermKind::Contains, "needle")}), "0 1 15 16 17 31 100 1990 2016 2017");
    EXPECT_EQ(Found({Text(TermKind::EndsWith, "needle")}), "1990 2016 2017");
    // Letters alone have two cases: '@' and '`', '[' and '{' lie as far apart as they do.
    Add({.title = "signs", .text = "@[`{"});
    EXPECT_EQ(Found({Text(TermKind::Contains, "`[")}), "");
    EXPECT_EQ(Found({Text(TermKind::Contains, "@[`{")}), "signs");
    EXPECT_EQ(Found({Text(TermKind::Contains, std::string(499, 'N') + std::string(40, 'x'))}), "1990 2016 2017 cut");
}

TEST_F(RecordQueryTest, ThePairRuleTiesNeighboursOnly)
{
    for (const char* letters : {"a", "b", "ab", "bc", "c", "abc", "d", "abd", "acd"})
        Add({.title = letters});
    const auto has = [](const char* letter, Connective tie) { return Title(TermKind::Contains, letter, tie); };
    EXPECT_EQ(Found({has("a", kAnd), has("b", kAnd)}), "ab abc abd");
    EXPECT_EQ(Found({has("a", kOr), has("b", kOr)}), "a b ab bc abc abd acd");
    EXPECT_EQ(Found({has("a", kAnd), has("b", kOr)}), "a b ab bc abc abd acd");  // one And is no And
    EXPECT_EQ(Found({has("a", kOr), has("b", kOr), has("c", kAnd)}), "b ab bc abc abd acd");
    EXPECT_EQ(Found({has("a", kAnd), has("b", kAnd), has("c", kOr), has("d", kOr)}), "abc abd");
}

TEST_F(RecordQueryTest, AnOrNextToAnAndTiesTheTwoTerms)
{
    Add({.title = "tax", .category = "Calls"});
    Add({.title = "tax", .category = "Ideas"});
    Add({.title = "milk", .text = "tax", .category = "Calls"});
    EXPECT_EQ(Found({Title(TermKind::Contains, "tax", kOr), Text(TermKind::Contains, "tax", kOr),
                     Category(TermKind::Equal, "calls"), Category(TermKind::Equal, "Calls")}),
              "tax milk");
}

TEST_F(RecordQueryTest, DatesCompareByDayNumberAndImpossibleOnesComeFirst)
{
    Add({.title = "early", .date = {31, 12, 2004}});
    Add({.title = "day", .date = {1, 1, 2005}});
    Add({.title = "late", .date = {1, 2, 2005}});
    Add({.title = "never", .date = {31, 2, 2005}});
    EXPECT_EQ(Found({Date(TermKind::Equal, 1, 1, 2005)}), "day");
    EXPECT_EQ(Found({Date(TermKind::AtLeast, 1, 1, 2005), Date(TermKind::AtMost, 31, 1, 2005)}), "day");
    EXPECT_EQ(Found({Date(TermKind::Below, 1, 1, 2005)}), "early never");
    EXPECT_EQ(Found({Date(TermKind::Equal, 40, 40, 1990)}), "never");
}

TEST_F(RecordQueryTest, NumbersOfEveryWidthCompareSigned)
{
    Record record = RecordOf({.title = "minus", .id = ~std::uint64_t{0}});
    Put(record, 1379, std::int32_t{-2});
    table->AddRecord(record);
    record = RecordOf({.title = "plus", .id = 0x1'0000'0002u});
    Put(record, 1379, std::int32_t{3});
    table->AddRecord(record);
    EXPECT_EQ(Found({[](RecordQuery& q) { q.AddInt64Term(6, TermKind::Equal, 2, 1, kAnd); }}), "plus");
    EXPECT_EQ(Found({[](RecordQuery& q) { q.AddInt64Term(6, TermKind::Below, 0, 0, kAnd); }}), "minus");
    EXPECT_EQ(Found({[](RecordQuery& q) { q.AddByteTerm(6, TermKind::Above, 0xFE, kAnd); }}), "minus plus");
    FilterTerm number;
    number.valueType = ValueType::Int32Alternative;
    number.fieldOffset = 1379;
    number.fieldSize = 4;
    number.kind = TermKind::Above;
    EXPECT_EQ(Found({[&](RecordQuery& q) { q.AddTerm(number); }}), "plus");
}

TEST_F(RecordQueryTest, TimesInOneStepOfFiveMinutesAreEqual)
{
    Record record = RecordOf({.title = "note"});
    Put(record, kTimeAt, TimeValue{10, 1, 30, kBeforeNoon});
    table->AddRecord(record);
    for (const auto& [minute, equal] : {std::pair{4, "note"}, std::pair{5, ""}, std::pair{0, "note"}}) {
        FilterTerm time;
        time.valueType = ValueType::Time;
        time.fieldOffset = kTimeAt;
        time.fieldSize = 16;
        time.kind = TermKind::Equal;
        const TimeValue value{10, minute, 0, kBeforeNoon};
        std::memcpy(time.value.bytes.data(), &value, sizeof value);
        EXPECT_EQ(Found({[&](RecordQuery& q) { q.AddTerm(time); }}), equal);
    }
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

TEST_F(RecordQueryTest, OnlyTheOwnerSeesConfidentialRecords)
{
    Add({.title = "open"});
    Add({.title = "secret", .confidential = 1});
    Add({.title = "odd", .confidential = 7});
    const Terms all = {[](RecordQuery& q) { q.AddAllTerm(); }};
    EXPECT_EQ(Found(all), "open secret odd");
    SetPasswords("boss", "aide", "guest");
    for (const auto& [password, seen] :
         {std::pair{"boss", "open secret odd"}, std::pair{"aide", "open"}, std::pair{"guest", "open"},
          std::pair{"nobody", "open"}, std::pair{"BOSS", "open"}}) {
        SCOPED_TRACE(password);
        Reopen(password);
        EXPECT_EQ(Found(all), seen);
    }
}

TEST_F(RecordQueryTest, OnlyActiveOneIsLive)
{
    for (const int active : {0, 1, 2, 255})
        Add({.title = std::to_string(active), .active = static_cast<std::uint8_t>(active)});
    EXPECT_EQ(Found({[](RecordQuery& q) { q.AddAllTerm(); }}), "1");
}

TEST_F(RecordQueryTest, TheLimitKeepsTheFirstMatchesInFileOrder)
{
    const Record record = RecordOf({.title = "note"});
    for (int i = 0; i < kMaxResults; ++i)
        ASSERT_EQ(table->AddRecord(record), 1);
    const RecordAddress last = Add({.title = "a first by title"});
    query.PrepareResults();
    query.AddAllTerm();
    EXPECT_EQ(table->RunQuery(query), 1);
    EXPECT_EQ(query.resultCount, kMaxResults);
    EXPECT_EQ(query.Sort(*table, kTitleAt, kTitleWidth, CompareTitles), 1);
    EXPECT_EQ(std::count(query.Results().begin(), query.Results().end(), last), 0);
    EXPECT_EQ(query.Results().back(), last - 3557);
}

TEST_F(RecordQueryTest, TheFiftyFirstTermIsRefused)
{
    Add({.title = "note"});
    query.PrepareResults();
    for (int i = 0; i < kMaxTerms; ++i)
        EXPECT_EQ(query.AddTextTerm(kTitleAt, kTitleWidth, TermKind::Equal, "note", kAnd), 1);
    EXPECT_EQ(query.AddTextTerm(kTitleAt, kTitleWidth, TermKind::Equal, "else", kAnd), 0);
    EXPECT_EQ(query.AddAllTerm() + query.AddByteTerm(0, TermKind::Equal, 0, kAnd) +
                  query.AddDateTerm(0, TermKind::Equal, 1, 1, 2001, kAnd) +
                  query.AddInt64Term(0, TermKind::Equal, 0, 0, kAnd) + query.AddTerm({}),
              0);
    EXPECT_EQ(table->RunQuery(query), 1);
    EXPECT_EQ(query.resultCount, 1);
}

TEST_F(RecordQueryTest, WithoutRoomForResultsNothingRuns)
{
    Add({.title = "note"});
    query.AddAllTerm();
    EXPECT_EQ(table->RunQuery(query), 0);
    query.PrepareResults();
    query.AddAllTerm();
    EXPECT_EQ(table->RunQuery(query), 1);
    query.Reset();
    EXPECT_TRUE(query.Results().empty());
    EXPECT_EQ(query.seenStamp, kNoStamp);
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
    EXPECT_EQ(query.Resort(), 0);
    EXPECT_EQ(query.resultCount, 120);
    EXPECT_EQ(far.RunQuery(query), 0);
    EXPECT_EQ(far.GetRole(), Role::None);
    EXPECT_EQ(far.GetChangeStamp(), 0u);
    share.failReads = false;
    EXPECT_EQ(far.RunQuery(query), 1);
}

// --- sorting

class RecordSortTest : public RecordQueryTest {
protected:
    std::string Sorted(std::uint32_t at, std::uint32_t width, FieldComparator comparator)
    {
        EXPECT_EQ(query.Sort(*table, at, width, comparator), 1);
        return Listed();
    }
};

TEST_F(RecordSortTest, TitlesWithoutCaseByUnsignedBytesAndEqualOnesInFileOrder)
{
    for (const char* title : {"b", "B", "\xC3\xA4", "", "a long title that goes on 2", "A long title that goes on 1",
                              "[", "Z", "a long title", "a"})
        Add({.title = title});
    Found({[](RecordQuery& q) { q.AddAllTerm(); }});
    const std::string expected =
        "[ a a long title A long title that goes on 1 a long title that goes on 2 b B Z \xC3\xA4";
    EXPECT_EQ(Sorted(kTitleAt, kTitleWidth, CompareTitles), expected);
    EXPECT_EQ(query.Resort(), 1);
    EXPECT_EQ(Listed(), expected);
}

TEST_F(RecordSortTest, KnownComparatorsSortAsTheyCompare)
{
    // The sort turns keys into numbers. That must agree with asking the comparator for each pair.
    std::uint64_t random = 88172645463325252u;
    const auto next = [&] {
        random ^= random << 13;
        random ^= random >> 7;
        random ^= random << 17;
        return random;
    };
    const double floats[] = {0.0,
                             -0.0,
                             1.5,
                             -1.5,
                             1e300,
                             -1e300,
                             std::numeric_limits<double>::quiet_NaN(),
                             std::numeric_limits<double>::infinity(),
                             -std::numeric_limits<double>::infinity()};
    for (int i = 0; i < 300; ++i) {
        Record record = RecordOf({.title = std::string(next() % 3, 'A' + static_cast<char>(next() % 3)) + "x"});
        Put(record, 600, static_cast<std::int32_t>(next() % 7) - 3);
        Put(record, 610, static_cast<std::int64_t>(next()));
        Put(record, 620, floats[next() % std::size(floats)]);
        Put(record, kTimeAt, TimeValue{static_cast<int>(next() % 14), static_cast<int>(next() % 60), 0, 1 + (i & 1)});
        Put(record, kDateAt, DateValue{static_cast<int>(next() % 33), static_cast<int>(next() % 14), 2000 + i % 22});
        ASSERT_EQ(table->AddRecord(record), 1);
    }
    struct Key {
        std::uint32_t at;
        std::uint32_t width;
        FieldComparator comparator;
    };
    query.PrepareResults();
    query.AddAllTerm();
    for (const Key& key :
         {Key{600, 1, CompareInt8}, Key{600, 4, CompareInt32}, Key{610, 8, CompareInt64}, Key{620, 8, CompareFloat},
          Key{620, 8, CompareFloat8}, Key{620, 12, CompareFloat12}, Key{kTimeAt, 16, CompareTimes},
          Key{kDateAt, 12, CompareDates}, Key{kTitleAt, 150, CompareTitles}, Key{kTitleAt, 2, CompareTitles}}) {
        SCOPED_TRACE(key.at);
        ASSERT_EQ(table->RunQuery(query), 1);
        ASSERT_EQ(query.Sort(*table, key.at, key.width, key.comparator), 1);
        Record before = table->AllocRecordBuffer();
        Record after = table->AllocRecordBuffer();
        for (std::size_t i = 1; i < query.Results().size(); ++i) {
            table->ReadRecord(before, query.Results()[i - 1]);
            table->ReadRecord(after, query.Results()[i]);
            // Asked the way that tells "not above" also for what is no number.
            EXPECT_LE(key.comparator(before.data() + key.at, after.data() + key.at, key.width), 0);
        }
    }
    // A comparator of somebody else's, even one that contradicts itself, stays in bounds and loses nothing.
    ASSERT_EQ(table->RunQuery(query), 1);
    EXPECT_EQ(query.Sort(*table, 0, 4, [](const std::byte*, const std::byte*, std::size_t) { return -1; }), 1);
    std::vector<RecordAddress> all(query.Results().begin(), query.Results().end());
    std::sort(all.begin(), all.end());
    EXPECT_EQ(std::unique(all.begin(), all.end()) - all.begin(), 300);
}

TEST_F(RecordSortTest, TheStampIsTakenAtTheFirstSortOnly)
{
    Add({.title = "b"});
    Add({.title = "a"});
    Found({[](RecordQuery& q) { q.AddAllTerm(); }});
    EXPECT_EQ(query.seenStamp, kNoStamp);
    EXPECT_EQ(Sorted(kTitleAt, kTitleWidth, CompareTitles), "a b");
    EXPECT_EQ(query.seenStamp, 12u);
    Add({.title = "0"});
    EXPECT_EQ(query.Resort(), 1);
    EXPECT_EQ(Sorted(kTitleAt, kTitleWidth, CompareTitles), "a b");
    EXPECT_EQ(query.seenStamp, 12u);
}

TEST_F(RecordSortTest, KeysOutsideTheRecordOrTheFileAreAFailure)
{
    for (const char* title : {"b", "a", "c"})
        Add({.title = title});
    Found({[](RecordQuery& q) { q.AddAllTerm(); }});
    EXPECT_EQ(query.Sort(*table, 3550, 8, CompareInt64), 0);
    EXPECT_EQ(query.Sort(*table, 3553, 1, CompareInt64), 0);  // a comparator reads what its type has
    EXPECT_EQ(query.Sort(*table, ~0u, 8, CompareInt64), 0);
    EXPECT_EQ(query.Sort(*table, 8, ~0u, CompareInt64), 0);
    EXPECT_EQ(Listed(), "b a c");
    CutBytes(3557);
    EXPECT_EQ(query.Sort(*table, kTitleAt, kTitleWidth, CompareTitles), 0);
    EXPECT_EQ(query.resultCount, 3);
    query.results[0] = 100;
    EXPECT_EQ(query.Resort(), 0);
}

}  // namespace
}  // namespace jotlet::test
