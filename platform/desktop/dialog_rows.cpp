// Rows of list boxes and combo boxes.
#include <QComboBox>
#include <QListWidget>
#include <QSignalBlocker>

#include "platform/desktop/dialog.h"
#include "platform/desktop/qt/convert.h"
#include "platform/desktop/qt/stock_controls.h"
#include "platform/desktop/qt/stock_edits.h"
#include "platform/desktop/test_input.h"

namespace jotlet {

namespace {

int Selected(const WindowEntry& entry)
{
    if (const auto* list = qobject_cast<QListWidget*>(entry.widget)) {
        const QModelIndexList rows = list->selectionModel()->selectedIndexes();
        return rows.isEmpty() ? -1 : rows.first().row();
    }
    const auto* combo = qobject_cast<QComboBox*>(entry.widget);
    return combo ? combo->currentIndex() : -1;
}

void Select(const WindowEntry& entry, int row)
{
    const QSignalBlocker quiet(entry.widget);
    if (auto* list = qobject_cast<QListWidget*>(entry.widget)) {
        list->setCurrentRow(row);
        if (row < 0)
            list->clearSelection();
    } else if (auto* combo = qobject_cast<QComboBox*>(entry.widget)) {
        auto* edit = dynamic_cast<LineEdit*>(combo->lineEdit());
        if (edit)
            edit->limit->program = true;
        combo->setCurrentIndex(row);
        if (edit)
            edit->limit->program = false;
    }
}

// Where a row goes in a sorted box; the end in another.
int PlaceFor(const QAbstractItemModel& rows, const ControlState& state, const QString& text)
{
    if (!(state.style & kControlSorted))
        return rows.rowCount();
    int place = 0;
    while (place < rows.rowCount() &&
           rows.index(place, 0).data(Qt::DisplayRole).toString().compare(text, Qt::CaseInsensitive) <= 0)
        ++place;
    return place;
}

void FillRow(QAbstractItemModel& rows, int row, std::string_view text)
{
    const QModelIndex index = rows.index(row, 0);
    rows.setData(index, ShownLines(text), Qt::DisplayRole);
    rows.setData(index, QByteArray(text.data(), static_cast<qsizetype>(text.size())), kRowBytesRole);
}

QModelIndex IndexOf(WindowHandle dialog, int id, int index)
{
    const WindowEntry* entry = FindItem(dialog, id);
    QAbstractItemModel* rows = entry ? RowsOf(*entry) : nullptr;
    return rows && index >= 0 ? rows->index(index, 0) : QModelIndex();
}

}  // namespace

QAbstractItemModel* RowsOf(const WindowEntry& entry)
{
    if (auto* list = qobject_cast<QListWidget*>(entry.widget))
        return list->model();
    auto* combo = qobject_cast<QComboBox*>(entry.widget);
    return combo ? combo->model() : nullptr;
}

int AddRow(WindowHandle dialog, int id, std::string_view text, std::intptr_t data)
{
    const WindowEntry* entry = FindItem(dialog, id);
    QAbstractItemModel* rows = entry ? RowsOf(*entry) : nullptr;
    if (!rows)
        return -1;
    const QSignalBlocker quiet(entry->widget);
    const int before = Selected(*entry);
    const QString shown = ShownLines(text);
    const int place = PlaceFor(*rows, *entry->control, shown);
    if (!rows->insertRow(place))
        return -1;
    FillRow(*rows, place, text);
    rows->setData(rows->index(place, 0), static_cast<qlonglong>(data), kRowDataRole);
    // A combo takes its first row by itself; here nothing is chosen before the user or the program chooses.
    if (before < 0 && Selected(*entry) >= 0)
        Select(*entry, -1);
    return place;
}

void RemoveRow(WindowHandle dialog, int id, int index)
{
    const WindowEntry* entry = FindItem(dialog, id);
    QAbstractItemModel* rows = entry ? RowsOf(*entry) : nullptr;
    if (!rows || index < 0 || index >= rows->rowCount())
        return;
    const QSignalBlocker quiet(entry->widget);
    const int selected = Selected(*entry);
    rows->removeRow(index);
    if (selected == index)
        Select(*entry, -1);
}

void ClearRows(WindowHandle dialog, int id)
{
    const WindowEntry* entry = FindItem(dialog, id);
    QAbstractItemModel* rows = entry ? RowsOf(*entry) : nullptr;
    if (!rows)
        return;
    const QSignalBlocker quiet(entry->widget);
    rows->removeRows(0, rows->rowCount());
}

int RowCount(WindowHandle dialog, int id)
{
    const WindowEntry* entry = FindItem(dialog, id);
    const QAbstractItemModel* rows = entry ? RowsOf(*entry) : nullptr;
    return rows ? rows->rowCount() : 0;
}

std::string RowText(WindowHandle dialog, int id, int index)
{
    return IndexOf(dialog, id, index).data(kRowBytesRole).toByteArray().toStdString();
}

void SetRowText(WindowHandle dialog, int id, int index, std::string_view text)
{
    const WindowEntry* entry = FindItem(dialog, id);
    if (!entry || !IndexOf(dialog, id, index).isValid())
        return;
    const QSignalBlocker quiet(entry->widget);
    FillRow(*RowsOf(*entry), index, text);
}

void NameRow(WindowHandle dialog, int id, int index, std::string_view name)
{
    const WindowEntry* entry = FindItem(dialog, id);
    if (entry && IndexOf(dialog, id, index).isValid())
        RowsOf(*entry)->setData(IndexOf(dialog, id, index), ShownLines(name), Qt::DisplayRole);
}

std::intptr_t RowData(WindowHandle dialog, int id, int index)
{
    return static_cast<std::intptr_t>(IndexOf(dialog, id, index).data(kRowDataRole).toLongLong());
}

int SelectedRow(WindowHandle dialog, int id)
{
    const WindowEntry* entry = FindItem(dialog, id);
    return entry ? Selected(*entry) : -1;
}

void SelectRow(WindowHandle dialog, int id, int index)
{
    const WindowEntry* entry = FindItem(dialog, id);
    if (entry && index < RowCount(dialog, id))
        Select(*entry, qMax(index, -1));
}

int SelectRowByPrefix(WindowHandle dialog, int id, std::string_view prefix)
{
    const WindowEntry* entry = FindItem(dialog, id);
    const QAbstractItemModel* rows = entry ? RowsOf(*entry) : nullptr;
    if (!rows)
        return -1;
    const QString wanted = ShownLines(prefix);
    if (wanted.isEmpty())
        return -1;
    for (int row = 0; row < rows->rowCount(); ++row) {
        if (rows->index(row, 0).data().toString().startsWith(wanted, Qt::CaseInsensitive)) {
            Select(*entry, row);
            return row;
        }
    }
    return -1;
}

}  // namespace jotlet
