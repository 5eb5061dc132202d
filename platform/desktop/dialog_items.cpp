// A dialog's controls by id: text, state, place.
#include <QAbstractButton>
#include <QButtonGroup>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QSignalBlocker>
#include <QTextLayout>
#include <QtMath>

#include "platform/base/text.h"
#include "platform/desktop/dialog.h"
#include "platform/desktop/qt/convert.h"
#include "platform/desktop/qt/font_data.h"
#include "platform/desktop/qt/stock_controls.h"
#include "platform/desktop/qt/stock_edits.h"

namespace jotlet {

namespace {

// How the control reads now.
QString Reading(const QWidget& widget)
{
    if (const auto* edit = qobject_cast<const QLineEdit*>(&widget))
        return edit->text();
    if (const auto* area = qobject_cast<const QPlainTextEdit*>(&widget))
        return LinesOf(*area);
    if (const auto* combo = qobject_cast<const QComboBox*>(&widget))
        return combo->currentText();
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
        return button->text();
    if (const auto* label = qobject_cast<const QLabel*>(&widget))
        return label->text();
    if (const auto* group = qobject_cast<const QGroupBox*>(&widget))
        return group->title();
    return {};
}

void PutLine(LineEdit& edit, const QString& text)
{
    const QSignalBlocker quiet(edit);
    edit.limit->program = true;
    edit.setText(text);
    edit.limit->program = false;
    edit.setCursorPosition(0);
}

}  // namespace

void PutText(const WindowEntry& entry, std::string_view bytes)
{
    QWidget& widget = *entry.widget;
    const QString lines = ShownLines(bytes);
    if (auto* edit = dynamic_cast<LineEdit*>(&widget)) {
        PutLine(*edit, lines);
    } else if (auto* area = dynamic_cast<TextArea*>(&widget)) {
        const QSignalBlocker quiet(area);
        area->setPlainText(lines);
    } else if (auto* combo = qobject_cast<QComboBox*>(&widget)) {
        if (auto* field = dynamic_cast<LineEdit*>(combo->lineEdit()))
            PutLine(*field, lines);
        else
            return;
    } else if (auto* button = qobject_cast<QAbstractButton*>(&widget)) {
        button->setText(lines);
    } else if (auto* label = qobject_cast<QLabel*>(&widget)) {
        label->setText(lines);
    } else if (auto* group = qobject_cast<QGroupBox*>(&widget)) {
        group->setTitle(lines);
    }
    if (entry.control) {
        entry.control->bytes = std::string(bytes.substr(0, bytes.find('\0')));
        entry.control->reading = Reading(widget);
    }
}

std::string TakeText(const WindowEntry& entry)
{
    const QString reading = Reading(*entry.widget);
    if (entry.control && entry.control->reading == reading && !reading.isEmpty())
        return entry.control->bytes;
    if (const auto* combo = qobject_cast<const QComboBox*>(entry.widget.data())) {
        // A row's own bytes, when it is what the box shows.
        const int row = combo->currentIndex();
        if (row >= 0 && combo->itemText(row) == reading)
            return combo->itemData(row, kRowBytesRole).toByteArray().toStdString();
    }
    const std::string text = ToUtf8(reading);
    return qobject_cast<const QPlainTextEdit*>(entry.widget.data()) ? ToCrLf(text) : text;
}

std::string ItemText(WindowHandle dialog, int id)
{
    const WindowEntry* entry = FindItem(dialog, id);
    return entry ? TakeText(*entry) : std::string();
}

void SetItemTextOf(WindowHandle dialog, int id, std::string_view text)
{
    if (const WindowEntry* entry = FindItem(dialog, id))
        PutText(*entry, text);
}

void LimitItemText(WindowHandle dialog, int id, int bytes)
{
    const WindowEntry* entry = FindItem(dialog, id);
    if (!entry)
        return;
    QWidget* widget = entry->widget;
    if (auto* combo = qobject_cast<QComboBox*>(widget))
        widget = combo->lineEdit();
    if (auto* edit = dynamic_cast<LineEdit*>(widget))
        edit->limit->bytes = bytes;
    else if (auto* area = dynamic_cast<TextArea*>(widget))
        area->SetLimit(bytes);
}

void EnableItem(WindowHandle dialog, int id, bool enabled)
{
    if (const WindowEntry* entry = FindItem(dialog, id))
        entry->widget->setEnabled(enabled);
}

void ShowItem(WindowHandle dialog, int id, bool visible)
{
    if (const WindowEntry* entry = FindItem(dialog, id))
        entry->widget->setVisible(visible);
}

void FocusItem(WindowHandle dialog, int id)
{
    if (const WindowEntry* entry = FindItem(dialog, id))
        entry->widget->setFocus(Qt::OtherFocusReason);
}

void SetItemFont(WindowHandle dialog, int id, std::string_view face, int height, int weight)
{
    if (const WindowEntry* entry = FindItem(dialog, id))
        entry->widget->setFont(MakeQtFont({std::string(face), height, weight}));
}

bool IsItemChecked(WindowHandle dialog, int id)
{
    const WindowEntry* entry = FindItem(dialog, id);
    const auto* button = entry ? qobject_cast<QAbstractButton*>(entry->widget) : nullptr;
    return button && button->isChecked();
}

void CheckItem(WindowHandle dialog, int id, bool checked)
{
    const WindowEntry* entry = FindItem(dialog, id);
    auto* button = entry ? qobject_cast<QAbstractButton*>(entry->widget) : nullptr;
    if (!button)
        return;
    const QSignalBlocker quiet(button);
    // A group insists on one checked button unless it is told otherwise.
    QButtonGroup* group = button->group();
    if (group && !checked)
        group->setExclusive(false);
    button->setChecked(checked);
    if (group) {
        group->setExclusive(true);
        const QList<QAbstractButton*> others = group->buttons();
        for (QAbstractButton* other : others) {
            if (checked && other != button && other->isChecked()) {
                group->setExclusive(false);
                other->setChecked(false);
                group->setExclusive(true);
            }
        }
    }
}

Rect ItemRect(WindowHandle dialog, int id)
{
    const WindowEntry* entry = FindItem(dialog, id);
    return entry ? FromQt(entry->widget->geometry()) : Rect{};
}

void MoveItem(WindowHandle dialog, int id, const Rect& bounds)
{
    if (const WindowEntry* entry = FindItem(dialog, id))
        entry->widget->setGeometry(ToQt(bounds));
}

int ItemTextHeight(WindowHandle dialog, int id)
{
    const WindowEntry* entry = FindItem(dialog, id);
    const auto* area = entry ? dynamic_cast<const TextArea*>(entry->widget.data()) : nullptr;
    if (!area)
        return 0;
    // Laid out here: an edit that was never on the screen has not wrapped its text yet.
    const qreal edge = area->frameWidth() + area->document()->documentMargin();
    QTextOption wrapping;
    wrapping.setWrapMode(area->wordWrapMode());
    qreal height = 0;
    for (const QString& paragraph : area->toPlainText().split(u'\n')) {
        QTextLayout layout(paragraph, area->font());
        layout.setTextOption(wrapping);
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(area->width() - 2 * edge);
            height += line.height();
        }
        layout.endLayout();
    }
    return qCeil(height + 2 * edge);
}

}  // namespace jotlet
