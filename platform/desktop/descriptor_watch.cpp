#include <QCoreApplication>
#include <QSocketNotifier>
#include <map>
#include <memory>

#include "platform/desktop/application.h"

namespace jotlet {

namespace {

std::map<int, std::unique_ptr<QSocketNotifier>>& Watches()
{
    static std::map<int, std::unique_ptr<QSocketNotifier>> watches;
    return watches;
}

}  // namespace

void WatchDescriptor(int descriptor, std::function<void()> readable)
{
    if (!qApp || descriptor < 0)
        return;
    UnwatchDescriptor(descriptor);
    auto watch = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    QObject::connect(watch.get(), &QSocketNotifier::activated, watch.get(),
                     [call = std::move(readable)](QSocketDescriptor, QSocketNotifier::Type) {
                         const auto keep = call;  // the call may end the watch that it comes from
                         keep();
                     });
    Watches()[descriptor] = std::move(watch);
}

void UnwatchDescriptor(int descriptor)
{
    const auto found = Watches().find(descriptor);
    if (found == Watches().end())
        return;
    found->second->setEnabled(false);
    found->second.release()->deleteLater();  // it may be the one that is calling
    Watches().erase(found);
}

}  // namespace jotlet
