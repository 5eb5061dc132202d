// The small dialog behind "Attach...": a document or a URL that goes with a note.
#pragma once

#include <string>

#include "notes/model/note_record.h"
#include "toolkit/marlin_dialog.h"

namespace jotlet {

// Works on its own copy of the kind and the path; the caller takes both from `attachment` after DoModal gave 1.
class AttachmentDialog : public MarlinDialog {
public:
    struct Attachment {
        int kind = 0;  // kAttachmentNone, kAttachmentDocument, kAttachmentUrl
        std::string path;
    };

    explicit AttachmentDialog(Attachment initial);

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;

    Attachment attachment;

private:
    MessageParam OnOk();
    MessageParam OnBrowse();
    MessageParam OnOpen();
};

}  // namespace jotlet
