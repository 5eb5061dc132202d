#include "store/table_memory.h"

#include <algorithm>
#include <cstring>

#include "platform/base/text.h"
#include "store/table_schema.h"

namespace jotlet {
namespace {

constexpr std::uint32_t kLongestShortField = 256;
constexpr std::size_t kMostBytes = 64 << 20;
// A board of the largest screen shows fewer.
constexpr std::size_t kMostWhole = 400;

std::uint32_t EndOf(const FieldRange& range)
{
    return range.offset + range.size;
}

bool Covers(const FieldRange& outer, const FieldRange& inner)
{
    return outer.offset <= inner.offset && EndOf(inner) <= EndOf(outer);
}

// Puts the range among the others, and makes one of those that overlap or touch.
void Merge(std::vector<FieldRange>& ranges, FieldRange range)
{
    std::erase_if(ranges, [&](const FieldRange& other) {
        if (EndOf(other) < range.offset || EndOf(range) < other.offset)
            return false;
        const std::uint32_t end = std::max(EndOf(other), EndOf(range));
        range.offset = std::min(other.offset, range.offset);
        range.size = end - range.offset;
        return true;
    });
    const auto at = std::ranges::lower_bound(ranges, range.offset, {}, &FieldRange::offset);
    ranges.insert(at, range);
}

}  // namespace

bool TableMemory::Want(std::span<const AskedField> fields)
{
    Merge(wanted, {0, sizeof(RecordPrefix)});
    for (const AskedField& field : fields) {
        if (field.range.size <= kLongestShortField) {
            Merge(wanted, field.range);
            continue;
        }
        if (!field.isText)
            return false;
        const auto isKnown = [&](const FieldRange& text) { return Covers(text, field.range); };
        if (std::ranges::none_of(wantedTexts, isKnown))
            wantedTexts.push_back(field.range);
    }
    return true;
}

bool TableMemory::Keeps(std::span<const AskedField> fields) const
{
    return isFilled && std::ranges::all_of(fields, [this](const AskedField& field) {
               const auto inPlace = [&](const Place& place) { return Covers(place.range, field.range); };
               // A part of a text is not the text: its end may lie before the part.
               const auto isText = [&](const FieldRange& text) {
                   return field.isText && text.offset == field.range.offset && Covers(text, field.range);
               };
               return std::ranges::any_of(kept, inPlace) || std::ranges::any_of(keptTexts, isText);
           });
}

bool TableMemory::Begin(std::int64_t slots)
{
    isFilled = false;
    kept.clear();
    stride = 0;
    for (const FieldRange& range : wanted) {
        kept.push_back({range, stride});
        stride += range.size;
    }
    keptTexts = wantedTexts;
    textBytes = 0;
    texts.clear();
    bytes.clear();
    if (static_cast<std::size_t>(slots) > kMostBytes / std::max<std::size_t>(stride, 1)) {
        Forget();
        return false;
    }
    Resize(slots);
    return true;
}

void TableMemory::Resize(std::int64_t slots)
{
    if (slots < slotCount)
        whole.clear();
    slotCount = slots;
    bytes.resize(static_cast<std::size_t>(slots) * stride);
    texts.resize(static_cast<std::size_t>(slots) * keptTexts.size());
}

bool TableMemory::Put(std::int64_t slot, RecordAddress address, std::span<const std::byte> record)
{
    if (slot >= slotCount)
        return false;
    for (const Place& place : kept)
        std::memcpy(bytes.data() + static_cast<std::size_t>(slot) * stride + place.at,
                    record.data() + place.range.offset, place.range.size);
    for (std::size_t i = 0; i < keptTexts.size(); ++i) {
        const auto field = record.subspan(keptTexts[i].offset, keptTexts[i].size);
        std::string& text = texts[static_cast<std::size_t>(slot) * keptTexts.size() + i];
        textBytes -= text.size();
        text = FieldText({reinterpret_cast<const char*>(field.data()), field.size()});
        textBytes += text.size();
    }
    if (const auto shown = whole.find(address); shown != whole.end())
        shown->second.assign(record.begin(), record.end());
    if (bytes.size() + textBytes <= kMostBytes)
        return true;
    Forget();
    return false;
}

void TableMemory::StandFor(std::uint64_t newStamp)
{
    stamp = newStamp;
    isFilled = true;
    touched.clear();
}

void TableMemory::Forget()
{
    isFilled = false;
    slotCount = 0;
    bytes = {};
    texts = {};
    textBytes = 0;
    whole.clear();
    touched.clear();
}

void TableMemory::CopyTo(std::int64_t slot, std::span<std::byte> record) const
{
    for (std::size_t i = 0; i < keptTexts.size(); ++i) {
        const std::string& text = texts[static_cast<std::size_t>(slot) * keptTexts.size() + i];
        std::byte* field = record.data() + keptTexts[i].offset;
        std::memcpy(field, text.data(), text.size());
        std::memset(field + text.size(), 0, keptTexts[i].size - text.size());
    }
    const std::byte* known = bytes.data() + static_cast<std::size_t>(slot) * stride;
    for (const Place& place : kept)
        std::memcpy(record.data() + place.range.offset, known + place.at, place.range.size);
}

const std::vector<std::byte>* TableMemory::Whole(RecordAddress address) const
{
    const auto found = whole.find(address);
    return found == whole.end() ? nullptr : &found->second;
}

void TableMemory::KeepWhole(RecordAddress address, std::span<const std::byte> record)
{
    if (!isFilled)
        return;
    if (whole.size() >= kMostWhole)
        whole.clear();
    whole[address].assign(record.begin(), record.end());
}

void TableMemory::Touch(RecordAddress address)
{
    whole.erase(address);
    if (isFilled)
        touched.insert(address);
}

bool TableMemory::IsTouched(RecordAddress address) const
{
    return touched.contains(address);
}

}  // namespace jotlet
