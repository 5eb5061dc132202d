#include "notes/model/start_target.h"

namespace jotlet {
namespace {

TEST(StartTarget, WhatHasAGlyphStaysAndWhatHasNoneIsNamed)
{
    for (const auto& [target, shown] :
         {std::pair{"https://pinwell.example/a?b=1&c=<2>", "https://pinwell.example/a?b=1&c=<2>"},
          {"/home/anna/Über uns/日本語 🎉.pdf", "/home/anna/Über uns/日本語 🎉.pdf"},
          {"fdp\xE2\x80\xAE"
           "exe.sh",
           "fdp<U+202E>exe.sh"},
          {"list.txt\r\n\t\x7F", "list.txt<U+000D><U+000A><U+0009><U+007F>"},
          {"a\xE2\x80\x8B"
           "b\xC2\xAD"
           "c\xEF\xBB\xBF",
           "a<U+200B>b<U+00AD>c<U+FEFF>"},
          {"x\xF3\xA0\x81\x81y", "x<U+E0041>y"},
          {"caf\xE9", "café"},
          {"", ""}})
        EXPECT_EQ(WithHiddenCharactersShown(target), shown);
}

}  // namespace
}  // namespace jotlet
