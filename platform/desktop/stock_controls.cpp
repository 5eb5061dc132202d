#include "platform/desktop/qt/stock_controls.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPainter>
#include <QRadioButton>

#include "platform/desktop/qt/bitmap_data.h"
#include "platform/desktop/qt/convert.h"
#include "platform/desktop/qt/owner_drawing.h"
#include "platform/desktop/qt/stock_edits.h"

namespace jotlet {

namespace {

constexpr int kComboHeight = 21;
constexpr int kIconSide = 32;

struct MadeControl {
    QWidget* widget = nullptr;
    const char* className = "Static";
};

template <class Widget, class... Args>
Widget* Make(Args&&... args)
{
    return std::make_unique<Widget>(std::forward<Args>(args)...).release();  // its parent owns it
}

template <class Button>
MadeControl MakeButton(NativeWidget& dialog, const ControlTemplate& from)
{
    auto* button = Make<Button>(ShownText(from.text), &dialog);
    QObject::connect(button, &QAbstractButton::clicked, button, [button] { NotifyDialog(*button, kButtonClicked); });
    return {button, "Button"};
}

MadeControl MakePush(NativeWidget& dialog, const ControlTemplate& from)
{
    const MadeControl made = MakeButton<PushButton>(dialog, from);
    auto* button = static_cast<PushButton*>(made.widget);
    button->setAutoDefault(false);
    button->setDefault(from.kind == ControlKind::DefaultPush);
    return made;
}

MadeControl MakeGroup(NativeWidget& dialog, const ControlTemplate& from)
{
    QString title = ShownText(from.text);
    auto* group = Make<QGroupBox>(title.remove(QLatin1Char('&')), &dialog);
    group->setAttribute(Qt::WA_TransparentForMouseEvents);
    group->lower();
    return {group, "Button"};
}

MadeControl MakeLabel(NativeWidget& dialog, const ControlTemplate& from)
{
    auto* label = Make<QLabel>(ShownText(from.text), &dialog);
    label->setTextFormat(Qt::PlainText);
    Qt::Alignment across = Qt::AlignLeft;
    if (from.kind == ControlKind::RightText)
        across = Qt::AlignRight;
    else if (from.kind == ControlKind::CentreText)
        across = Qt::AlignHCenter;
    const int lines = DialogY(dialog, from.height) / qMax(1, dialog.dialogBase.height());
    label->setWordWrap(lines >= 2);
    label->setAlignment(across | (lines >= 2 ? Qt::AlignTop : Qt::AlignVCenter));
    if (from.style & kControlSunken)
        label->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    return {label, "Static"};
}

MadeControl MakePicture(NativeWidget& dialog, const ControlTemplate& from)
{
    auto* label = Make<QLabel>(&dialog);
    const QString name = ShownText(from.text);
    QImage image;
    qreal scale = 1;
    if (from.kind == ControlKind::Icon) {
        scale = dialog.devicePixelRatioF();
        const int side = qRound(kIconSide * scale);
        image = FindIcon(name.toInt(), side);
        if (!image.isNull() && image.width() != side)
            image = image.scaled(side, side, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    } else {
        const StoredPicture picture = FindPicture(name);
        image = picture.image;
        scale = picture.scale;
    }
    if (!image.isNull()) {
        QPixmap pixmap = QPixmap::fromImage(image);
        pixmap.setDevicePixelRatio(scale);
        label->setPixmap(pixmap);
    }
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    if (from.style & kControlSunken)
        label->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    return {label, "Static"};
}

MadeControl MakeTextArea(NativeWidget& dialog, const ControlTemplate& from)
{
    auto* area = Make<TextArea>(&dialog);
    area->setReadOnly(from.style & kControlReadOnly);
    area->setVerticalScrollBarPolicy(from.style & kControlScroll ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    QObject::connect(area, &QPlainTextEdit::textChanged, area, [area] { NotifyDialog(*area, kEditChanged); });
    return {area, "Edit"};
}

MadeControl MakeEdit(NativeWidget& dialog, const ControlTemplate& from)
{
    if (from.style & kControlMultiLine)
        return MakeTextArea(dialog, from);
    auto* edit = Make<LineEdit>(&dialog);
    edit->limit->lowerCase = from.style & kControlLowerCase;
    edit->setReadOnly(from.style & kControlReadOnly);
    if (from.style & kControlPassword)
        edit->setEchoMode(QLineEdit::Password);
    QObject::connect(edit, &QLineEdit::textEdited, edit, [edit] { NotifyDialog(*edit, kEditChanged); });
    return {edit, "Edit"};
}

MadeControl MakeListBox(NativeWidget& dialog, const ControlTemplate& from)
{
    auto* list = Make<QListWidget>(&dialog);
    list->setUniformItemSizes(true);
    list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    if (from.style & kControlOwnerDrawn)
        list->setItemDelegate(Make<OwnerDelegate>(list, list));
    QObject::connect(list, &QListWidget::itemSelectionChanged, list,
                     [list] { NotifyDialog(*list, kListSelectionChanged); });
    QObject::connect(list, &QListWidget::itemDoubleClicked, list, [list] { NotifyDialog(*list, kListDoubleClick); });
    return {list, "ListBox"};
}

MadeControl MakeCombo(NativeWidget& dialog, const ControlTemplate& from)
{
    QComboBox* combo = from.style & kControlOwnerDrawn ? Make<OwnerCombo>(&dialog) : Make<QComboBox>(&dialog);
    if (from.kind == ControlKind::Combo) {
        combo->setEditable(true);
        combo->setInsertPolicy(QComboBox::NoInsert);
        auto* edit = Make<LineEdit>(combo);
        edit->limit->lowerCase = from.style & kControlLowerCase;
        combo->setLineEdit(edit);
        combo->setCompleter(nullptr);  // what is typed stays as it is typed
        QObject::connect(edit, &QLineEdit::textEdited, combo, [combo] { NotifyDialog(*combo, kComboEditChanged); });
    }
    if (from.style & kControlOwnerDrawn)
        combo->setItemDelegate(Make<OwnerDelegate>(combo, combo));
    const int listHeight = DialogY(dialog, from.height) - kComboHeight;
    combo->setMaxVisibleItems(qMax(4, listHeight / qMax(1, dialog.dialogBase.height() + 2)));
    QObject::connect(combo, &QComboBox::activated, combo, [combo] { NotifyDialog(*combo, kComboSelectionChanged); });
    return {combo, "ComboBox"};
}

MadeControl MakeOfKind(NativeWidget& dialog, const ControlTemplate& from)
{
    switch (from.kind) {
        case ControlKind::Push:
        case ControlKind::DefaultPush:
            return MakePush(dialog, from);
        case ControlKind::Check:
            return MakeButton<QCheckBox>(dialog, from);
        case ControlKind::Radio:
            return MakeButton<QRadioButton>(dialog, from);
        case ControlKind::Group:
            return MakeGroup(dialog, from);
        case ControlKind::Edit:
            return MakeEdit(dialog, from);
        case ControlKind::ListBox:
            return MakeListBox(dialog, from);
        case ControlKind::Combo:
        case ControlKind::DropList:
            return MakeCombo(dialog, from);
        case ControlKind::Picture:
        case ControlKind::Icon:
            return MakePicture(dialog, from);
        default:
            return MakeLabel(dialog, from);
    }
}

bool IsLabel(ControlKind kind)
{
    return kind == ControlKind::Text || kind == ControlKind::RightText || kind == ControlKind::CentreText;
}

bool TakesLabel(ControlKind kind)
{
    return kind == ControlKind::Edit || kind == ControlKind::ListBox || kind == ControlKind::Combo ||
           kind == ControlKind::DropList;
}

}  // namespace

int DialogX(const NativeWidget& dialog, int units)
{
    return qRound(units * dialog.dialogBase.width() / 4.0);
}

int DialogY(const NativeWidget& dialog, int units)
{
    return qRound(units * dialog.dialogBase.height() / 8.0);
}

QRect ControlBounds(const NativeWidget& dialog, const ControlTemplate& from)
{
    QRect bounds(DialogX(dialog, from.x), DialogY(dialog, from.y), DialogX(dialog, from.width),
                 DialogY(dialog, from.height));
    if (from.kind == ControlKind::Combo || from.kind == ControlKind::DropList)
        bounds.setHeight(kComboHeight);
    return bounds;
}

WindowHandle MakeControl(NativeWidget& dialog, const ControlTemplate& from)
{
    const MadeControl made = MakeOfKind(dialog, from);
    const WindowHandle handle = NewHandle();
    WindowEntry entry{made.widget, nullptr, made.className, from.id};
    entry.control = std::make_shared<ControlState>(ControlState{from.kind, from.style, {}, {}});
    RegisterHandle(handle, entry);
    made.widget->setGeometry(ControlBounds(dialog, from));
    made.widget->setEnabled(!(from.style & kControlDisabled));
    made.widget->setVisible(!(from.style & kControlHidden));
    if (from.kind == ControlKind::Edit && !from.text.empty())
        PutText(entry, from.text);
    QObject::connect(made.widget, &QObject::destroyed, qApp, [handle] { ForgetHandle(handle); });
    return handle;
}

void TieControls(NativeWidget&, const DialogTemplate& dialogTemplate, const std::vector<WindowHandle>& controls)
{
    QLabel* label = nullptr;
    QButtonGroup* group = nullptr;
    QWidget* previous = nullptr;
    for (std::size_t i = 0; i < controls.size(); ++i) {
        const ControlTemplate& from = dialogTemplate.controls[i];
        QWidget* widget = WidgetOf(controls[i]);
        if (IsLabel(from.kind)) {
            label = static_cast<QLabel*>(widget);
        } else if (label && TakesLabel(from.kind)) {
            // The label names the control to a screen reader, and its access key leads there.
            label->setBuddy(widget);
            label = nullptr;
        } else {
            label = nullptr;
        }
        if (from.style & kControlGroup)
            group = nullptr;
        if (from.kind == ControlKind::Radio) {
            if (!group)
                group = Make<QButtonGroup>(widget->parentWidget());
            group->addButton(static_cast<QRadioButton*>(widget));
        }
        if (previous && widget->focusPolicy() != Qt::NoFocus)
            QWidget::setTabOrder(previous, widget);
        if (widget->focusPolicy() != Qt::NoFocus)
            previous = widget;
    }
}

const WindowEntry* FindItem(WindowHandle dialog, int id)
{
    return FindEntry(DialogItem(dialog, id));
}

void NotifyDialog(const QWidget& control, int code)
{
    const WindowHandle handle = HandleOf(&control);
    const WindowEntry* entry = FindEntry(handle);
    if (!entry)
        return;
    SendTo(ParentOf(handle), kWmCommand, MakeParam(entry->controlId, code), static_cast<MessageParam>(handle));
}

}  // namespace jotlet
