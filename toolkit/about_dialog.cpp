#include "toolkit/about_dialog.h"

#include "platform/desktop/system_metrics.h"
#include "resources/dialog_ids.h"
#include "skin/window_helpers.h"

namespace jotlet {
namespace {

constexpr std::string_view kMakerMail = "hello@pinwell.example";
constexpr std::string_view kMakerHomePage = "https://pinwell.example/";
constexpr Colour kLinkColour = 0xFF0000;
constexpr Colour kHeldLinkColour = 0xFF5454;
constexpr std::uint32_t kLinkFlags = kTextSingleLine | kTextVCentre;

std::unique_ptr<MarlinClassLinkButton> MakeLink(int id, std::string_view text)
{
    return std::make_unique<MarlinClassLinkButton>(id, text, SystemColour(kSysColourButtonFace), kLinkColour,
                                                   kHeldLinkColour, kLinkFlags);
}

}  // namespace

AboutDialog::AboutDialog() = default;
AboutDialog::~AboutDialog() = default;

MessageParam AboutDialog::OnInitDialog(WndMessage&)
{
    mailLink = MakeLink(about_dialog_ids::kMail, kMakerMail);
    homePageLink = MakeLink(about_dialog_ids::kHomePage, kMakerHomePage);
    mailLink->Create(this);
    homePageLink->Create(this);
    CentreOverParent();
    return 1;
}

// The template's hidden buttons keep the links' places.
MessageParam AboutDialog::OnCreated(WndMessage&)
{
    const Rect mail = ItemRect(window, about_dialog_ids::kMail);
    mailLink->Move(mail.left, mail.top, mail.Width(), mail.Height(), 1);
    const Rect home = ItemRect(window, about_dialog_ids::kHomePage);
    homePageLink->Move(home.left, home.top, home.Width(), home.Height(), 1);
    return 0;
}

MessageParam AboutDialog::OnCommand(WndMessage& record)
{
    switch (LowWord(record.wParam)) {
        case about_dialog_ids::kMail:
            OpenMail(kMakerMail);
            return 1;
        case about_dialog_ids::kHomePage:
            OpenDocument(kMakerHomePage);
            return 1;
        default:
            return MarlinDialog::OnCommand(record);
    }
}

}  // namespace jotlet
