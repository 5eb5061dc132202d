// AboutDialog: who made the program, with a link to write to them and one to their home page. DoModal(parent,
// about_dialog_ids::kDialog).
#pragma once

#include <memory>

#include "resources/dialog_ids.h"
#include "toolkit/marlin_class_link_button.h"
#include "toolkit/marlin_dialog.h"

namespace jotlet {

class AboutDialog : public MarlinDialog {
public:
    AboutDialog();
    ~AboutDialog() override;

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCreated(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;

private:
    std::unique_ptr<MarlinClassLinkButton> mailLink;
    std::unique_ptr<MarlinClassLinkButton> homePageLink;
};

}  // namespace jotlet
