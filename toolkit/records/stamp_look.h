// One look after the other at a table on a drive that may take long to answer, each in a thread of its own, so that the
// window goes on meanwhile.
//
// Threads: the window's. A look that still waits for its drive at the end is left to itself and tells nobody any more.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace jotlet {

class TableFile;

class StampLook {
public:
    struct Answer {
        bool driveAnswers = false;
        bool asksTable = false;   // the path leads elsewhere, or the drive forgot this opening: only the table can tell
        std::uint64_t stamp = 0;  // the table's change stamp, when the drive answers and the table need not be asked
    };

    // Of an open table. `answered` is called from the message loop; it may end this object.
    StampLook(const TableFile& table, std::function<void(const Answer&)> answered);
    ~StampLook();
    StampLook(const StampLook&) = delete;
    StampLook& operator=(const StampLook&) = delete;

    bool IsUnderWay() const { return isUnderWay; }
    // False when no look could be begun, or one is under way.
    bool Start();

private:
    struct Shared;

    void OnAnswer();

    std::shared_ptr<Shared> shared;
    std::function<void(const Answer&)> answered;
    bool isUnderWay = false;
};

}  // namespace jotlet
