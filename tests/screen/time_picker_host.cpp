// A time picker by itself, for the tests on a screen: no dialog of the program asks for a span.
//
//   time_picker_host span|single FROM TO     times as HH:MM
//
// Prints "ok FROM TO" or "cancel".
#include <cstdio>
#include <cstring>

#include "platform/base/clock.h"
#include "platform/desktop/application.h"
#include "resources/dialog_ids.h"
#include "toolkit/time_dialog.h"

namespace jotlet {
namespace {

TimeValue ParseTime(const char* text)
{
    int hour = 0;
    int minute = 0;
    std::sscanf(text, "%d:%d", &hour, &minute);
    return {hour % 12, minute, 0, hour < 12 ? kBeforeNoon : kAfterNoon};
}

std::string TimeText(const TimeValue& time)
{
    std::string text;
    FormatTime(text, time.hour, time.minute, time.halfDay);
    return text;
}

int Run(const char* mode, const char* from, const char* to)
{
    SetClockFormat(ClockFormat::Hours24);
    TimeValue pickedFrom;
    TimeValue pickedTo;
    TimeDialog dialog(ParseTime(from), ParseTime(to), &pickedFrom, &pickedTo);
    if (std::strcmp(mode, "single") == 0)
        dialog.SetSingleTime();
    if (dialog.DoModal(nullptr, time_picker_ids::kDialog) == 1)
        std::printf("ok %s %s\n", TimeText(pickedFrom).c_str(), TimeText(pickedTo).c_str());
    else
        std::puts("cancel");
    return 0;
}

}  // namespace
}  // namespace jotlet

int main(int argc, char** argv)
{
    if (argc != 4)
        return 2;
    jotlet::Application application(argc, argv);
    return jotlet::Run(argv[1], argv[2], argv[3]);
}
