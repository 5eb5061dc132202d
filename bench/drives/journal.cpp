#include "bench/drives/journal.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <sstream>

namespace jotlet {

bool NoteFate::MayHave(int version) const
{
    return (!isDeleted && version > 0 && version == confirmed) ||
           (version > 0 && std::find(open.begin(), open.end(), version) != open.end());
}

bool NoteFate::MayBeMissing() const
{
    return isDeleted || confirmed == 0 || std::find(open.begin(), open.end(), 0) != open.end();
}

int NoteFate::NextVersion() const
{
    return std::max(confirmed, open.empty() ? 0 : *std::max_element(open.begin(), open.end())) + 1;
}

void Ledger::Apply(const Entry& entry)
{
    NoteFate& fate = notes[entry.key];
    if (entry.place != 0)
        fate.place = entry.place;
    switch (entry.mark) {
        case Mark::Intent:
            fate.open.push_back(entry.version);
            break;
        case Mark::Confirmed:
            fate.isDeleted = entry.deed == kDelete;
            fate.confirmed = fate.isDeleted ? fate.confirmed : entry.version;
            fate.open.clear();
            ++confirmed;
            break;
        case Mark::Refused:
            break;
        case Mark::Stuck:
            fate.isStuck = true;
            break;
        case Mark::Lost:
        case Mark::PutBack:
            fate.isFaulty = true;
            break;
    }
}

Journal::Journal(const std::string& path) : file(open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644)) {}

Journal::~Journal()
{
    close(file);
}

void Journal::Write(Entry entry)
{
    entry.ms = NowMs();
    const std::string line = ToLine(entry) + '\n';
    if (write(file, line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
        std::perror("journal");
        std::_Exit(2);
    }
}

std::vector<Entry> Journal::Read(const std::string& path)
{
    std::vector<Entry> entries;
    std::ifstream in(path);
    const std::string host = path.substr(path.find_last_of('/') + 1);
    for (std::string line; std::getline(in, line) && !in.eof();) {
        Entry entry;
        char mark = 0;
        std::istringstream words(line);
        if (words >> entry.ms >> mark >> entry.deed >> entry.key >> entry.version >> entry.place) {
            entry.mark = static_cast<Mark>(mark);
            entry.host = host;
            entries.push_back(std::move(entry));
        }
    }
    return entries;
}

std::string ToLine(const Entry& entry)
{
    return std::to_string(entry.ms) + ' ' + static_cast<char>(entry.mark) + ' ' + entry.deed + ' ' + entry.key + ' ' +
           std::to_string(entry.version) + ' ' + std::to_string(entry.place);
}

std::int64_t NowMs()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

std::string TextOf(std::string_view key, int version)
{
    const std::string word = std::string(key) + " v" + std::to_string(version) + ' ';
    const std::size_t length = 20 + std::hash<std::string>{}(word) % 1900;
    std::string text;
    while (text.size() < length)
        text += word;
    return text;
}

int VersionOf(std::string_view key, std::string_view text)
{
    const std::string start = std::string(key) + " v";
    return text.substr(0, start.size()) == start ? std::atoi(std::string(text.substr(start.size(), 8)).c_str()) : -1;
}

std::string SharedKey(int number)
{
    return "shared" + std::to_string(number);
}

bool IsShared(std::string_view key)
{
    return key.substr(0, 6) == "shared";
}

std::string CountText(const int (&counts)[kCountingHosts])
{
    char text[64];
    std::snprintf(text, sizeof text, "a %06d b %06d c %06d", counts[0], counts[1], counts[2]);
    return text;
}

bool ParseCounts(std::string_view text, int (&counts)[kCountingHosts])
{
    return std::sscanf(std::string(text).c_str(), "a %d b %d c %d", &counts[0], &counts[1], &counts[2]) == 3;
}

}  // namespace jotlet
