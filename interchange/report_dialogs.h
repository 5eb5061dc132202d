// The two dialogs that choose which notes go into a text file: the report, shown and printed, and the export.
#pragma once

#include <memory>

#include "interchange/engine/report.h"
#include "platform/desktop/device_context.h"
#include "toolkit/marlin_dialog.h"

namespace jotlet {

// What both share: the selection, the date range, the text to find. They fill a request that the caller owns.
class SelectionDialog : public MarlinDialog {
public:
    explicit SelectionDialog(ReportRequest& request) : request(request) {}

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;

protected:
    // `selection`, `findEnabled` and `findText` from the controls.
    void ReadSelection();
    virtual ReportSelection SelectionFromRadios() const = 0;

    ReportRequest& request;

private:
    void ShowDates();
    void EnableDates(bool enabled);
    void OnFindBox();
    void PickDate(int button);
};

class PrintReportDialog : public SelectionDialog {
public:
    using SelectionDialog::SelectionDialog;

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;

protected:
    ReportSelection SelectionFromRadios() const override;

private:
    void MakeReport();
    void Unfold();
    int ShowReportText(const std::string& path);
    void PrintReportFile(const std::string& path);

    bool unfolded = false;
};

class ExportDialog : public SelectionDialog {
public:
    using SelectionDialog::SelectionDialog;

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;

    // Whether the target was made; the dialog stays open when it was not.
    bool Exported() const { return exported; }
    // What the user is to know of the file, after "successful".
    const std::string& Remarks() const { return remarks; }

protected:
    ReportSelection SelectionFromRadios() const override;

private:
    void Export();
    void Browse();

    bool exported = false;
    std::string remarks;
};

}  // namespace jotlet
