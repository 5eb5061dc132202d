#include "store/passwords.h"

#include "table_fixture.h"

namespace jotlet::test {
namespace {

class PasswordsTest : public TableTest {
protected:
    Role RoleOf(const std::string& password) { return TableFile(path, password).GetRole(); }
};

TEST_F(PasswordsTest, TheFirstEqualPasswordDecides)
{
    EXPECT_EQ(RoleOf(""), Role::Owner);  // none set: everybody
    EXPECT_EQ(RoleOf("x"), Role::None);
    struct Case {
        const char *owner, *assistant, *reader, *password;
        Role role;
    };
    for (const Case& c :
         {Case{"boss", "", "", "", Role::Assistant}, Case{"boss", "aide", "", "", Role::Reader},
          Case{"boss", "boss", "guest", "boss", Role::Owner}, Case{"boss", "aide", "aide", "aide", Role::Assistant},
          Case{"boss", "aide", "guest", "guest", Role::Reader}, Case{"boss", "aide", "guest", "Boss", Role::None},
          Case{"boss", "aide", "guest", "", Role::None}, Case{"boss", "aide", "guest", "bos", Role::None},
          Case{"1234567890123456789", "", "", "1234567890123456789", Role::Owner},
          Case{"1234567890123456789", "", "", "12345678901234567890", Role::None}}) {
        SCOPED_TRACE(testing::Message() << c.owner << "," << c.assistant << "," << c.reader << " with " << c.password);
        SetPasswords(c.owner, c.assistant, c.reader);
        EXPECT_EQ(RoleOf(c.password), c.role);
    }
}

TEST_F(PasswordsTest, OnlyTheOwnerSetsThemAndRunningCopiesFeelItAtOnce)
{
    SetPasswords("boss", "aide", "guest");
    const std::string before = ReadAll(path);
    for (std::string current : {"aide", "guest", "", "null"})
        EXPECT_EQ(SetNetworkPasswords(path, current, {"mine", "", ""}), kRefusedByRole);
    std::string current = "boss";
    EXPECT_EQ(SetNetworkPasswords(folder.File("missing.jot"), current, {"mine", "", ""}), 0);
    EXPECT_EQ(ReadAll(path), before);

    TableFile reader(path, "guest");
    TableFile owner(path, "boss");
    EXPECT_EQ(SetNetworkPasswords(path, current, {"chief", "helper", std::string(25, 'g')}), 1);
    EXPECT_EQ(current, "chief");
    EXPECT_EQ(reader.GetRole(), Role::None);
    EXPECT_EQ(owner.GetRole(), Role::None);
    owner.SetPassword(current);
    EXPECT_EQ(owner.GetRole(), Role::Owner);
    EXPECT_EQ(+Header().openCount, 3u);
    NetworkPasswords stored;
    ASSERT_EQ(ReadNetworkPasswords(path, stored), 1);
    EXPECT_EQ(stored.owner + "," + stored.assistant + "," + stored.reader, "chief,helper," + std::string(19, 'g'));
    const NetworkPasswords read = stored;  // by one Owner, while another changes the Assistant's
    ASSERT_EQ(SetNetworkPasswords(path, current, {"chief", "mate", read.reader}), 1);
    ASSERT_EQ(SetNetworkPasswords(path, current, {"chief", "helper", ""}, &read), 1);
    ASSERT_EQ(ReadNetworkPasswords(path, stored), 1);
    EXPECT_EQ(stored.owner + "," + stored.assistant + "," + stored.reader, "chief,mate,");
    EXPECT_EQ(SetNetworkPasswords(path, current, {}), 1);  // cleared: open to everybody
    EXPECT_EQ(RoleOf(""), Role::Owner);
}

}  // namespace
}  // namespace jotlet::test
