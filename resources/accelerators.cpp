#include "resources/accelerators.h"

#include "resources/command_ids.h"

#include <array>

namespace jotlet {
namespace {

constexpr int kInsert = 45;
constexpr int kDelete = 46;
constexpr int kReturn = 13;
constexpr int kF1 = 112;

constexpr std::array<Accelerator, 17> kMain = {{
    {kInsert, false, false, kCommandKeyNew},
    {'F', true, false, kCommandKeyFind},
    {'N', true, false, kCommandKeyNewFile},
    {'O', true, false, kCommandKeyOpenFile},
    {'P', true, false, kCommandKeyPrintReport},
    {kF1, false, false, kCommandKeyHelp},
    {'F', false, true, kCommandKeyFileMenu},
    {'H', false, true, kCommandKeyHelpMenu},
    {'1', false, true, kCommandKeyShowFirstPane},
    {'2', false, true, kCommandKeyShowSecondPane},
    {'X', true, false, kCommandKeyCut},
    {'C', true, false, kCommandKeyCopy},
    {'V', true, false, kCommandKeyPaste},
    {'Z', true, false, kCommandKeyUndoDelete},
    {'A', true, false, kCommandKeyOpenAttachment},
    {kReturn, false, false, kCommandKeyReturn},
    {kDelete, false, false, kCommandKeyDelete},
}};

}  // namespace

std::span<const Accelerator> MainAccelerators()
{
    return kMain;
}

}  // namespace jotlet
