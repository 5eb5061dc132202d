#include "net/core/outbox.h"

#include <gmock/gmock.h>

#include <cstring>
#include <random>
#include <set>

#include "tests/net/core/outbox_fixture.h"

namespace jotlet {
namespace {

namespace fs = std::filesystem;
using test::kEvent;
using test::kOtherEvent;
using test::OutboxTest;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(OutboxTest, ASavedParticipantLiesInTheFileByteByByte)
{
    Outbox outbox(notePath, kEvent);
    EXPECT_TRUE(fs::exists(path)) << "the first use makes the file";
    outbox.Add(MakeInvitation("Ann", "ann@x.example"));
    EXPECT_EQ(outbox.Save(), 1);
    const std::string bytes = test::ReadAll(path);
    ASSERT_EQ(bytes.size(), 2625u + 908u);
    const std::string record = bytes.substr(2625);
    std::uint32_t size = 0;
    std::uint64_t event = 0;
    std::memcpy(&size, record.data(), 4);
    std::memcpy(&event, record.data() + 550, 8);
    EXPECT_EQ(size, 908u);
    EXPECT_EQ(record[4], 1);
    EXPECT_EQ(record[549], 1);
    EXPECT_EQ(event, kEvent);
    EXPECT_EQ(record.substr(558, 50), "Ann" + std::string(47, '\0'));
    EXPECT_EQ(record.substr(608, 300), "ann@x.example" + std::string(287, '\0'));
    EXPECT_EQ(record.substr(78 + 1, 7), "Pinwell") << "the owner of the file";
    TableHeader header;
    ASSERT_EQ(OpenTable(path, "", kSendRecordSize).table->ReadHeader(header), 1);
    EXPECT_EQ(std::uint32_t{header.openCount}, 1u) << "the outbox does not keep it open";
}

// Random invitations, removals, saves and new beginnings against a plain list.
TEST_F(OutboxTest, SlotsAndFileAreWhatAPlainListSays)
{
    struct Row {
        std::string name, email;
        int status;
        bool alive;
        bool operator==(const Row&) const = default;
    };
    Put("Eve", 1, kOtherEvent);
    const SendRecord stranger = file.Records(kOtherEvent).at(0);
    auto outbox = std::make_unique<Outbox>(notePath, kEvent);
    std::vector<Row> model;
    const auto slots = [&] {
        std::vector<Row> rows;
        for (const SendRecord& slot : outbox->Slots())
            rows.push_back({std::string(FieldText(slot.participantName)), std::string(FieldText(slot.participantEmail)),
                            slot.sendStatus, slot.active == 1});
        return rows;
    };
    std::set<std::uint64_t> ids;
    std::mt19937 random(1);
    for (int step = 0; step < 600; ++step) {
        SCOPED_TRACE(step);
        const std::string name = (random() % 2 ? "p" : "P") + std::to_string(random() % 15);
        const std::string email = name + "@" + std::to_string(random() % 2);
        const unsigned choice = random() % 20;
        if (choice < 12) {
            const auto dead = std::ranges::find(model, false, &Row::alive);
            const bool fits = model.size() < 30;
            EXPECT_EQ(outbox->Add(MakeInvitation(name, email)), fits ? 1 : 0);
            if (fits)
                (dead == model.end() ? model.emplace_back() : *dead) = {name, email, kSendWaiting, true};
        } else if (choice < 18) {
            const bool byName = choice % 2 == 0;
            const bool drop = random() % 2 == 0;
            const auto found = std::ranges::find_if(
                model, [&](const Row& row) { return row.alive && (byName ? row.name == name : row.email == email); });
            EXPECT_EQ(outbox->Remove(MakeInvitation(name, email), byName ? RemoveKey::Name : RemoveKey::Email,
                                     drop ? RemoveAction::Drop : RemoveAction::Cancel),
                      found == model.end() ? 0 : 1);
            if (found != model.end())
                (drop ? found->alive = false : found->status = kSendCancelled);
        } else if (choice == 18) {
            EXPECT_EQ(outbox->Save(), 1);
            EXPECT_EQ(outbox->FailedWrites(), 0);
            std::erase_if(model, [](const Row& row) { return !row.alive; });
            std::vector<std::string> people;
            for (const Row& row : model)
                people.push_back(row.name + ':' + std::to_string(row.status));
            std::ranges::sort(people);
            ASSERT_EQ(People(), people);
            for (const SendRecord& record : file.Records(kEvent)) {
                EXPECT_TRUE(ids.insert(record.uniqueId).second) << "each save gives new ids";
                EXPECT_EQ(record.locked, 0);
            }
        } else if (random() % 3 == 0) {
            outbox->Save();
            std::erase_if(model, [](const Row& row) { return !row.alive; });
            outbox = std::make_unique<Outbox>(notePath, kEvent);
            const auto loaded = slots();
            EXPECT_TRUE(std::ranges::is_sorted(outbox->Slots(), [](const SendRecord& a, const SendRecord& b) {
                const auto name = [](const SendRecord& slot) { return std::as_bytes(std::span(slot.participantName)); };
                return CompareTitles(name(a).data(), name(b).data(), kParticipantNameSize) < 0;
            }));
            EXPECT_THAT(loaded, testing::UnorderedElementsAreArray(model));
            model = loaded;
        }
        ASSERT_EQ(slots(), model);
    }
    const auto others = file.Records(kOtherEvent);
    ASSERT_EQ(others.size(), 1u);
    EXPECT_EQ(std::memcmp(&stranger, others.data(), sizeof stranger), 0);
}

TEST_F(OutboxTest, WhereverTheDiskFailsNobodyWhoStaysInvitedIsLost)
{
    for (int call = 1;; ++call) {
        SCOPED_TRACE(call);
        fs::remove(path);
        for (const char* name : {"Ann", "Bob", "Guest"})
            Put(name, 2);
        Outbox outbox(notePath, kEvent);
        outbox.Remove(Person("Guest"), RemoveKey::Name, RemoveAction::Drop);
        outbox.Add(Person("Cleo"));
        test::FailingFileSystem disk;
        disk.failAt = call;
        disk.andAllBehind = true;
        {
            const ScopedFileSystem failing(disk);
            outbox.Save();
        }
        const auto people = People();
        EXPECT_THAT(people, testing::AllOf(Contains("Ann:2"), Contains("Bob:2")));
        EXPECT_TRUE(outbox.FailedWrites() > 0 || std::ranges::count(people, "Cleo:1") == 1);
        EXPECT_TRUE(call > 1 || outbox.FailedWrites() == 3);
        if (disk.failedCall.empty())
            break;
        EXPECT_LE(people.size(), 4u);
    }
    EXPECT_THAT(People(), ElementsAre("Ann:2", "Bob:2", "Cleo:1"));
}

TEST_F(OutboxTest, The31stRecordIsNeitherLoadedNorDeleted)
{
    for (int i = 0; i < 32; ++i)
        Put("p" + std::to_string(100 + i), 2);
    Outbox outbox(notePath, kEvent);
    EXPECT_EQ(outbox.Slots().size(), 30u);
    for (int i = 0; i < 30; ++i)
        outbox.Remove(Person("p" + std::to_string(100 + i)), RemoveKey::Email, RemoveAction::Drop);
    outbox.Save();
    EXPECT_THAT(People(), ElementsAre("p130:2", "p131:2"));
}

TEST_F(OutboxTest, ARecordHeldByAnotherCopyIsNotShownAndStaysWhateverIsSaved)
{
    Put("Ann", 2);
    Put("Bob", 2);
    {
        const auto other = HoldElsewhere("Ann");
        Outbox outbox(notePath, kEvent);
        ASSERT_EQ(outbox.Slots().size(), 1u);
        other->UnlockRecord(held);
        outbox.Save();  // Ann was never loaded: she is not to vanish
    }
    EXPECT_THAT(People(), ElementsAre("Ann:2", "Bob:2"));
    Outbox outbox(notePath, kEvent);
    {
        const auto other = HoldElsewhere("Bob");
        outbox.Remove(Person("Ann"), RemoveKey::Email, RemoveAction::Drop);
        outbox.Remove(Person("Bob"), RemoveKey::Email, RemoveAction::Drop);
        outbox.Save();
    }
    EXPECT_THAT(People(), ElementsAre("Bob:2"));
}

TEST_F(OutboxTest, TwoCopiesThatSaveOneEventLoseNobodyAndListNobodyTwice)
{
    Put("Ann", 2);
    Put("Ann", 3);
    Outbox first(notePath, kEvent);
    Outbox second(notePath, kEvent);
    first.Add(Person("Bob"));
    second.Add(Person("Cleo"));
    first.Save();
    second.Save();
    EXPECT_THAT(People(), ElementsAre("Ann:2", "Ann:3", "Bob:1", "Cleo:1")) << "two records of one person stay two";
}

TEST_F(OutboxTest, WhatIsDamagedIsCarriedAlongAndWhatIsNoOutboxIsLeftAlone)
{
    Put("Ann", 2);
    std::string bytes = test::ReadAll(path);
    bytes.replace(2625 + 558, 350, 350, '\xFF');  // name and e-mail without a terminator
    test::WriteAll(path, bytes + std::string(500, 'x'));
    Outbox damaged(notePath, kEvent);
    EXPECT_EQ(damaged.Remove(Person("Ann"), RemoveKey::Email, RemoveAction::Drop), 0);
    damaged.Add(Person("Bob"));
    damaged.Save();
    EXPECT_THAT(People(), ElementsAre("Bob:1", std::string(50, '\xFF') + ":2"));

    for (const std::string& content : {std::string("a picture"), std::string(), std::string(5000, '\xFF')}) {
        test::WriteAll(path, content);
        Outbox outbox(notePath, kEvent);
        EXPECT_FALSE(outbox.CanOpenFile());
        EXPECT_THAT(outbox.Slots(), IsEmpty());
        outbox.Add(Person("Ann"));
        EXPECT_EQ(outbox.Save(), 1);
        EXPECT_EQ(outbox.FailedWrites(), 1);
        bool reached = true;
        EXPECT_EQ(PurgeEvent(notePath, kEvent, &reached), 1);
        EXPECT_FALSE(reached);
        NoteRecord note = Note(kEventHasRecipients);
        EXPECT_EQ(NotifyEvent(notePath, note, kNotifyWithdrawal, &(reached = true)), 1);
        EXPECT_FALSE(reached);
        EXPECT_EQ(note.active, 1) << "nobody knows who was invited";
        EXPECT_EQ(test::ReadAll(path), content);
    }
}

}  // namespace
}  // namespace jotlet
