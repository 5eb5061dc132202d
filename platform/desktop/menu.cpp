#include "platform/desktop/menu.h"

#include <QApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QPointer>

#include "platform/desktop/application.h"
#include "platform/desktop/qt/convert.h"
#include "platform/desktop/qt/modal.h"
#include "platform/desktop/qt/window_registry.h"

namespace jotlet {

namespace {

MenuAnswer pendingAnswer = nullptr;

// Keeps the right button from choosing where only the left one may.
class LeftOnly final : public QObject {
public:
    bool eventFilter(QObject*, QEvent* event) override
    {
        return event->type() == QEvent::MouseButtonRelease &&
               static_cast<QMouseEvent*>(event)->button() == Qt::RightButton;
    }
};

QAction* AddEntry(QMenu& menu, const MenuEntry& entry)
{
    if (entry.text.empty())
        return menu.addSeparator();
    QAction* action = menu.addAction(ShownText(entry.text));
    action->setEnabled(!entry.greyed);
    if (entry.checked) {
        action->setCheckable(true);
        action->setChecked(true);
    }
    return action;
}

}  // namespace

void TrackPopupMenu(WindowHandle owner, const std::vector<MenuEntry>& entries, Point screen, MenuButton choosing)
{
    if (entries.empty() || !qApp || LeavingModals())
        return;
    if (pendingAnswer) {
        const auto index = pendingAnswer(entries);
        if (index && *index < entries.size() && !entries[*index].text.empty() && !entries[*index].greyed)
            PostRequest(owner, kWmCommand, entries[*index].command, 0);
        return;
    }
    const HandlerScope scope;
    QWidget* parent = WidgetOf(owner);
    QMenu menu(parent ? parent->window() : nullptr);
    LeftOnly leftOnly;
    if (choosing == MenuButton::Left)
        menu.installEventFilter(&leftOnly);
    std::vector<QAction*> actions;
    for (const MenuEntry& entry : entries)
        actions.push_back(AddEntry(menu, entry));
    const QAction* chosen = nullptr;
    {
        const ForeignRun run(ForeignRun::Kind::Menu);
        chosen = menu.exec(ToQt(screen));
    }
    for (std::size_t i = 0; chosen && i < actions.size(); ++i) {
        if (actions[i] == chosen)
            PostRequest(owner, kWmCommand, entries[i].command, 0);
    }
}

ScopedMenuAnswer::ScopedMenuAnswer(MenuAnswer answer)
{
    pendingAnswer = answer;
}

ScopedMenuAnswer::~ScopedMenuAnswer()
{
    pendingAnswer = nullptr;
}

}  // namespace jotlet
