#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "notes/model/record_header.h"

// One participant of one event, as the outbox file beside a note file holds it. The sending agent, another program,
// reads these records and moves their status on.

namespace jotlet {

// sendStatus. Stored in files and read by the sending agent: never renumber.
inline constexpr std::uint8_t kSendWaiting = 1;  // to be told of the event or of its change
inline constexpr std::uint8_t kSendNoReply = 2;  // 2 to 7 are the agent's
inline constexpr std::uint8_t kSendAccepted = 3;
inline constexpr std::uint8_t kSendNewData = 4;
inline constexpr std::uint8_t kSendRejected = 5;
inline constexpr std::uint8_t kSendAcceptedAgain = 6;
inline constexpr std::uint8_t kSendAcceptMessage = 7;
inline constexpr std::uint8_t kSendCancelled = 8;  // to be told that they are no longer invited

// eventStatus of a note
inline constexpr std::uint8_t kStatusNotAnnounced = 1;
inline constexpr std::uint8_t kStatusWithdrawal = 4;  // a withdrawal is to be announced
inline constexpr std::uint8_t kStatusChange = 5;      // a change is to be announced

// Stored in files: never reorder, never resize.
struct SendRecord : RecordHeader {
    std::uint8_t sendStatus;
    StoredValue<std::uint64_t> eventId;  // uniqueId of the note
    std::array<char, 50> participantName;
    std::array<char, 300> participantEmail;
};
static_assert(sizeof(SendRecord) == kSendRecordSize && alignof(SendRecord) == 1);

inline constexpr std::uint32_t kSendStatusOffset = 549;
inline constexpr std::uint32_t kEventIdOffset = 550;
inline constexpr std::uint32_t kParticipantNameOffset = 558;
inline constexpr std::uint32_t kParticipantNameSize = 50;
inline constexpr std::uint32_t kParticipantEmailOffset = 608;

// offsetof on a derived struct is up to the compiler; ours define it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
static_assert(offsetof(SendRecord, sendStatus) == kSendStatusOffset);
static_assert(offsetof(SendRecord, eventId) == kEventIdOffset);
static_assert(offsetof(SendRecord, participantName) == kParticipantNameOffset);
static_assert(offsetof(SendRecord, participantEmail) == kParticipantEmailOffset);
#pragma GCC diagnostic pop

// A participant as an invitation makes one: live, waiting, all else zero. Texts are cut at their fields.
SendRecord MakeInvitation(std::string_view name, std::string_view email);

// The word that the participants list shows; 1, or 0 and "?" for an unknown number.
int StatusWord(int sendStatus, std::string& word);

// True when a removed participant just goes, with nobody to tell: never told of the event, or has rejected it.
bool VanishesWhenRemoved(std::uint8_t sendStatus, std::uint8_t eventStatus);

}  // namespace jotlet
