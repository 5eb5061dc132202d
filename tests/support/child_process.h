// A part of a test that runs in a process of its own, for what only shows between two of them.
#pragma once

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <string>

namespace jotlet::test {

// Runs `work` in a forked child; its result is the child's exit code. Nothing of the test framework runs there: an
// expectation belongs to the parent, which asks Wait(). What still runs at the end is killed.
class ChildProcess {
public:
    explicit ChildProcess(const std::function<int()>& work) : pid(fork())
    {
        if (pid == 0)
            _exit(work());
    }
    ~ChildProcess()
    {
        if (pid > 0) {
            Kill();
            Wait();
        }
    }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    void Kill() const { kill(pid, SIGKILL); }
    // The exit code; -1 when the child was killed or never ran.
    int Wait()
    {
        int status = 0;
        const bool ended = pid > 0 && waitpid(pid, &status, 0) == pid && WIFEXITED(status);
        pid = -1;
        return ended ? WEXITSTATUS(status) : -1;
    }

private:
    pid_t pid;
};

// Runs `work` as somebody whom file modes can stop, and gives its result: as root, in a child that became user
// "nobody". `folder` then belongs to that user.
inline int RunAsOrdinaryUser(const std::string& folder, const std::function<int()>& work)
{
    constexpr uid_t kNobody = 65534;
    const bool root = geteuid() == 0;
    if (root && chown(folder.c_str(), kNobody, kNobody) != 0)
        return -1;
    ChildProcess child([&] {
        if (root && (setresgid(kNobody, kNobody, kNobody) != 0 || setresuid(kNobody, kNobody, kNobody) != 0))
            return -1;
        return work();
    });
    return child.Wait();
}

// One byte at a time between two processes, so that they wait for each other and never for a time.
class Signal {
public:
    Signal() { ok = pipe(ends) == 0; }
    ~Signal()
    {
        if (ok) {
            close(ends[0]);
            close(ends[1]);
        }
    }
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;

    bool Give() { return ok && write(ends[1], "!", 1) == 1; }
    bool Await()
    {
        char byte = 0;
        return ok && read(ends[0], &byte, 1) == 1;
    }

private:
    int ends[2] = {-1, -1};
    bool ok = false;
};

}  // namespace jotlet::test
