#include "bench/drives/hands.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <thread>

#include "platform/base/text.h"

namespace jotlet {
namespace {

// A change takes milliseconds; on an emulated machine under load, a second.
constexpr std::int64_t kLockPatienceMs = 15'000;
constexpr int kExitRefused = 1;
constexpr int kExitLocked = 5;

void Pause(int ms)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

}  // namespace

// --- a copy that keeps the file open

bool OpenCopy::Open()
{
    OpenedTable opened = OpenTable(path, "", kNoteRecordSize);
    if (!opened)
        return false;
    table = std::move(opened.table);
    const FieldRange title[] = {{kTitleOffset, kTitleSize}};
    return table->ForEachRecord(title, [&](RecordAddress address, std::span<const std::byte> bytes) {
        const auto* text = reinterpret_cast<const char*>(bytes.data());
        places[std::string(FieldText({text, bytes.size()}))] = address;
        return true;
    }) == 1;
}

std::uint64_t OpenCopy::Find(const std::string& key, const NoteFate&)
{
    const auto found = places.find(key);
    return found == places.end() ? 0 : static_cast<std::uint64_t>(found->second);
}

Outcome OpenCopy::Add(const std::string& key, const std::string& text, std::uint64_t& place)
{
    NoteRecord note;
    InitNoteRecord(*table, note);
    StoreText(note.title, key);
    StoreText(note.text, text);
    RecordAddress address = 0;
    const int added = table->AddRecord(BytesOf(note), &address);
    place = static_cast<std::uint64_t>(address);
    return added == 1 && table->Flush() == 1 ? Outcome::Done : Outcome::Refused;
}

Outcome OpenCopy::Hold(const std::string& key, RecordAddress address, NoteRecord& note)
{
    const std::int64_t start = NowMs();
    while (table->LockRecord(address) != 1) {
        // Somebody else has deleted it, or its slot was given away.
        if (table->ReadRecord(BytesOf(note), address) != 1 || FieldText(note.title) != key)
            return Outcome::Lost;
        if (NowMs() - start > kLockPatienceMs)
            return Outcome::Stuck;
        Pause(5);
    }
    if (table->ReadRecord(BytesOf(note), address) == 1 && FieldText(note.title) == key)
        return Outcome::Done;
    table->UnlockRecord(address);
    return Outcome::Lost;
}

Outcome OpenCopy::Finish(int result, RecordAddress address)
{
    table->UnlockRecord(address);
    return table->Flush() == 1 && result == 1 ? Outcome::Done : Outcome::Refused;
}

Outcome OpenCopy::Edit(const std::string& key, const NoteFate& fate, const std::string& text)
{
    const auto address = static_cast<RecordAddress>(fate.place);
    NoteRecord note;
    if (const Outcome held = Hold(key, address, note); held != Outcome::Done)
        return held;
    // The intent of this very edit stands in the fate already, so a text half written before a kill is no surprise.
    const int version = VersionOf(key, FieldText(note.text));
    if (!fate.MayHave(version)) {
        table->UnlockRecord(address);
        return Outcome::PutBack;
    }
    StoreText(note.text, text);
    return Finish(table->WriteRecord(BytesOf(note), address), address);
}

Outcome OpenCopy::Delete(const std::string& key, const NoteFate& fate)
{
    const auto address = static_cast<RecordAddress>(fate.place);
    NoteRecord note;
    const Outcome held = Hold(key, address, note);
    return held == Outcome::Done ? Finish(table->DeleteRecord(address), address) : held;
}

Outcome OpenCopy::Count(int number, int host, const NoteFate& fate, int& counted)
{
    const std::string key = SharedKey(number);
    const auto address = static_cast<RecordAddress>(Find(key, fate));
    NoteRecord note;
    if (const Outcome held = Hold(key, address, note); held != Outcome::Done)
        return held;
    int counts[kCountingHosts] = {};
    if (!ParseCounts(FieldText(note.text), counts) || counts[host] < fate.confirmed) {
        table->UnlockRecord(address);
        return Outcome::PutBack;
    }
    counted = ++counts[host];
    StoreText(note.text, CountText(counts));
    return Finish(table->WriteRecord(BytesOf(note), address), address);
}

// --- jotctl for each change

JotctlCalls::JotctlCalls(std::string program, std::string path, unsigned seed, int killOneIn)
    : program(std::move(program)), path(std::move(path)), state(seed * 2654435761u + 1), killOneIn(killOneIn)
{
}

Outcome JotctlCalls::Call(const std::vector<std::string>& arguments, std::string& output)
{
    state = state * 6364136223846793005u + 1442695040888963407u;
    const bool isKilled = killOneIn > 0 && (state >> 33) % static_cast<unsigned>(killOneIn) == 0;
    int ends[2];
    if (pipe(ends) != 0)
        return Outcome::Refused;
    const std::int64_t start = NowMs();
    const pid_t child = fork();
    if (child == 0) {
        std::vector<char*> argv = {program.data()};
        for (const std::string& argument : arguments)
            argv.push_back(const_cast<char*>(argument.c_str()));
        argv.push_back(nullptr);
        dup2(ends[1], 1);
        dup2(ends[1], 2);
        execv(program.c_str(), argv.data());
        _exit(127);
    }
    close(ends[1]);
    if (isKilled) {
        std::this_thread::sleep_for(std::chrono::microseconds((state >> 20) % (1 + 1200 * usualMs)));
        kill(child, SIGKILL);
    }
    char buffer[512];
    for (ssize_t count = 0; (count = read(ends[0], buffer, sizeof buffer)) > 0;)
        output.append(buffer, static_cast<std::size_t>(count));
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    if (!WIFEXITED(status))
        return Outcome::Killed;
    usualMs = (7 * usualMs + (NowMs() - start)) / 8;
    switch (WEXITSTATUS(status)) {
        case 0:
            return Outcome::Done;
        case kExitLocked:
            return Outcome::Stuck;
        case kExitRefused:
            return output.find("There is no note") != std::string::npos ? Outcome::Lost : Outcome::Refused;
        default:
            return Outcome::Refused;
    }
}

Outcome JotctlCalls::CallUntilFree(const std::vector<std::string>& arguments)
{
    const std::int64_t start = NowMs();
    std::string output;
    Outcome outcome = Call(arguments, output);
    while (outcome == Outcome::Stuck && NowMs() - start < kLockPatienceMs) {
        Pause(5);
        outcome = Call(arguments, output);
    }
    return outcome;
}

Outcome JotctlCalls::Add(const std::string& key, const std::string& text, std::uint64_t& place)
{
    std::string output;
    const Outcome outcome = Call({"add", path, "--title", key, "--text", text}, output);
    if (outcome == Outcome::Done)
        place = std::strtoull(output.c_str(), nullptr, 16);
    return outcome;
}

namespace {

std::string IdText(std::uint64_t id)
{
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(id));
    return text;
}

}  // namespace

Outcome JotctlCalls::Edit(const std::string&, const NoteFate& fate, const std::string& text)
{
    return CallUntilFree({"edit", path, IdText(fate.place), "--text", text});
}

Outcome JotctlCalls::Delete(const std::string&, const NoteFate& fate)
{
    return CallUntilFree({"delete", path, IdText(fate.place)});
}

}  // namespace jotlet
