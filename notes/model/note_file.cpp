#include "notes/model/note_file.h"

#include <unistd.h>

#include <array>
#include <cerrno>

#include "notes/model/note_record.h"
#include "notes/model/palette.h"
#include "platform/base/file_system.h"
#include "platform/base/text.h"
#include "resources/string_ids.h"
#include "resources/string_table.h"
#include "store/create_table.h"
#include "store/table_file.h"

namespace jotlet {

namespace {

struct ExampleNote {
    int titleId;
    int textId;
    std::uint32_t colour;
};

constexpr std::array<ExampleNote, 4> kExamples = {{
    {kStringExampleSameTitle, kStringExampleSameText, kBlue},
    {kStringExampleColoursTitle, kStringExampleColoursText, kRed},
    {kStringExampleAlarmTitle, kStringExampleAlarmText, kGreen},
    {kStringExampleTextsTitle, kStringExampleTextsText, kYellow},
}};

}  // namespace

int CreateNoteFile(const std::string& path, WithExamples examples, const Clock& clock, FileError* error)
{
    const auto fail = [&](const FileError& reason) {
        if (error != nullptr)
            *error = reason;
        return 0;
    };
    if (TableFile::Exists(path) == 1)
        return fail({FileErrorKind::Busy, "create", path, EEXIST});
    if (examples == WithExamples::No) {
        TableFile file(path, {});
        return CreateTable(file, kNoteTable) == 1 ? 1 : fail(file.GetOpenError());
    }
    // The examples are written under another name, so that the file appears with all of them or not at all.
    const std::string beside = path + "." + std::to_string(getpid()) + ".examples";
    Files().Remove(beside);
    bool isMade = false;
    FileError reason;
    {
        TableFile file(beside, {});
        isMade = CreateTable(file, kNoteTable) == 1;
        reason = file.GetOpenError();
        if (isMade && AddExampleRecords(file, clock) != 1) {
            isMade = false;
            reason = {FileErrorKindOf(errno), "write", path, errno};
        }
    }
    if (isMade && Files().RenameNew(beside, path) != 0) {
        isMade = false;
        reason = {FileErrorKindOf(errno), "create", path, errno};
    }
    if (!isMade) {
        Files().Remove(beside);
        return fail(reason);
    }
    FlushFolderOf(path);
    return 1;
}

OpenedTable OpenNoteFile(const std::string& path, std::string_view password, WithExamples examples,
                         ProgressDisplay* progress, const Clock& clock)
{
    if (TableFile::Exists(path) != 1) {
        FileError error;
        // Another copy may have made it in between; then that one is opened.
        if (CreateNoteFile(path, examples, clock, &error) != 1 && TableFile::Exists(path) != 1) {
            OpenedTable failed;
            failed.failure = error.kind == FileErrorKind::Permission ? OpenFailure::Permission : OpenFailure::Io;
            failed.error = error;
            return failed;
        }
    }
    return OpenTable(path, password, kNoteRecordSize, progress);
}

int AddExampleRecords(TableFile& file, const Clock& clock)
{
    for (const ExampleNote& example : kExamples) {
        NoteRecord note;
        InitNoteRecord(file, note, clock);
        StoreText(note.title, LoadStringResource(example.titleId));
        StoreText(note.text, LoadStringResource(example.textId));
        note.colour = example.colour;
        note.alarmState = kAlarmNone;
        note.alarmTime = note.time;
        note.alarmDate = note.date;
        note.startKind = kStartDocument;
        if (file.AddRecord(BytesOf(note)) != 1)
            return 0;
    }
    return file.Flush();
}

}  // namespace jotlet
