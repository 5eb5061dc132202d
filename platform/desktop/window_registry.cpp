#include "platform/desktop/qt/window_registry.h"

#include <QVariant>
#include <algorithm>
#include <map>
#include <unordered_map>

#include "platform/desktop/qt/native_widget.h"

namespace jotlet {

namespace {

constexpr char kHandleProperty[] = "jotletHandle";

// Lives to the very end of the process: objects that the program destroys after main still ask about their handles.
struct Tables {
    std::unordered_map<WindowHandle, WindowEntry> windows;
    std::map<std::string, WindowClass, std::less<>> classes;
    std::vector<QPointer<NativeWidget>> dead;
    WindowHandle last = 0;
    int depth = 0;
    std::vector<int> loops{0};  // handlers that ran when each loop was entered
};

Tables& All()
{
    static auto& tables = *std::make_unique<Tables>().release();
    return tables;
}

// No handler of the window can be running.
bool IsIdle(const NativeWidget& window)
{
    const Tables& all = All();
    const auto loop = static_cast<std::size_t>(window.BirthLoop());
    return all.depth <= all.loops[std::min(loop, all.loops.size() - 1)];
}

}  // namespace

WindowHandle NewHandle()
{
    return ++All().last;
}

void RegisterHandle(WindowHandle handle, WindowEntry entry)
{
    SetHandleOf(entry.widget, handle);
    All().windows[handle] = std::move(entry);
}

void ForgetHandle(WindowHandle handle)
{
    All().windows.erase(handle);
}

const WindowEntry* FindEntry(WindowHandle handle)
{
    const auto found = All().windows.find(handle);
    return found == All().windows.end() || !found->second.widget ? nullptr : &found->second;
}

NativeWidget* NativeOf(WindowHandle handle)
{
    const WindowEntry* entry = FindEntry(handle);
    return entry ? entry->native : nullptr;
}

QWidget* WidgetOf(WindowHandle handle)
{
    const WindowEntry* entry = FindEntry(handle);
    return entry ? entry->widget.data() : nullptr;
}

void SetHandleOf(QWidget* widget, WindowHandle handle)
{
    widget->setProperty(kHandleProperty, QVariant::fromValue<qulonglong>(handle));
}

WindowHandle HandleOf(const QWidget* widget)
{
    for (; widget; widget = widget->parentWidget()) {
        if (const auto* native = dynamic_cast<const NativeWidget*>(widget))
            return native->Alive() ? native->Handle() : 0;
        const auto handle = static_cast<WindowHandle>(widget->property(kHandleProperty).toULongLong());
        if (handle)
            return FindEntry(handle) ? handle : 0;
    }
    return 0;
}

std::vector<WindowHandle> AllHandles()
{
    std::vector<WindowHandle> handles;
    for (const auto& [handle, entry] : All().windows)
        handles.push_back(handle);
    return handles;
}

const WindowClass* FindClass(std::string_view name)
{
    const auto found = All().classes.find(name);
    return found == All().classes.end() ? nullptr : &found->second;
}

bool IsClassRegistered(std::string_view name)
{
    return FindClass(name) != nullptr;
}

void RegisterWindowClass(const WindowClass& windowClass)
{
    All().classes.try_emplace(windowClass.name, windowClass);
}

HandlerScope::HandlerScope()
{
    ++All().depth;
}

HandlerScope::~HandlerScope()
{
    --All().depth;
    std::erase_if(All().dead, [](const QPointer<NativeWidget>& widget) {
        if (widget && !IsIdle(*widget))
            return false;
        if (widget)
            widget->deleteLater();
        return true;
    });
}

int HandlerDepth()
{
    return All().depth;
}

void DeleteWhenIdle(NativeWidget* widget)
{
    if (IsIdle(*widget))
        widget->deleteLater();
    else
        All().dead.emplace_back(widget);
}

LoopScope::LoopScope()
{
    All().loops.push_back(All().depth);
}

LoopScope::~LoopScope()
{
    All().loops.pop_back();
}

int LoopDepth()
{
    return static_cast<int>(All().loops.size()) - 1;
}

}  // namespace jotlet
