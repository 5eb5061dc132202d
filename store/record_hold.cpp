#include "store/record_hold.h"

#include <cstring>
#include <vector>

namespace jotlet {
namespace {

// Of what an operation on the file gave.
SaveResult ResultOf(const TableFile& file, int result)
{
    if (result == 1)
        return {};
    if (result == kRefusedByRole)
        return {SaveState::Refused, {}};
    if (file.WasReplaced())
        return {SaveState::Replaced, {}};
    const FileError& error = file.GetLastError();
    return {SaveState::Failed, error ? error : FileError{FileErrorKind::Io, "write", file.Path(), 0}};
}

RecordPrefix PrefixOf(std::span<const std::byte> record)
{
    RecordPrefix prefix;
    std::memcpy(&prefix, record.data(), sizeof prefix);
    return prefix;
}

}  // namespace

RecordHold::RecordHold(TableFile& file, RecordAddress address) : file(file), address(address)
{
    // Before the lock, which turns the switch off by itself.
    pause.emplace();
    if (file.LockRecord(address) != 1)
        pause.reset();
}

SaveResult RecordHold::WhyNot() const
{
    return file.WasReplaced() || file.GetLastError() ? ResultOf(file, 0) : SaveResult{};
}

bool RecordHold::GiveBack()
{
    if (!pause)
        return true;
    const bool cleared = file.UnlockRecord(address) == 1;
    pause.reset();
    return cleared || !file.GetLastError();
}

SaveResult RecordHold::Save(std::span<const std::byte> record)
{
    std::vector<std::byte> before = file.AllocRecordBuffer();
    const bool known = Read(before);
    SaveResult result = ResultOf(file, file.WriteRecord(record, address));
    if (!result)
        return result;
    result = ResultOf(file, file.Flush());
    if (!result && known)
        Write(before);
    return result;
}

SaveResult RecordHold::Remove()
{
    std::vector<std::byte> before = file.AllocRecordBuffer();
    const bool known = Read(before);
    SaveResult result = ResultOf(file, file.DeleteRecord(address));
    if (!result)
        return result;
    result = ResultOf(file, file.Flush());
    if (result)
        return result;
    // Its slot may be somebody else's by now.
    if (known)
        before[offsetof(RecordPrefix, locked)] = std::byte{0};
    if (!known || file.AddRecord(before) != 1)
        result.state = SaveState::Unconfirmed;
    return result;
}

SaveResult AddSaved(TableFile& file, std::span<const std::byte> record)
{
    RecordAddress address = 0;
    SaveResult result = ResultOf(file, file.AddRecord(record, &address));
    if (!result)
        return result;
    result = ResultOf(file, file.Flush());
    if (result)
        return result;
    std::vector<std::byte> stored = file.AllocRecordBuffer();
    RecordHold hold(file, address);
    if (!hold || !hold.Read(stored))
        file.TakeOutLater(record, address);
    else if (PrefixOf(stored).uniqueId == PrefixOf(record).uniqueId && !hold.Delete())
        file.TakeOutLater(stored, address);
    return result;
}

}  // namespace jotlet
