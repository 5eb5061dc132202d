// The numbers of the dialogs and of their controls, a namespace a dialog: templates, windows and tests name them alike.
#pragma once

namespace jotlet {

// Of every dialog.
inline constexpr int kIdOk = 1;
inline constexpr int kIdCancel = 2;

namespace splash_dialog_ids {
inline constexpr int kDialog = 1010;
}

namespace about_dialog_ids {
inline constexpr int kDialog = 1006;
inline constexpr int kMail = 100;
inline constexpr int kHomePage = 101;
}  // namespace about_dialog_ids

namespace progress_dialog_ids {
inline constexpr int kDialog = 1009;
inline constexpr int kText = 99;
inline constexpr int kBar = 100;
}  // namespace progress_dialog_ids

namespace skins_dialog_ids {
inline constexpr int kDialog = 2020;
inline constexpr int kSkinList = 100;
}  // namespace skins_dialog_ids

namespace new_file_dialog_ids {
inline constexpr int kDialog = 1001;
inline constexpr int kName = 100;
inline constexpr int kFolder = 101;
inline constexpr int kBrowse = 102;
inline constexpr int kExamples = 104;
}  // namespace new_file_dialog_ids

namespace password_dialog_ids {
inline constexpr int kDialog = 1002;
inline constexpr int kPassword = 100;
}  // namespace password_dialog_ids

namespace general_options_ids {
inline constexpr int kDialog = 1003;
inline constexpr int kSound = 100;
inline constexpr int kAnimation = 101;
inline constexpr int kSplash = 102;
inline constexpr int kRefresh = 103;
inline constexpr int kTray = 104;
}  // namespace general_options_ids

namespace network_passwords_ids {
inline constexpr int kDialog = 1004;
inline constexpr int kOwner = 100;
inline constexpr int kAssistant = 101;
inline constexpr int kReader = 102;
}  // namespace network_passwords_ids

namespace verify_passwords_ids {
inline constexpr int kDialog = 1005;
inline constexpr int kOwner = 100;
inline constexpr int kAssistant = 101;
inline constexpr int kReader = 102;
}  // namespace verify_passwords_ids

namespace note_editor_ids {
inline constexpr int kDialog = 2000;
inline constexpr int kDateText = 100;
inline constexpr int kTextEdit = 103;
inline constexpr int kCategoryCombo = 104;
inline constexpr int kConfidentialBox = 105;
inline constexpr int kAlarmButton = 106;
inline constexpr int kAttachButton = 107;
inline constexpr int kColourBox = 110;
inline constexpr int kTitleEdit = 200;
}  // namespace note_editor_ids

namespace attachment_dialog_ids {
inline constexpr int kDialog = 2010;
inline constexpr int kDocumentRadio = 100;
inline constexpr int kUrlRadio = 101;
inline constexpr int kPathEdit = 102;
inline constexpr int kBrowseButton = 103;
inline constexpr int kOpenButton = 104;
}  // namespace attachment_dialog_ids

namespace category_editor_ids {
inline constexpr int kDialog = 1018;
inline constexpr int kNameList = 100;
inline constexpr int kNewButton = 101;
inline constexpr int kDeleteButton = 102;
}  // namespace category_editor_ids

namespace new_category_ids {
inline constexpr int kDialog = 1019;
inline constexpr int kNameEdit = 100;
}  // namespace new_category_ids

namespace alarm_dialog_ids {
inline constexpr int kDialog = 2001;
inline constexpr int kDateButton = 100;
inline constexpr int kTimeButton = 101;
inline constexpr int kToneEdit = 103;
inline constexpr int kPlayButton = 104;
inline constexpr int kBrowseToneButton = 105;
inline constexpr int kTargetEdit = 106;
inline constexpr int kBrowseTargetButton = 107;
inline constexpr int kEmailRadio = 110;
inline constexpr int kUrlRadio = 111;
inline constexpr int kDocumentRadio = 112;
inline constexpr int kSetRadio = 120;
inline constexpr int kCancelRadio = 121;
}  // namespace alarm_dialog_ids

namespace alarm_fired_ids {
inline constexpr int kDialog = 2005;
inline constexpr int kDateText = 100;
inline constexpr int kTimeText = 101;
inline constexpr int kDescriptionEdit = 103;
inline constexpr int kTargetText = 104;
inline constexpr int kStartBox = 105;
}  // namespace alarm_fired_ids

namespace time_picker_ids {
inline constexpr int kDialog = 1007;
}

namespace date_picker_ids {
inline constexpr int kDialog = 1008;
}

namespace find_dialog_ids {
inline constexpr int kDialog = 2006;
inline constexpr int kTermEdit = 103;
inline constexpr int kGoToButton = 104;
inline constexpr int kCategoryText = 200;
inline constexpr int kHitList = 500;
}  // namespace find_dialog_ids

// What the report and the export ask alike.
namespace note_choice_ids {
inline constexpr int kAllRadio = 100;
inline constexpr int kRangeRadio = 101;
inline constexpr int kFindBox = 200;
inline constexpr int kFindEdit = 201;
inline constexpr int kFromButton = 300;
inline constexpr int kToButton = 301;
}  // namespace note_choice_ids

namespace report_dialog_ids {
using namespace note_choice_ids;
inline constexpr int kDialog = 2011;
inline constexpr int kCurrentRadio = 102;
inline constexpr int kPrintButton = 401;
inline constexpr int kReportView = 1000;
}  // namespace report_dialog_ids

namespace export_dialog_ids {
using namespace note_choice_ids;
inline constexpr int kDialog = 2012;
inline constexpr int kExportButton = 500;
inline constexpr int kExportEdit = 700;
inline constexpr int kBrowseButton = 701;
}  // namespace export_dialog_ids

namespace import_wizard_ids {
inline constexpr int kDialog = 2013;
inline constexpr int kPathEdit = 98;
inline constexpr int kBrowseButton = 99;
inline constexpr int kPreviewEdit = 100;
inline constexpr int kNamesYes = 101;
inline constexpr int kNamesNo = 102;
inline constexpr int kCommaRadio = 103;
inline constexpr int kTabRadio = 104;
inline constexpr int kQualifierCombo = 105;
inline constexpr int kSourceList = 200;
inline constexpr int kTargetList = 201;
inline constexpr int kFieldCombo = 202;
inline constexpr int kDefaultMapButton = 203;
inline constexpr int kClearMapButton = 204;
inline constexpr int kFileHeading = 1000;
inline constexpr int kNamesHeading = 1001;
inline constexpr int kDelimiterHeading = 1002;
inline constexpr int kQualifierHeading = 1003;
inline constexpr int kSourceHeading = 2000;
inline constexpr int kFieldHeading = 2001;
inline constexpr int kTargetHeading = 2002;
inline constexpr int kBackButton = 3000;
inline constexpr int kNextButton = 3001;
}  // namespace import_wizard_ids

namespace internet_events_ids {
inline constexpr int kDialog = 1011;
inline constexpr int kInviteButton = 101;
inline constexpr int kParticipantList = 102;
inline constexpr int kSubjectEdit = 103;
inline constexpr int kListHeading = 104;
inline constexpr int kRemoveButton = 105;
inline constexpr int kEBookButton = 106;
inline constexpr int kOwnerLine = 1010;
inline constexpr int kOwnerBlock = 1011;
}  // namespace internet_events_ids

namespace e_book_ids {
inline constexpr int kDialog = 1012;
inline constexpr int kNewButton = 101;
inline constexpr int kEditButton = 102;
inline constexpr int kDeleteButton = 103;
}  // namespace e_book_ids

namespace e_book_record_ids {
inline constexpr int kDialog = 1013;
inline constexpr int kNameEdit = 100;
inline constexpr int kEmailEdit = 101;
}  // namespace e_book_record_ids

namespace e_book_picker_ids {
inline constexpr int kDialog = 1015;
}

namespace server_password_ids {
inline constexpr int kDialog = 1016;
inline constexpr int kPromptEdit = 100;
}  // namespace server_password_ids

namespace server_setup_ids {
inline constexpr int kDialog = 1017;
inline constexpr int kNameEdit = 100;
inline constexpr int kPasswordEdit = 101;
inline constexpr int kConfirmEdit = 102;
inline constexpr int kServerEdit = 103;
inline constexpr int kEmailEdit = 104;
inline constexpr int kPortEdit = 105;
inline constexpr int kRegisterButton = 1000;
}  // namespace server_setup_ids

}  // namespace jotlet
