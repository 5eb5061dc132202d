#include "resources/accelerators.h"

#include <array>

namespace jotlet {
namespace {

constexpr int kInsert = 45;
constexpr int kDelete = 46;
constexpr int kReturn = 13;
constexpr int kF1 = 112;

constexpr std::array<Accelerator, 17> kMain = {{
    {kInsert, false, false, 100},
    {'F', true, false, 101},
    {'N', true, false, 102},
    {'O', true, false, 103},
    {'P', true, false, 104},
    {kF1, false, false, 105},
    {'F', false, true, 106},
    {'H', false, true, 107},
    {'1', false, true, 108},
    {'2', false, true, 109},
    {'X', true, false, 110},
    {'C', true, false, 111},
    {'V', true, false, 112},
    {'Z', true, false, 113},
    {'A', true, false, 114},
    {kReturn, false, false, 115},
    {kDelete, false, false, 116},
}};

}  // namespace

std::span<const Accelerator> MainAccelerators()
{
    return kMain;
}

}  // namespace jotlet
