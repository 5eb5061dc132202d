#include "store/refresh_switch.h"

namespace jotlet {
namespace {

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
