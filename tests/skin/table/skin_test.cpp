#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "platform/base/paths.h"
#include "skin/table/skin_file.h"
#include "skin/table/skin_list.h"
#include "tests/support/temp_folder.h"

namespace jotlet {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

class SkinTest : public testing::Test {
protected:
    SkinTest()
    {
        test::UsePortableProgram(scratch.Path());
        fs::create_directories(scratch.File("Styles/Metal"));
    }
    ~SkinTest() override { SetProgramPath({}); }

    void Skin(const std::string& file, std::string_view keys) const
    {
        test::WriteAll(scratch.File("Styles/" + file), "[Preference]\n" + std::string(keys));
    }
    std::string Picture(const std::string& name) const
    {
        const std::string path = scratch.File("Styles/" + name);
        test::WriteAll(path, "BM");
        return path;
    }
    static std::vector<std::string> Names()
    {
        std::vector<std::string> names;
        for (const SkinEntry& skin : ListSkins())
            names.push_back(skin.skinName + '=' + skin.skinFile);
        return names;
    }

    test::TempFolder scratch;
};

TEST(SkinColour, HoldsThreeNumbersOfWhichTheLowBitsCount)
{
    struct Case {
        std::string_view text;
        SkinColour colour;
    };
    for (const Case& c :
         {Case{"255,0,128", 0x8000FF}, Case{"300,0,0", 0x2C}, Case{"0,0,0", 0}, Case{" 1, 2,\t3 rest", 0x030201},
          Case{"-1,+2,3", 0x0302FF}, Case{"99999999999999999999999,0,1", 0x0100FF}, Case{"", std::nullopt},
          Case{"1,2", std::nullopt}, Case{"1,2,", std::nullopt}, Case{"1 ,2,3", std::nullopt},
          Case{"#102030", std::nullopt}, Case{"1;2;3", std::nullopt}, Case{"1-2-3", std::nullopt},
          Case{"red,green,blue", std::nullopt}, Case{"- 1,2,3", std::nullopt}}) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(ParseSkinColour(c.text), c.colour);
    }
}

TEST_F(SkinTest, TheListIsOrderedByNameAndShowsNamedIniFilesAlone)
{
    Skin("1_Metallic.ini", "name=Metallic\n");
    Skin("2.INI", "NAME= amber \n");
    Skin("3_nameless.ini", "folder=Metal\n");
    Skin("4.txt", "name=No ini\n");
    fs::create_directory(scratch.File("Styles/5.ini"));
    ASSERT_EQ(mkfifo(scratch.File("Styles/6.ini").c_str(), 0600), 0);
    test::WriteAll(scratch.File("Styles/7.ini"), "[Other]\nname=Wrong section\n");
    EXPECT_THAT(Names(), ElementsAre("amber=2.INI", "Metallic=1_Metallic.ini"));
    for (int i = 0; i < 505; ++i)
        Skin(std::to_string(1000 + i) + ".ini", "name=" + std::string(300, 'n') + "\n");
    const auto skins = ListSkins();
    ASSERT_EQ(skins.size(), kMaxSkins);
    EXPECT_EQ(skins[10].skinName.size(), 254u);
    fs::remove_all(scratch.File("Styles"));
    EXPECT_THAT(Names(), ElementsAre());
}

TEST_F(SkinTest, TheChosenSkinIsTheDefaultUntilOneIsChosen)
{
    Skin("1_Metallic.ini", "name=Metallic\n");
    EXPECT_EQ(GetCurrentSkinFile(), "1_Metallic.ini");
    EXPECT_EQ(SetCurrentSkinFile("1_metallic.INI"), 1);
    EXPECT_EQ(GetCurrentSkinFile(), "1_metallic.INI");
    EXPECT_EQ(FindSkin(ListSkins(), GetCurrentSkinFile()), 0);
    EXPECT_EQ(FindSkinPath(GetCurrentSkinFile()), scratch.File("Styles/1_Metallic.ini"));
    EXPECT_EQ(SetCurrentSkinFile("gone.ini"), 1);
    EXPECT_EQ(FindSkin(ListSkins(), GetCurrentSkinFile()), -1);
    EXPECT_EQ(SetCurrentSkinFile(""), 1);
    EXPECT_EQ(GetCurrentSkinFile(), "1_Metallic.ini");
}

TEST_F(SkinTest, PicturesAndColoursAreReadFromTheSkinsFolderBesideItOrDeeperDown)
{
    Skin("a.ini",
         "folder=metal\nbmpTitle=TITLE.bmp\nbmpTitle_left=missing.bmp\nbmpButtonClose_1=c1.bmp\n"
         "bmpButtonClose_3=c3.bmp\ncolorBack=1,2,3\ncolorFrame=nonsense\n");
    const std::string title = Picture("Metal/title.bmp");
    const std::string close1 = Picture("Metal/c1.bmp");
    const std::string close3 = Picture("Metal/c3.bmp");
    const SkinFile skin = ReadSkinFile("a.ini");
    EXPECT_EQ(skin.bmpTitle, title);
    EXPECT_EQ(skin.bmpTitleLeft + skin.bmpTitleRight, "");
    EXPECT_THAT(skin.bmpClose, ElementsAre(close1, "", close3));
    EXPECT_EQ(skin.colorBack, 0x030201u);
    EXPECT_EQ(skin.colorFrame, std::nullopt);
    EXPECT_EQ(skin.colorTitle, std::nullopt);
    Skin("flat.ini", "bmpTitle=title.bmp\n");
    Skin("deep.ini", "folder=Metal\\Sub\nbmpTitle=.\\title.bmp\n");
    fs::create_directories(scratch.File("Styles/Metal/Sub"));
    EXPECT_EQ(ReadSkinFile("flat.ini").bmpTitle, Picture("title.bmp"));
    EXPECT_EQ(ReadSkinFile("deep.ini").bmpTitle, Picture("Metal/Sub/title.bmp"));
}

TEST_F(SkinTest, NothingOutsideTheStylesFolderIsReached)
{
    test::WriteAll(scratch.File("secret.bmp"), "BM");
    test::WriteAll(scratch.File("secret.ini"), "[Preference]\ncolorBack=1,2,3\n");
    Picture("Metal/title.bmp");
    for (const auto& [folder, file] : std::vector<std::pair<std::string, std::string>>{
             {"..", "secret.bmp"},
             {"Metal", "../../secret.bmp"},
             {"Metal/../..", "secret.bmp"},
             {"Metal", "..\\..\\secret.bmp"},
             {scratch.Path(), "secret.bmp"},
             {"", scratch.File("secret.bmp")},
             {"\\", "secret.bmp"},
             {"Metal", "."},
             {"Metal", ""},
             {std::string(259, 'x'), "title.bmp"},
         }) {
        SCOPED_TRACE(folder + " | " + file);
        Skin("bad.ini", "folder=" + folder + "\nbmpTitle=" + file + "\n");
        EXPECT_EQ(ReadSkinFile("bad.ini").bmpTitle, "");
    }
    for (const std::string& name : {std::string("../secret.ini"), scratch.File("secret.ini"), std::string(""),
                                    std::string(".."), std::string("..\\secret.ini"), std::string("a\0b", 3)}) {
        EXPECT_EQ(FindSkinPath(name), "") << name;
        EXPECT_EQ(ReadSkinFile(name).colorBack, std::nullopt) << name;
    }
}

TEST_F(SkinTest, ASkinFileOfHugeLinesAndStrayBytesSetsWhatCanBeRead)
{
    Skin("huge.ini", "name=" + std::string(1 << 20, 'n') + "\nfolder=" + std::string(1 << 20, '/') +
                         "\ncolorBack=" + std::string(1 << 20, '9') + ",1,2\nbmpTitle=" + std::string("t\0.bmp", 6) +
                         "\ncolorFrame=7,8,9\n");
    const SkinFile skin = ReadSkinFile("huge.ini");
    EXPECT_EQ(skin.bmpTitle, "");
    EXPECT_EQ(skin.colorBack, std::nullopt) << "the number fills what is read of a value";
    EXPECT_EQ(skin.colorFrame, 0x090807u);
}

}  // namespace
}  // namespace jotlet
