#include "notes/commands/held_note.h"

namespace jotlet {
namespace {

Outcome OutcomeOf(SaveState state)
{
    switch (state) {
        case SaveState::Saved:
            return Outcome::Done;
        case SaveState::Refused:
            return Outcome::NoPermission;
        case SaveState::Unconfirmed:
            return Outcome::Unconfirmed;
        case SaveState::Replaced:
            return Outcome::Replaced;
        case SaveState::Failed:
            break;
    }
    return Outcome::Failed;
}

}  // namespace

NoteResult::NoteResult(const SaveResult& saved) : outcome(OutcomeOf(saved.state)), error(saved.error) {}

bool MayChangeNotes(const TableFile* file)
{
    return file && MayChange(file->GetRole());
}

NoteResult HeldNote::Lock(TableFile* file, std::optional<ChosenRecord> chosen)
{
    if (!MayChangeNotes(file))
        return Outcome::NoPermission;
    if (!chosen)
        return Outcome::NothingChosen;
    hold.emplace(*file, chosen->address);
    if (*hold) {
        if (hold->Read(BytesOf(note)) && note.uniqueId == chosen->id)
            return Outcome::Done;
        GiveBack();
        return Outcome::Locked;
    }
    const SaveResult failure = hold->WhyNot();
    hold.reset();
    return failure ? Outcome::Locked : NoteResult(failure);
}

NoteResult HeldNote::Read(HiddenNotes hidden)
{
    const bool live = hold->Read(BytesOf(note));
    if (live && (note.confidential == 0 || hidden == HiddenNotes::Take || SeesConfidential(File().GetRole())))
        return Outcome::Done;
    GiveBack();
    return Outcome::Hidden;
}

NoteResult HeldNote::Take(TableFile* file, std::optional<ChosenRecord> chosen, HiddenNotes hidden)
{
    const NoteResult locked = Lock(file, chosen);
    return locked ? Read(hidden) : locked;
}

bool HeldNote::GiveBack()
{
    const bool cleared = !hold || hold->GiveBack();
    hold.reset();
    return cleared;
}

}  // namespace jotlet
