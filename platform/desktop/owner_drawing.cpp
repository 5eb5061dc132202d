#include "platform/desktop/qt/owner_drawing.h"

#include <QPainter>
#include <QStyleOptionComboBox>

#include "platform/desktop/qt/convert.h"
#include "platform/desktop/qt/painter_context.h"

namespace jotlet {

namespace {

constexpr int kDefaultRow = 15;

void DrawRow(const QWidget& control, QPainter& painter, const QRect& area, const QModelIndex& index, bool selected)
{
    const WindowEntry* entry = FindEntry(HandleOf(&control));
    if (!entry)
        return;
    painter.save();
    PainterContext dc(painter, area);
    dc.SetClip(FromQt(area));
    DrawItemInfo info;
    info.controlId = entry->controlId;
    info.index = index.row();
    info.action = kDrawEntire;
    info.selected = selected;
    info.dc = &dc;
    info.area = FromQt(area);
    info.text = index.data(kRowBytesRole).toByteArray().toStdString();
    info.data = static_cast<std::intptr_t>(index.data(kRowDataRole).toLongLong());
    SendTo(ParentOf(HandleOf(&control)), kWmDrawItem, entry->controlId, reinterpret_cast<MessageParam>(&info));
    painter.restore();
}

}  // namespace

OwnerDelegate::OwnerDelegate(QWidget* itsControl, QObject* parent) : QStyledItemDelegate(parent), control(itsControl) {}

void OwnerDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    DrawRow(*control, *painter, option.rect, index, option.state & QStyle::State_Selected);
}

QSize OwnerDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const
{
    if (height == 0) {
        const WindowEntry* entry = FindEntry(HandleOf(control));
        if (!entry)
            return {10, kDefaultRow};
        MeasureItemInfo info{entry->controlId, 0};
        SendTo(ParentOf(HandleOf(control)), kWmMeasureItem, entry->controlId, reinterpret_cast<MessageParam>(&info));
        height = info.height > 0 ? info.height : kDefaultRow;
    }
    return {10, height};
}

void OwnerCombo::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    option.currentText.clear();
    style()->drawComplexControl(QStyle::CC_ComboBox, &option, &painter, this);
    const QRect field = style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this);
    const QModelIndex index = model()->index(currentIndex(), 0);
    if (index.isValid())
        DrawRow(*this, painter, field.adjusted(0, 1, 0, -1), index, hasFocus());
}

}  // namespace jotlet
