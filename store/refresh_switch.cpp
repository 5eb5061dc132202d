#include "store/refresh_switch.h"

namespace jotlet {
namespace {

// Of the process: a modal window runs the timers of all lists.
bool enabled = true;

}  // namespace

void SuspendRefresh()
{
    enabled = false;
}

void ResumeRefresh()
{
    enabled = true;
}

bool IsRefreshEnabled()
{
    return enabled;
}

}  // namespace jotlet
