// Rows that the dialog measures and draws itself.
#pragma once

#include <QComboBox>
#include <QStyledItemDelegate>

#include "platform/desktop/qt/stock_controls.h"

namespace jotlet {

class OwnerDelegate final : public QStyledItemDelegate {
public:
    OwnerDelegate(QWidget* control, QObject* parent);
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    QWidget* const control;
    mutable int height = 0;
};

// A drop list whose closed field shows the selected row as the dialog draws it.
class OwnerCombo final : public QComboBox {
public:
    using QComboBox::QComboBox;

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace jotlet
