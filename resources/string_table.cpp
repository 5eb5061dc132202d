#include "resources/string_table.h"

#include <algorithm>
#include <iterator>

namespace jotlet {

namespace {

struct Entry {
    int id;
    std::string_view text;
};

// Ordered by id.
constexpr Entry kTexts[] = {
    {2010, "January"},   {2011, "February"}, {2012, "March"},  {2013, "April"},     {2014, "May"},
    {2015, "June"},      {2016, "July"},     {2017, "August"}, {2018, "September"}, {2019, "October"},
    {2020, "November"},  {2021, "December"}, {2022, "Sunday"}, {2023, "Monday"},    {2024, "Tuesday"},
    {2025, "Wednesday"}, {2026, "Thursday"}, {2027, "Friday"}, {2028, "Saturday"},  {2029, "Unknown"},
    {2030, "Su"},        {2031, "Mo"},       {2032, "Tu"},     {2033, "We"},        {2034, "Th"},
    {2035, "Fr"},        {2036, "Sa"},       {2037, "S"},      {2038, "M"},         {2039, "T"},
    {2040, "W"},         {2041, "T"},        {2042, "F"},      {2043, "S"},
};

constexpr bool Before(const Entry& a, const Entry& b)
{
    return a.id < b.id;
}
static_assert(std::is_sorted(std::begin(kTexts), std::end(kTexts), Before));

}  // namespace

std::string_view LoadStringResource(int id)
{
    const auto* found = std::lower_bound(std::begin(kTexts), std::end(kTexts), Entry{id, {}}, Before);
    return found != std::end(kTexts) && found->id == id ? found->text : std::string_view{};
}

}  // namespace jotlet
