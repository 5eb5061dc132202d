#include "bench/drives/measure.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <map>
#include <optional>
#include <sstream>
#include <thread>
#include <vector>

#include "bench/drives/journal.h"
#include "notes/model/note_file.h"
#include "notes/model/note_record.h"
#include "platform/base/text.h"
#include "store/record_query.h"

namespace jotlet {
namespace {

constexpr int kCannotOpen = 3;
constexpr int kRounds = 5;
constexpr int kCellsOnABoard = 40;

void Pause(std::int64_t ms)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

NoteRecord NewNote(const TableFile& table, const std::string& title, const std::string& text)
{
    NoteRecord note;
    InitNoteRecord(table, note);
    StoreText(note.title, title);
    StoreText(note.text, text);
    return note;
}

// --- freshness

bool EditNote(TableFile& table, RecordAddress address, const std::string& text)
{
    NoteRecord note;
    if (table.LockRecord(address) != 1 || table.ReadRecord(BytesOf(note), address) != 1)
        return false;
    StoreText(note.text, text);
    const bool isWritten = table.WriteRecord(BytesOf(note), address) == 1;
    table.UnlockRecord(address);
    return table.Flush() == 1 && isWritten;
}

// Numbers that Tell wrote and the moments at which it did, from all texts of the file.
void LookForNews(const TableFile& table, std::vector<std::int64_t>& delays)
{
    const FieldRange text[] = {{kTextOffset, 60}};
    table.ForEachRecord(text, [&](RecordAddress, std::span<const std::byte> bytes) {
        unsigned number = 0;
        long long since = 0;
        if (std::sscanf(reinterpret_cast<const char*>(bytes.data()), "news %u %lld", &number, &since) == 2 &&
            number < delays.size() && delays[number] < 0)
            delays[number] = NowMs() - since;
        return true;
    });
}

// --- cost

struct Calls {
    std::map<std::string, std::int64_t> kinds;
    std::int64_t count = 0;
    std::int64_t bytesRead = 0;
};

// What the NFS client tells of a mount; nothing for other mounts.
std::optional<Calls> CallsOf(const std::string& mount)
{
    std::ifstream stats("/proc/self/mountstats");
    bool isHere = false;
    bool isInTable = false;
    Calls calls;
    for (std::string line; std::getline(stats, line);) {
        if (line.starts_with("device ")) {
            isHere = line.find(" mounted on " + mount + " with fstype nfs") != std::string::npos;
            isInTable = false;
        } else if (isHere && line.find("per-op statistics") != std::string::npos) {
            isInTable = true;
        } else if (isHere && isInTable) {
            std::istringstream words(line);
            std::string name;
            std::int64_t count = 0, sent = 0, timeouts = 0, bytesSent = 0, bytesReceived = 0;
            if (!(words >> name >> count >> sent >> timeouts >> bytesSent >> bytesReceived))
                continue;
            calls.kinds[name] = count;
            calls.count += count;
            calls.bytesRead += name == "READ:" ? bytesReceived : 0;
        }
    }
    if (calls.count == 0)
        return std::nullopt;
    return calls;
}

// What this process has read by system calls, where a mount doesn't tell more.
std::int64_t BytesRead()
{
    std::ifstream io("/proc/self/io");
    std::string name;
    std::int64_t bytes = 0;
    io >> name >> bytes;
    return bytes;
}

struct Price {
    double calls = 0;
    double kilobytes = 0;
};

// Tells the kinds of calls on standard error.
template <typename Work>
Price PriceOf(const char* what, const std::string& mount, int times, Work work)
{
    const std::optional<Calls> before = CallsOf(mount);
    const std::int64_t readBefore = BytesRead();
    for (int i = 0; i < times; ++i)
        work();
    const std::int64_t readAfter = BytesRead();
    const std::optional<Calls> after = CallsOf(mount);
    if (!before || !after)
        return {-1, static_cast<double>(readAfter - readBefore) / times / 1024};
    std::fprintf(stderr, "%s:", what);
    for (const auto& [kind, count] : after->kinds)
        if (const std::int64_t made = count - before->kinds.at(kind); made > 0)
            std::fprintf(stderr, " %s %.1f", kind.c_str(), static_cast<double>(made) / times);
    std::fprintf(stderr, "\n");
    return {static_cast<double>(after->count - before->count) / times,
            static_cast<double>(after->bytesRead - before->bytesRead) / times / 1024};
}

void PrintCalls(double calls)
{
    if (calls < 0)
        std::printf("- ");
    else
        std::printf("%.1f ", calls);
}

}  // namespace

bool AddNote(TableFile& table, const std::string& title, const std::string& text, RecordAddress* address)
{
    return table.AddRecord(BytesOf(NewNote(table, title, text)), address) == 1 && table.Flush() == 1;
}

void QueryByTitle(TableFile& table, RecordQuery& query)
{
    query.Reset();
    query.PrepareResults();
    query.AddAllTerm();
    table.RunQuery(query);
    query.Sort(table, kTitleOffset, kTitleSize, CompareTitles);
}

bool Refresh(TableFile& table, RecordQuery& query)
{
    const std::uint64_t stamp = table.GetChangeStamp();
    if (table.RunQuery(query) != 1 || query.Resort() != 1)
        return false;
    query.seenStamp = stamp;
    NoteRecord note;
    const std::span<const RecordAddress> results = query.Results();
    for (const RecordAddress address : results.first(std::min<std::size_t>(kCellsOnABoard, results.size())))
        table.ReadListedRecord(BytesOf(note), address);
    return true;
}

int Tell(const std::string& file, int count)
{
    OpenedTable opened = OpenTable(file, "", kNoteRecordSize);
    if (!opened)
        return kCannotOpen;
    RecordAddress address = 0;
    for (int i = 0; i < count; ++i) {
        Pause(2300);
        const std::string text = "news " + std::to_string(i) + ' ' + std::to_string(NowMs());
        const bool isDone =
            i % 2 == 0 ? AddNote(*opened.table, "news", text, &address) : EditNote(*opened.table, address, text);
        if (!isDone)
            std::fprintf(stderr, "change %d was refused\n", i);
        // The edit comes before anybody may have seen the add.
        if (i % 2 == 0)
            Pause(1500);
    }
    return 0;
}

int Watch(const std::string& file, int count)
{
    OpenedTable opened = OpenTable(file, "", kNoteRecordSize);
    // A copy that has written keeps more in its cache than one that only reads.
    if (!opened || !AddNote(*opened.table, "watcher", "here"))
        return kCannotOpen;
    std::vector<std::int64_t> delays(static_cast<std::size_t>(count), -1);
    std::uint64_t seen = 0;
    const std::int64_t patience = NowMs() + 3100 * count + 15'000;
    while (std::count(delays.begin(), delays.end(), -1) > 0 && NowMs() < patience) {
        const std::uint64_t stamp = opened.table->GetChangeStamp();
        if (stamp != seen)
            LookForNews(*opened.table, delays);
        seen = stamp;
        Pause(1000);
    }
    std::erase(delays, -1);
    std::sort(delays.begin(), delays.end());
    const std::int64_t middle = delays.empty() ? -1 : delays[delays.size() / 2];
    std::printf("%lld %lld %zu\n", static_cast<long long>(middle),
                static_cast<long long>(delays.empty() ? -1 : delays.back()), delays.size());
    return 0;
}

std::string SampleTitle(int number, int count)
{
    return "note " + std::to_string(number * 7919 % count);
}

int Fill(const std::string& file, int count)
{
    OpenedTable opened = OpenNoteFile(file, "", WithExamples::No);
    if (!opened)
        return kCannotOpen;
    for (int i = 0; i < count; ++i) {
        const std::string title = SampleTitle(i, count);
        if (opened.table->AddRecord(BytesOf(NewNote(*opened.table, title, TextOf(title, 1)))) != 1)
            return 1;
    }
    return opened.table->Flush() == 1 ? 0 : 1;
}

int Cost(const std::string& file, const std::string& mount, const std::string& foreignFile)
{
    OpenedTable own = OpenTable(file, "", kNoteRecordSize);
    OpenedTable foreign = OpenTable(foreignFile, "", kNoteRecordSize);
    if (!own || !foreign)
        return kCannotOpen;
    RecordQuery query;
    QueryByTitle(*own.table, query);
    const auto add = [&] { AddNote(*own.table, "cost", "of an add"); };
    add();
    const Price added = PriceOf("add", mount, kRounds, add);
    Pause(1000);
    Refresh(*own.table, query);
    // Where locks stay a copy gives signs of life besides.
    const Price idle = PriceOf("no poll", mount, kRounds, [] { Pause(1000); });
    const Price polled = PriceOf("poll", mount, kRounds, [&] {
        Pause(1000);
        own.table->GetChangeStamp();
    });
    AddNote(*foreign.table, "foreign", "change");
    Pause(1000);
    const Price refreshed = PriceOf("refresh", mount, 1, [&] { Refresh(*own.table, query); });
    PrintCalls(added.calls);
    PrintCalls(polled.calls < 0 ? -1 : polled.calls - idle.calls);
    PrintCalls(refreshed.calls);
    std::printf("%.0f\n", refreshed.kilobytes);
    return 0;
}

}  // namespace jotlet
