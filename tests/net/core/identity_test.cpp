#include "net/core/identity.h"

#include <gtest/gtest.h>

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
    void Add(std::string_view title, const IdentityBlock* owner = nullptr)
    {
        NoteRecord note;
        InitNoteRecord(*file, note);
        StoreText(note.title, title);
        if (owner != nullptr)
            note.owner = *owner;
        ASSERT_EQ(file->AddRecord(BytesOf(note), &last), 1);
    }
    // Title and owner's name of every note.
    std::string Owners()
    {
        std::string owners;
        const FieldRange whole{0, kNoteRecordSize};
        file->ForEachRecord(std::span(&whole, 1), [&](RecordAddress, std::span<const std::byte> bytes) {
            NoteRecord note;
            std::copy(bytes.begin(), bytes.end(), BytesOf(note).begin());
            owners += std::string(FieldText(note.title)) + '=' + std::string(FieldText(note.owner.name)) + ' ';
            return true;
        });
        return owners;
    }
    TableHeader Header()
    {
        TableHeader header;
        EXPECT_EQ(file->ReadHeader(header), 1);
        return header;
    }

    test::TempFolder scratch;
    std::string path = scratch.File("a.jot");
    std::unique_ptr<TableFile> file;
    RecordAddress last = 0;
    const IdentityBlock ann = Identity("Ann", "ann@x.example");
};

TEST_F(IdentityTest, NameAndEmailTellWhoseAFileAndANoteAreAndGiveNoPasswordAway)
{
    file->UpdateHeader([](TableHeader& header) {
        StoreText(header.fileOwner.ownerPassword, "secret");
        return true;
    });
    IdentityBlock owner;
    IdentityBlock user;
    EXPECT_EQ(GetFileOwner(*file, owner), 1);
    EXPECT_EQ(GetFileUser(*file, user), 1);
    EXPECT_EQ(FieldText(user.email), "PinwellMail");
    EXPECT_EQ(FieldText(owner.serverKey), "");
    EXPECT_EQ(IsFileOwnedLocally(*file), 1);
    NoteRecord note{};
    for (const auto& [name, email, mine] :
         {std::tuple("Pinwell", "PinwellMail", 1), {"pinwell", "PinwellMail", 0}, {"Pinwell", "other", 0}}) {
        note.owner = Identity(name, email);
        EXPECT_EQ(IsEventOwner(*file, note), mine) << name << email;
    }
    file->Close();
    owner = ann;
    EXPECT_EQ(GetFileOwner(*file, owner), 0);
    EXPECT_EQ(FieldText(owner.name), "");
    EXPECT_EQ(IsEventOwner(*file, NoteRecord{}), 0) << "an empty owner is nobody's";
    EXPECT_EQ(IsFileOwnedLocally(*file), 0);
    EXPECT_EQ(UpdateFileIdentity(*file, owner, "a", "b"), 0);
}

TEST_F(IdentityTest, ANewIdentityReachesTheHeaderAndTheNotesOfTheOldOwnerThatNobodyEdits)
{
    const IdentityBlock stranger = Identity("Bob", "bob@x.example");
    Add("mine");
    Add("theirs", &stranger);
    Add("edited");
    const auto stamp = file->GetChangeStamp();
    EXPECT_EQ(UpdateFileIdentity(*file, Identity("Pinwell", "PinwellMail"), "gate", ""), 0);
    EXPECT_EQ(file->GetChangeStamp(), stamp) << "server and port alone leave the records alone";
    EXPECT_EQ(FieldText(Header().server), "gate");
    {
        const auto other = OpenTable(path, "", kNoteRecordSize).table;
        ASSERT_EQ(other->LockRecord(last), 1);
        ResumeRefresh();
        EXPECT_EQ(UpdateFileIdentity(*file, ann, "relay", "99"), 1);
        other->UnlockRecord(last);
        ResumeRefresh();
    }
    EXPECT_EQ(Owners(), "mine=Ann theirs=Bob edited=Pinwell ");
    const TableHeader header = Header();
    EXPECT_EQ(FieldText(header.fileOwner.name), "Ann");
    EXPECT_EQ(FieldText(header.fileUser.email), "ann@x.example");
    EXPECT_EQ(FieldText(header.server), "relay");
    EXPECT_EQ(FieldText(header.port), "99");
    EXPECT_EQ(IsFileOwnedLocally(*file), 0);
}

TEST_F(IdentityTest, StampingTakesTheGatewayAndCanSpareForeignFiles)
{
    const IniFile ini(scratch.File("Pinwell.ini"));
    ini.IniWriteText("Gateway", "server", "gate.example");
    EXPECT_EQ(StampFileIdentity(*file, 1, ini), 0);
    EXPECT_EQ(FieldText(Header().server), "gate.example");
    Add("mine");
    UpdateFileIdentity(*file, ann, "", "");
    EXPECT_EQ(StampFileIdentity(*file, 1, ini), 0);
    EXPECT_EQ(Owners(), "mine=Ann ");
    EXPECT_EQ(StampFileIdentity(*file, 0, ini), 1);
    EXPECT_EQ(Owners(), "mine=Pinwell ");
}

}  // namespace
}  // namespace jotlet
