// What a table on a drive keeps of its records, so that a list asks the server only for those that were changed: the
// fields that queries and sorts have asked for, of every slot, as they were at one change stamp; and the whole slots
// that a list has shown last. Of a file on this machine nothing is kept. For the store's own use.
//
// A long text is kept up to its end only: what lies behind it in the field is delivered as zeroes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "store/field_range.h"
#include "store/record_address.h"

namespace jotlet {

// What a scan reads of a record. Of a text only the bytes up to a terminator matter.
struct AskedField {
    FieldRange range;
    bool isText = false;
};

class TableMemory {
public:
    // Adds fields to those that the next Begin makes room for. False when one of them can't be kept.
    bool Want(std::span<const AskedField> fields);
    // Whether every slot is known with these fields.
    bool Keeps(std::span<const AskedField> fields) const;

    bool IsFilled() const { return isFilled; }
    std::uint64_t Stamp() const { return stamp; }
    std::int64_t SlotCount() const { return slotCount; }

    // Makes room for the slots, of which nothing is known then. False, and nothing kept, when that is too much.
    bool Begin(std::int64_t slots);
    // What the slot holds. False, and nothing kept, when the texts become too much, or the memory was told to forget
    // since Begin. A slot of which the whole is kept, too, follows.
    bool Put(std::int64_t slot, RecordAddress address, std::span<const std::byte> record);
    // Slots behind the last one are gone, or are to be put.
    void Resize(std::int64_t slots);
    // Everything is put, and is at least as new as this stamp.
    void StandFor(std::uint64_t newStamp);
    void Forget();

    // Writes the fields of the slot to their places in `record`; what is not kept stays as it is.
    void CopyTo(std::int64_t slot, std::span<std::byte> record) const;

    // The whole slot, or nullptr.
    const std::vector<std::byte>* Whole(RecordAddress address) const;
    // Only of a filled memory, else nothing is kept.
    void KeepWhole(RecordAddress address, std::span<const std::byte> record);
    // This copy has changed the slot itself, and the memory may not show that yet.
    void Touch(RecordAddress address);
    bool IsTouched(RecordAddress address) const;

private:
    struct Place {
        FieldRange range;
        std::size_t at;  // among the slot's bytes
    };

    std::vector<FieldRange> wanted;       // short fields, in order, none touching another
    std::vector<FieldRange> wantedTexts;  // long ones
    std::vector<Place> kept;
    std::vector<FieldRange> keptTexts;
    std::size_t stride = 0;
    std::vector<std::byte> bytes;
    std::vector<std::string> texts;  // keptTexts.size() for each slot
    std::size_t textBytes = 0;
    std::int64_t slotCount = 0;
    std::uint64_t stamp = 0;
    bool isFilled = false;
    std::map<RecordAddress, std::vector<std::byte>> whole;
    std::set<RecordAddress> touched;
};

}  // namespace jotlet
