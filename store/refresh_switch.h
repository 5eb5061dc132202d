// The process-wide switch that keeps list refresh and alarms away from an edit or a long operation. On at the start.
//
// It is a flag and not a counter: one ResumeRefresh turns it on, however often it was turned off. TableFile::LockRecord
// turns it off, UnlockRecord on. Who turns it off round a piece of work uses RefreshPause, which puts it back as it
// found it, so that work inside somebody's edit doesn't end that edit's pause.
#pragma once

namespace jotlet {

void SuspendRefresh();
void ResumeRefresh();
bool IsRefreshEnabled();

// Off for its own lifetime, then as it was before.
class RefreshPause {
public:
    RefreshPause() : wasEnabled(IsRefreshEnabled()) { SuspendRefresh(); }
    ~RefreshPause() { wasEnabled ? ResumeRefresh() : SuspendRefresh(); }
    RefreshPause(const RefreshPause&) = delete;
    RefreshPause& operator=(const RefreshPause&) = delete;

private:
    bool wasEnabled;
};

}  // namespace jotlet
