#include "bench/drives/host.h"

#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <random>
#include <thread>

#include "bench/drives/hands.h"
#include "notes/model/note_file.h"
#include "platform/base/text.h"

namespace jotlet {
namespace {

constexpr int kCannotOpen = 3;
constexpr std::size_t kMostOwnNotes = 300;

class Host {
public:
    Host(const WorkOrder& order, std::atomic<int>& asked)
        : order(order), asked(asked), journal(order.journal), random(order.seed * 3 + static_cast<unsigned>(order.host))
    {
        if (order.jotctl.empty())
            hands = std::make_unique<OpenCopy>(order.file);
        else
            hands = std::make_unique<JotctlCalls>(order.jotctl, order.file, random(),
                                                  order.kills > 0 ? std::max(2, order.changes / order.kills) : 0);
    }

    int Run(std::int64_t until)
    {
        for (const Entry& entry : Journal::Read(order.journal))
            ledger.Apply(entry);
        random.discard(static_cast<unsigned>(asked));
        if (!hands->Open())
            return kCannotOpen;
        Recover();
        for (; asked < order.changes && NowMs() < until; ++asked)
            ChangeSomething();
        return 0;
    }

private:
    // Takes up the notes of an earlier life.
    void Recover()
    {
        for (auto& [key, fate] : ledger.notes) {
            if (IsShared(key) || fate.isFaulty || fate.confirmed == 0 || fate.isDeleted)
                continue;
            fate.place = hands->Find(key, fate);
            if (fate.place != 0)
                own.push_back(key);
            else if (!fate.MayBeMissing())
                Note(Mark::Lost, kAdd, key, fate.confirmed, 0);
        }
    }

    void ChangeSomething()
    {
        const unsigned choice = random() % 100;
        if (choice < 35 && hands->CanCount())
            Count();
        else if (choice < 55 && !own.empty())
            Edit();
        else if (!own.empty() && (choice < 65 || own.size() > kMostOwnNotes))
            Delete();
        else
            Add();
    }

    void Note(Mark mark, std::string_view deed, const std::string& key, int version, std::uint64_t place)
    {
        const Entry entry{0, mark, std::string(deed), key, version, place, {}};
        journal.Write(entry);
        ledger.Apply(entry);
    }

    // True while the host may go on with the note.
    bool Tell(Outcome outcome, std::string_view deed, const std::string& key, int version, std::uint64_t place)
    {
        constexpr Mark kMarks[] = {Mark::Confirmed, Mark::Refused, Mark::Stuck, Mark::Lost, Mark::PutBack};
        if (outcome != Outcome::Killed)
            Note(kMarks[static_cast<int>(outcome)], deed, key, version, place);
        return outcome == Outcome::Done || outcome == Outcome::Refused || outcome == Outcome::Killed;
    }

    void Add()
    {
        std::string key = order.host + std::to_string(ledger.notes.size());
        std::uint64_t place = 0;
        Note(Mark::Intent, kAdd, key, 1, 0);
        const Outcome outcome = hands->Add(key, TextOf(key, 1), place);
        if (Tell(outcome, kAdd, key, 1, place) && outcome == Outcome::Done)
            own.push_back(std::move(key));
    }

    void Edit()
    {
        const std::size_t chosen = random() % own.size();
        const std::string key = own[chosen];
        const NoteFate before = ledger.notes[key];
        const int version = before.NextVersion();
        Note(Mark::Intent, kEdit, key, version, before.place);
        if (!Tell(hands->Edit(key, before, TextOf(key, version)), kEdit, key, version, before.place))
            LetGo(chosen);
    }

    void Delete()
    {
        const std::size_t chosen = random() % own.size();
        const std::string key = own[chosen];
        const NoteFate before = ledger.notes[key];
        Note(Mark::Intent, kDelete, key, 0, before.place);
        Tell(hands->Delete(key, before), kDelete, key, 0, before.place);
        LetGo(chosen);
    }

    void Count()
    {
        const int number = static_cast<int>(random() % kSharedNotes);
        const std::string key = SharedKey(number);
        const NoteFate before = ledger.notes[key];
        if (before.isStuck || before.isFaulty)
            return;
        int counted = before.confirmed;
        Note(Mark::Intent, kCount, key, before.NextVersion(), 0);
        const Outcome outcome = hands->Count(number, order.host - 'a', before, counted);
        Tell(outcome, kCount, key, counted, 0);
    }

    void LetGo(std::size_t chosen)
    {
        own[chosen] = own.back();
        own.pop_back();
    }

    const WorkOrder& order;
    std::atomic<int>& asked;  // survives this life
    Journal journal;
    Ledger ledger;
    std::mt19937 random;
    std::unique_ptr<Hands> hands;
    std::vector<std::string> own;
};

// Lets the host live until it has asked for some more changes and is in the middle of one.
void KillSomewhere(pid_t host, const std::atomic<int>& asked, int more, unsigned microseconds)
{
    const int target = asked + more;
    int status = 0;
    while (asked < target) {
        if (waitpid(host, &status, WNOHANG) == host)
            return;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
    kill(host, SIGKILL);
    waitpid(host, &status, 0);
}

// One life of the host in a process of its own.
pid_t Start(const WorkOrder& order, std::atomic<int>& asked, std::int64_t until)
{
    const pid_t child = fork();
    if (child == 0)
        _exit(Host(order, asked).Run(until));
    return child;
}

int WorkWithKills(const WorkOrder& order, std::atomic<int>& asked, std::int64_t until)
{
    std::mt19937 random(order.seed * 7 + static_cast<unsigned>(order.host));
    const int between = std::max(1, order.changes / std::max(1, order.kills));
    const std::int64_t start = NowMs();
    for (int kills = order.kills; kills > 0 && asked < order.changes && NowMs() < until; --kills) {
        const auto usual = static_cast<unsigned>((NowMs() - start) * 1000 / std::max<int>(1, asked) + 1000);
        const pid_t host = Start(order, asked, until);
        KillSomewhere(host, asked, static_cast<int>(random() % static_cast<unsigned>(2 * between)), random() % usual);
    }
    int status = 0;
    waitpid(Start(order, asked, until), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}

}  // namespace

int MakeFile(const std::string& path)
{
    if (CreateNoteFile(path, WithExamples::No) != 1)
        return kCannotOpen;
    OpenedTable opened = OpenTable(path, "", kNoteRecordSize);
    if (!opened)
        return kCannotOpen;
    for (int number = 0; number < kSharedNotes; ++number) {
        NoteRecord note;
        InitNoteRecord(*opened.table, note);
        StoreText(note.title, SharedKey(number));
        StoreText(note.text, CountText({}));
        if (opened.table->AddRecord(BytesOf(note)) != 1 || opened.table->Flush() != 1)
            return 1;
    }
    return 0;
}

int Work(const WorkOrder& order)
{
    void* memory = mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        return 1;
    auto& asked = *new (memory) std::atomic<int>(0);
    const std::int64_t until = NowMs() + std::int64_t{1000} * order.seconds;
    if (order.kills > 0 && order.jotctl.empty())
        return WorkWithKills(order, asked, until);
    return Host(order, asked).Run(until);
}

}  // namespace jotlet
