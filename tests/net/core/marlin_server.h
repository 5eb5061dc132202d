// Plays a Marlin Server on this computer: takes one connection after the other, reads a frame of 100 bytes, answers
// four bytes, closes. Knows its users by the whole width of the e-mail field.
#pragma once

#include <poll.h>

#include <atomic>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/loopback.h"

namespace jotlet::test {

enum class Conduct {
    Serve,        // as told above
    CloseAtOnce,  // without reading or answering
    Hang,         // reads, and never answers
    Answer,       // reads, and sends `answer` as it stands, in single bytes
};

class MarlinServer {
public:
    explicit MarlinServer(Conduct conduct = Conduct::Serve, std::string answer = {}, int family = AF_INET)
        : conduct(conduct), answer(std::move(answer)), listener(family), thread([this] { Run(); })
    {
    }
    ~MarlinServer()
    {
        stopping = true;
        listener.ShutDown();
        thread.join();
    }
    MarlinServer(const MarlinServer&) = delete;
    MarlinServer& operator=(const MarlinServer&) = delete;

    explicit operator bool() const { return static_cast<bool>(listener); }
    std::string Host() const { return listener.Host(); }
    std::uint16_t Port() const { return listener.Port(); }

    // What came in, a text a connection.
    std::vector<std::string> Frames() const
    {
        const std::lock_guard lock(mutex);
        return frames;
    }

private:
    void Run()
    {
        for (;;) {
            const int connection = listener.Accept();
            if (connection < 0)
                return;
            if (conduct != Conduct::CloseAtOnce)
                Exchange(connection);
            close(connection);
        }
    }

    void Exchange(int connection)
    {
        const std::string frame = Loopback::Read(connection, 100);
        {
            const std::lock_guard lock(mutex);
            frames.push_back(frame);
        }
        if (conduct == Conduct::Hang) {
            // Until the client gives up and closes.
            pollfd entry{connection, POLLRDHUP, 0};
            while (!stopping && poll(&entry, 1, 20) == 0) {
            }
        } else if (conduct == Conduct::Answer) {
            for (const char byte : answer)
                send(connection, &byte, 1, MSG_NOSIGNAL);
        } else {
            Serve(connection, frame);
        }
    }

    void Serve(int connection, const std::string& frame)
    {
        if (frame.size() != 100 || frame.substr(0, 4) != std::string("\1\0\0\0", 4))
            return;  // no command that it knows: it closes without an answer
        const bool isNew = users.insert(frame.substr(4, 64)).second;
        const char status[4] = {isNew ? '\0' : '\1', 0, 0, 0};
        send(connection, status, sizeof status, MSG_NOSIGNAL);
    }

    Conduct conduct;
    std::string answer;
    Loopback listener;
    std::atomic<bool> stopping{false};
    mutable std::mutex mutex;
    std::vector<std::string> frames;
    std::set<std::string> users;
    std::thread thread;
};

}  // namespace jotlet::test
