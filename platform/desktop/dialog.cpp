#include "platform/desktop/dialog.h"

#include <QApplication>
#include <QFontMetrics>

#include "platform/desktop/qt/convert.h"
#include "platform/desktop/qt/font_data.h"
#include "platform/desktop/qt/stock_controls.h"

namespace jotlet {

namespace {

constexpr std::uint32_t kDialogWithCaption = 0x00C00000;
constexpr std::uint32_t kDialogBare = 0;

std::uint32_t StyleOf(const DialogTemplate& dialogTemplate)
{
    return (dialogTemplate.style & kDialogNoCaption ? kDialogBare : kDialogWithCaption) |
           (dialogTemplate.style & kDialogPicker ? kStylePicker : 0);
}

const WindowClass& DialogClass()
{
    static const WindowClass dialogClass{kClassSaveBits, nullptr, CursorId::Arrow, Background::ButtonFace, 0, "Dialog"};
    return dialogClass;
}

// Average width over the alphabet and the height of a line: what a dialog unit is a fraction of.
QSize BaseOf(const QFont& font)
{
    const QFontMetrics metrics(font);
    const int width = metrics.horizontalAdvance(QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"));
    return {(width / 26 + 1) / 2, metrics.height()};
}

void FocusFirst(NativeWidget& dialog, const std::vector<WindowHandle>& controls)
{
    for (const WindowHandle control : controls) {
        QWidget* widget = WidgetOf(control);
        if (widget && widget->isEnabled() && widget->isVisibleTo(&dialog) && (widget->focusPolicy() & Qt::TabFocus)) {
            widget->setFocus(Qt::TabFocusReason);
            return;
        }
    }
}

}  // namespace

WindowHandle CreateDialogWindow(const DialogTemplate& dialogTemplate, WindowHandle owner, WindowProcedure procedure,
                                void* userWord)
{
    if (!qApp)
        return 0;
    const HandlerScope scope;
    QWidget* ownerWidget = WidgetOf(owner);
    const WindowHandle handle = NewHandle();
    auto* dialog =
        std::make_unique<NativeWidget>(handle, DialogClass(), StyleOf(dialogTemplate), NativeWidget::Kind::Dialog,
                                       ownerWidget ? ownerWidget->window() : nullptr)
            .release();  // the registry and the owner's window own it from here on
    dialog->procedure = procedure;
    dialog->userWord = userWord;
    dialog->setFont(MakeQtFont({"MS Sans Serif", -11}));
    dialog->dialogBase = BaseOf(dialog->font());
    dialog->setWindowTitle(ShownText(dialogTemplate.caption));
    RegisterHandle(handle, {dialog, dialog, "Dialog", 0});
    dialog->setFixedSize(DialogX(*dialog, dialogTemplate.width), DialogY(*dialog, dialogTemplate.height));
    if (owner) {
        const Point origin = ClientToScreen(owner, {});
        dialog->move(origin.x + DialogX(*dialog, dialogTemplate.x), origin.y + DialogY(*dialog, dialogTemplate.y));
    }
    std::vector<WindowHandle> controls;
    for (const ControlTemplate& one : dialogTemplate.controls)
        controls.push_back(MakeControl(*dialog, one));
    TieControls(*dialog, dialogTemplate, controls);
    const MessageParam focus = dialog->Deliver(kWmInitDialog, 0, 0);
    if (!dialog->Alive())
        return 0;
    if (focus || !dialog->focusWidget())
        FocusFirst(*dialog, controls);
    dialog->ReportGeometry();
    return IsWindow(handle) ? handle : 0;
}

WindowHandle DialogItem(WindowHandle dialog, int id)
{
    const NativeWidget* native = NativeOf(dialog);
    if (!native)
        return 0;
    for (QObject* child : native->children()) {
        const auto* widget = qobject_cast<QWidget*>(child);
        if (!widget || widget->isWindow())
            continue;
        const WindowHandle handle = HandleOf(widget);
        const WindowEntry* entry = FindEntry(handle);
        if (entry && entry->widget == widget && !entry->native && entry->controlId == id)
            return handle;
    }
    return 0;
}

int DialogUnitsX(WindowHandle dialog, int units)
{
    const NativeWidget* native = NativeOf(dialog);
    return native ? DialogX(*native, units) : 0;
}

int DialogUnitsY(WindowHandle dialog, int units)
{
    const NativeWidget* native = NativeOf(dialog);
    return native ? DialogY(*native, units) : 0;
}

}  // namespace jotlet
