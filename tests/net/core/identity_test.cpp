#include "net/core/identity.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "notes/model/note_file.h"
#include "notes/model/note_record.h"
#include "platform/base/text.h"
#include "store/refresh_switch.h"
#include "store/table_file.h"
#include "tests/support/temp_folder.h"

namespace jotlet {
namespace {

IdentityBlock Identity(std::string_view name, std::string_view email)
{
    IdentityBlock identity{};
    StoreText(identity.name, name);
    StoreText(identity.email, email);
    return identity;
}

class IdentityTest : public testing::Test {
protected:
    IdentityTest()
    {
        ResumeRefresh();
        EXPECT_EQ(CreateNoteFile(path, WithExamples::No), 1);
        file = OpenTable(path, "", kNoteRecordSize).table;
    }
    void Add(std::string_view title, const IdentityBlock* owner = nullptr, bool confidential = false)
    {
        NoteRecord note;
        InitNoteRecord(*file, note);
        StoreText(note.title, title);
        note.confidential = confidential;
        if (owner != nullptr)
            note.owner = *owner;
        ASSERT_EQ(file->AddRecord(BytesOf(note), &last), 1);
    }
    // Title and owner's name of every note.
    std::vector<std::string> Owners()
    {
        std::vector<std::string> owners;
        const FieldRange whole{0, kNoteRecordSize};
        file->ForEachRecord(
            std::span(&whole, 1),
            [&](RecordAddress, std::span<const std::byte> bytes) {
                NoteRecord note;
                std::copy(bytes.begin(), bytes.end(), BytesOf(note).begin());
                owners.push_back(std::string(FieldText(note.title)) + '=' + std::string(FieldText(note.owner.name)));
                return true;
            },
            ScanScope::All);
        return owners;
    }

    test::TempFolder scratch;
    std::string path = scratch.File("a.jot");
    std::unique_ptr<TableFile> file;
    RecordAddress last = 0;
};

using Texts = std::vector<std::string>;

TEST_F(IdentityTest, ANewFileAndItsNotesBelongToThisInstallation)
{
    ASSERT_NE(file, nullptr);
    Add("mine");
    const IdentityBlock stranger = Identity("pinwell", "PinwellMail");
    Add("theirs", &stranger);
    NoteRecord note;
    EXPECT_EQ(IsFileOwnedLocally(*file), 1);
    ASSERT_EQ(file->ReadRecord(BytesOf(note), last), 1);
    EXPECT_EQ(IsEventOwner(*file, note), 0) << "names are compared exactly";
    InitNoteRecord(*file, note);
    EXPECT_EQ(IsEventOwner(*file, note), 1);
    IdentityBlock user;
    EXPECT_EQ(GetFileUser(*file, user), 1);
    EXPECT_EQ(FieldText(user.email), "PinwellMail");
}

TEST_F(IdentityTest, TheOwnersIdentityDoesNotCarryThePasswords)
{
    file->UpdateHeader([](TableHeader& header) {
        StoreText(header.fileOwner.ownerPassword, "secret");
        return true;
    });
    IdentityBlock owner;
    ASSERT_EQ(GetFileOwner(*file, owner), 1);
    EXPECT_EQ(FieldText(owner.name), "Pinwell");
    EXPECT_EQ(FieldText(owner.serverKey), "");
}

TEST_F(IdentityTest, ANewIdentityReachesTheHeaderAndTheRecordsOfTheOldOwnerAlone)
{
    const IdentityBlock stranger = Identity("Bob", "bob@x.example");
    Add("mine");
    Add("theirs", &stranger);
    Add("hidden", nullptr, true);
    TableHeader header;
    const auto stamp = file->GetChangeStamp();
    EXPECT_EQ(UpdateFileIdentity(*file, Identity("Pinwell", "PinwellMail"), "gate", ""), 0);
    EXPECT_EQ(file->GetChangeStamp(), stamp) << "server and port alone leave the records alone";
    ASSERT_EQ(file->ReadHeader(header), 1);
    EXPECT_EQ(FieldText(header.server), "gate");
    EXPECT_EQ(UpdateFileIdentity(*file, Identity("Ann", "ann@x.example"), "relay", "99"), 1);
    EXPECT_EQ(Owners(), (Texts{"mine=Ann", "theirs=Bob", "hidden=Ann"}));
    EXPECT_TRUE(IsRefreshEnabled());
    ASSERT_EQ(file->ReadHeader(header), 1);
    EXPECT_EQ(FieldText(header.fileOwner.name), "Ann");
    EXPECT_EQ(FieldText(header.fileUser.email), "ann@x.example");
    EXPECT_EQ(FieldText(header.server), "relay");
    EXPECT_EQ(FieldText(header.port), "99");
    EXPECT_EQ(std::uint32_t{header.openCount}, 1u);
    EXPECT_EQ(IsFileOwnedLocally(*file), 0);
}

TEST_F(IdentityTest, ANoteThatAnotherCopyEditsKeepsItsOwner)
{
    Add("free");
    Add("edited");
    const auto other = OpenTable(path, "", kNoteRecordSize).table;
    ASSERT_EQ(other->LockRecord(last), 1);
    EXPECT_EQ(UpdateFileIdentity(*file, Identity("Ann", "ann@x.example"), "", ""), 1);
    EXPECT_EQ(Owners(), (Texts{"free=Ann", "edited=Pinwell"}));
    other->UnlockRecord(last);
    ResumeRefresh();
}

TEST_F(IdentityTest, StampingTakesTheGatewayAndCanSpareForeignFiles)
{
    const IniFile ini(scratch.File("Pinwell.ini"));
    ini.IniWriteText("Gateway", "server", "gate.example");
    ini.IniWriteText("Gateway", "port", "80");
    TableHeader header;
    EXPECT_EQ(StampFileIdentity(*file, 1, ini), 0);
    ASSERT_EQ(file->ReadHeader(header), 1);
    EXPECT_EQ(FieldText(header.server), "gate.example");

    Add("mine");
    UpdateFileIdentity(*file, Identity("Ann", "ann@x.example"), "", "");
    EXPECT_EQ(StampFileIdentity(*file, 1, ini), 0);
    EXPECT_EQ(Owners(), (Texts{"mine=Ann"}));
    EXPECT_EQ(StampFileIdentity(*file, 0, ini), 1);
    EXPECT_EQ(Owners(), (Texts{"mine=Pinwell"}));
    EXPECT_EQ(IsFileOwnedLocally(*file), 1);
}

TEST_F(IdentityTest, AClosedFileHasNoOwner)
{
    file->Close();
    NoteRecord note{};
    IdentityBlock owner = Identity("Ann", "ann@x.example");
    EXPECT_EQ(GetFileOwner(*file, owner), 0);
    EXPECT_EQ(FieldText(owner.name), "");
    EXPECT_EQ(IsEventOwner(*file, note), 0) << "an empty owner is nobody's";
    EXPECT_EQ(IsFileOwnedLocally(*file), 0);
    EXPECT_EQ(UpdateFileIdentity(*file, owner, "a", "b"), 0);
}

}  // namespace
}  // namespace jotlet
