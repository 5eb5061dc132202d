// A second process for a test: a fork of this one that runs a function and shares none of its open files.
#pragma once

#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <functional>
#include <string>

namespace jotlet::test {

// One end of a line-by-line conversation with the other process.
class Line {
public:
    explicit Line(int socket) : socket(socket) {}
    void Say(const std::string& text) const
    {
        const std::string line = text + "\n";
        [[maybe_unused]] const auto sent = send(socket, line.data(), line.size(), MSG_NOSIGNAL);
    }
    // The next line; empty when the other side is gone.
    std::string Hear() const
    {
        std::string line;
        char c = 0;
        while (read(socket, &c, 1) == 1 && c != '\n')
            line += c;
        return line;
    }
    int Socket() const { return socket; }

private:
    int socket;
};

class ForkedProcess {
public:
    // Runs `work` in the child; its result is the exit code. What this process has open is closed there first, so that
    // a lock of ours isn't kept alive by the copy of its handle.
    explicit ForkedProcess(const std::function<int(Line&)>& work)
    {
        int ends[2];
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0)
            return;
        fflush(nullptr);
        pid = fork();
        if (pid == 0) {
            const int mine = dup2(ends[1], 3);
            close_range(4, ~0u, 0);
            Line line(mine);
            _exit(work(line));
        }
        close(ends[1]);
        line = Line(ends[0]);
    }
    ~ForkedProcess()
    {
        if (line.Socket() >= 0)
            close(line.Socket());
        if (pid > 0 && !reaped)
            Wait();
    }
    ForkedProcess(const ForkedProcess&) = delete;
    ForkedProcess& operator=(const ForkedProcess&) = delete;

    Line& Talk() { return line; }
    void Kill()
    {
        kill(pid, SIGKILL);
        Wait();
    }
    // The exit code, or minus the signal that ended it.
    int Wait()
    {
        int status = 0;
        if (reaped || waitpid(pid, &status, 0) != pid)
            return -1000;
        reaped = true;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

private:
    pid_t pid = -1;
    bool reaped = false;
    Line line{-1};
};

}  // namespace jotlet::test
