#include <algorithm>
#include <atomic>

#include "list_view_fixture.h"
#include "platform/base/paths.h"
#include "store/table_fixture.h"
#include "support/failing_file_system.h"
#include "support/temp_folder.h"
#include "toolkit/records/record_list_view.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::chrono_literals;

// Draws nothing and remembers what it was asked to draw.
class NotesOnlyList : public RecordListView {
public:
    explicit NotesOnlyList(int id) : RecordListView(id, 20, 3, 0xFFFFFF, 0xFFFFFF, kScrollBarLeft, 0, 0) {}
    void DrawRecordItem(DeviceContext&, Colour, int index, int, const Rect&) override
    {
        if (index >= 0)
            drawn.push_back(query->Results()[static_cast<std::size_t>(index)]);
    }
    using RecordListView::ReadItem;
    std::vector<RecordAddress> drawn;
};

// A drive that can stop answering.
class StoppingDrive : public test::FailingFileSystem {
public:
    StoppingDrive() { isRemote = true; }
    std::int64_t ReadAt(int handle, std::span<std::byte> buffer, std::int64_t offset) override
    {
        return Answers() ? FailingFileSystem::ReadAt(handle, buffer, offset) : -1;
    }
    int IdentifyPath(const std::string& path, FileIdentity& out) override
    {
        return Answers() ? FailingFileSystem::IdentifyPath(path, out) : -1;
    }
    std::atomic<bool> isStopped{false};
    std::atomic<int> asked{0};

private:
    bool Answers()
    {
        ++asked;
        errno = ETIMEDOUT;
        return !isStopped;
    }
};

// One note file, opened by this program's list and by another copy.
class ListRefreshTest : public WindowTest {
protected:
    ListRefreshTest() : file(folder.File("notes.jot"), ""), other(folder.File("notes.jot"), "")
    {
        test::UsePortableProgram(folder.Path());
        EXPECT_EQ(test::CreateNotes(file), 1);
        EXPECT_EQ(other.Open(), 1);
        Fill(query);
        host.Hold(list, Rect::At(0, 0, 200, 100));
        list.SetSource(&file, &query);
        list.SetCount(query.resultCount);
    }
    ~ListRefreshTest() override
    {
        ResumeRefresh();
        SetProgramPath({});
    }
    void Fill(RecordQuery& one)
    {
        one.Reset();
        ASSERT_EQ(one.PrepareResults(), 1);
        one.AddAllTerm();
        ASSERT_EQ(file.RunQuery(one), 1);
        ASSERT_EQ(one.Sort(file, test::kTitleAt, test::kTitleWidth, CompareTitles), 1);
    }
    test::Record AddInOtherCopy(const std::string& title, std::uint64_t id)
    {
        const test::Record record = test::RecordOf({.title = title, .id = id});
        EXPECT_EQ(other.AddRecord(record), 1);
        return record;
    }
    Command Reloaded(int which) { return {5, which, kListReloaded}; }

    test::TempFolder folder;
    TableFile file;
    TableFile other;
    RecordQuery query;
    Host host;
    NotesOnlyList list{5};
};

TEST_F(ListRefreshTest, AChangeOfAnotherCopyShowsAtTheNextTick)
{
    AddInOtherCopy("milk", 1);
    AddInOtherCopy("bread", 2);
    list.Send(kWmTimer, RecordListView::kRefreshTimerId, 0);
    EXPECT_THAT(host.commands, ElementsAre(Reloaded(kReloading))) << "the second is posted";
    EXPECT_THAT(host.Take(), ElementsAre(Reloaded(kReloading), Reloaded(kReloaded)));
    EXPECT_EQ(list.GetCount(), 2);
    EXPECT_EQ(list.GetSelected(), -1);
    list.drawn.clear();
    list.Grid().RepaintNow();
    EXPECT_THAT(list.drawn, ElementsAre(query.Results()[0], query.Results()[1])) << "drawn from their records";

    list.Send(kWmTimer, RecordListView::kRefreshTimerId, 0);
    EXPECT_THAT(host.Take(), IsEmpty()) << "an unchanged file is left alone";
}

TEST_F(ListRefreshTest, AnAskedRefreshTellsItsOwnCodesAndSelectsItsRecord)
{
    for (std::uint64_t id = 1; id <= 40; ++id)
        AddInOtherCopy("note " + std::to_string(100 - id), id);
    const test::Record bread = AddInOtherCopy("bread", 99);
    SuspendRefresh();
    list.RefreshAndSelect(bread);
    list.Send(kWmTimer, RecordListView::kRefreshTimerId, 0);
    EXPECT_THAT(host.Take(), IsEmpty()) << "while refresh is suspended";
    ResumeRefresh();
    list.RefreshAndSelect(bread);
    EXPECT_THAT(host.Take(), ElementsAre(Reloaded(kReloadingAsked), Reloaded(kReloadedAsked)));
    EXPECT_EQ(list.GetSelected(), 0) << "sorted by title";
    EXPECT_EQ(list.SelectRecord(std::uint64_t{1}), 1);
    EXPECT_EQ(list.GetSelected(), 40);
    EXPECT_TRUE(list.GetItemRect(40).has_value());
    EXPECT_EQ(list.SelectRecord(std::uint64_t{98}), 0);
    EXPECT_EQ(list.GetSelected(), 40);
    AddInOtherCopy("milk", 41);
    host.onCommand = [this](WndMessage&) { list.SetSource(nullptr, nullptr); };
    list.RefreshNow();
    EXPECT_EQ(list.GetCount(), 41) << "a parent may unbind the list when told of a reload";
}

TEST_F(ListRefreshTest, AnItemBeingDraggedStaysSelected)
{
    AddInOtherCopy("milk", 1);
    list.RefreshNow();
    list.EnableDrag();
    TestPress(list.Grid().window, {5, 5});
    TestMove(list.Grid().window, {6, 6}, true);
    AddInOtherCopy("bread", 2);
    list.Send(kWmTimer, RecordListView::kRefreshTimerId, 0);
    EXPECT_EQ(list.GetSelected(), 0);
    TestRelease(list.Grid().window, {6, 6});
    list.Send(kWmTimer, RecordListView::kRefreshTimerId, 0);
    EXPECT_EQ(list.GetCount(), 2);
}

TEST_F(ListRefreshTest, ATickOfOneListServesAllThatAreBound)
{
    {
        NotesOnlyList gone{7};
        gone.SetSource(&file, &query);
    }
    NotesOnlyList unbound{8};
    RecordQuery query2;
    Fill(query2);
    NotesOnlyList list2{6};
    host.Hold(list2, Rect::At(200, 0, 200, 100));
    list2.SetSource(&file, &query2);
    AddInOtherCopy("milk", 1);
    list.Send(kWmTimer, RecordListView::kRefreshTimerId, 0);
    EXPECT_EQ(list.GetCount(), 1);
    EXPECT_EQ(list2.GetCount(), 1);
    EXPECT_EQ(unbound.GetCount(), 0);
}

TEST_F(ListRefreshTest, AFailedQueryIsTriedAgainAtTheNextTick)
{
    AddInOtherCopy("milk", 1);
    query.results.reset();  // no room for results: the run fails
    list.RefreshNow();
    EXPECT_THAT(host.Take(), ElementsAre(Reloaded(kReloadingAsked)));
    Fill(query);
    query.seenStamp = kNoStamp;
    list.RefreshNow();
    EXPECT_EQ(list.GetCount(), 1);
}

TEST_F(ListRefreshTest, WhileTheDriveDoesNotAnswerTheListStaysAndCallsAreRefused)
{
    const test::Record milk = AddInOtherCopy("milk", 1);
    static StoppingDrive drive;  // a look may outlive the list for a moment
    const ScopedFileSystem scope(drive);
    TableFile remote(folder.File("notes.jot"), "");
    ASSERT_EQ(remote.RunQuery(query), 1);
    list.SetSource(&remote, &query);
    list.SetCount(1);
    const auto tick = [&](int answers) {
        list.Send(kWmTimer, RecordListView::kRefreshTimerId, 0);
        const Command told{5, answers, kListDriveAnswers};
        EXPECT_TRUE(ServeUntil([&] { return std::ranges::find(host.commands, told) != host.commands.end(); }, 5s));
        host.Take();
    };
    test::Record read = milk;
    EXPECT_TRUE(list.ReadItem(0, read));
    const int asked = drive.asked;
    EXPECT_TRUE(list.ReadItem(0, read));
    EXPECT_EQ(drive.asked, asked) << "what is on view is not read again";

    SuspendRefresh();  // as under an open editor
    drive.isStopped = true;
    tick(0);
    const int before = drive.asked;
    EXPECT_TRUE(list.ReadItem(0, read));
    EXPECT_EQ(remote.AddRecord(milk), 0);
    EXPECT_EQ(remote.GetLastError().kind, FileErrorKind::NoAnswer);
    list.RefreshNow();
    EXPECT_EQ(list.GetCount(), 1);
    EXPECT_EQ(drive.asked, before) << "nobody waits for the drive";

    drive.isStopped = false;
    tick(1);
    EXPECT_EQ(remote.AddRecord(milk), 1);
    list.SetSource(nullptr, nullptr);
}

TEST_F(ListRefreshTest, TheTimerComesAfterTheSecondsOfTheSettings)
{
    GetSuiteIniPath().IniWriteInt("Preference", "NetworkRefresh", 0);  // below the least: 1 second
    list.RestartRefreshTimer();
    AddInOtherCopy("milk", 1);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(ServeUntil([this] { return list.GetCount() == 1; }, 1800ms));
    EXPECT_GE(std::chrono::steady_clock::now() - start, 800ms);
}

}  // namespace
}  // namespace jotlet
