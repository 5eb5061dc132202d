#include "net/core/send_record.h"

#include <algorithm>
#include <iterator>

#include "platform/base/text.h"

namespace jotlet {

SendRecord MakeInvitation(std::string_view name, std::string_view email)
{
    SendRecord record{};
    record.recordSize = kSendRecordSize;
    record.active = 1;
    record.sendStatus = kSendWaiting;
    StoreText(record.participantName, name);
    StoreText(record.participantEmail, email);
    return record;
}

int StatusWord(int sendStatus, std::string& word)
{
    static constexpr std::string_view kWords[] = {"wait for send", "no reply yet", "accepted",       "new data",
                                                  "rejected",      "accepted",     "accept message", "canceld"};
    const bool known = sendStatus >= 1 && sendStatus <= static_cast<int>(std::size(kWords));
    word = known ? kWords[sendStatus - 1] : std::string_view("?");
    return known ? 1 : 0;
}

bool VanishesWhenRemoved(std::uint8_t sendStatus, std::uint8_t eventStatus)
{
    return sendStatus == kSendRejected || (sendStatus == kSendWaiting && eventStatus == kStatusNotAnnounced);
}

}  // namespace jotlet
