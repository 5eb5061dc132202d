// The same test with a second opener in this process and in another one: locks must hold between both.
#pragma once

#include <cstring>
#include <memory>
#include <sstream>
#include <string>

#include "store/refresh_switch.h"
#include "store/table_file.h"
#include "support/forked_process.h"

namespace jotlet::test {

enum class Opener { SameProcess, OtherProcess };

// A table opened by somebody else, who does what is asked and tells the result.
class TableOpener {
public:
    virtual ~TableOpener() = default;
    virtual int LockRecord(RecordAddress address) = 0;
    virtual int UnlockRecord(RecordAddress address) = 0;
    virtual int DeleteRecord(RecordAddress address) = 0;
    // Adds a record of zeroes with this id. The address, or 0.
    virtual RecordAddress AddRecord(std::uint64_t id) = 0;
    virtual std::uint64_t GetChangeStamp() = 0;
    virtual std::uint32_t OpenCount() = 0;
    // Gone without a word, as by a crash.
    virtual void Vanish() = 0;
};

class OpenerHere final : public TableOpener {
public:
    explicit OpenerHere(const std::string& path) : table(std::make_unique<TableFile>(path, "")) {}
    int LockRecord(RecordAddress address) override { return table->LockRecord(address); }
    int UnlockRecord(RecordAddress address) override { return table->UnlockRecord(address); }
    int DeleteRecord(RecordAddress address) override { return table->DeleteRecord(address); }
    RecordAddress AddRecord(std::uint64_t id) override
    {
        std::vector<std::byte> record = table->AllocRecordBuffer();
        RecordPrefix prefix{};
        prefix.active = 1;
        prefix.uniqueId = id;
        std::memcpy(record.data(), &prefix, sizeof prefix);
        RecordAddress address = 0;
        return table->AddRecord(record, &address) == 1 ? address : 0;
    }
    std::uint64_t GetChangeStamp() override { return table->GetChangeStamp(); }
    std::uint32_t OpenCount() override
    {
        TableHeader header{};
        table->ReadHeader(header);
        return header.openCount;
    }
    void Vanish() override
    {
        // An object cannot be killed; what a kill would leave is put back by hand.
        TableHeader header{};
        table->ReadHeader(header);
        const std::uint32_t openCount = header.openCount;
        const std::string path = table->Path();
        table.reset();
        const FileHandleOwner file(FileOpen(path));
        FileWriteWhole(file.Get(), BytesOf(openCount), sizeof(SizeBlock) + offsetof(TableHeader, openCount));
    }

private:
    std::unique_ptr<TableFile> table;
};

class OpenerElsewhere final : public TableOpener {
public:
    explicit OpenerElsewhere(const std::string& path) : child([path](Line& line) { return Serve(path, line); })
    {
        child.Talk().Hear();  // it has the file open
    }
    int LockRecord(RecordAddress address) override { return static_cast<int>(Ask("lock", address)); }
    int UnlockRecord(RecordAddress address) override { return static_cast<int>(Ask("unlock", address)); }
    int DeleteRecord(RecordAddress address) override { return static_cast<int>(Ask("delete", address)); }
    RecordAddress AddRecord(std::uint64_t id) override
    {
        return static_cast<RecordAddress>(Ask("add", static_cast<long long>(id)));
    }
    std::uint64_t GetChangeStamp() override { return static_cast<std::uint64_t>(Ask("stamp", 0)); }
    std::uint32_t OpenCount() override { return static_cast<std::uint32_t>(Ask("count", 0)); }
    void Vanish() override { child.Kill(); }

private:
    long long Ask(const std::string& what, long long argument)
    {
        child.Talk().Say(what + " " + std::to_string(argument));
        const std::string answer = child.Talk().Hear();
        return answer.empty() ? -1000 : std::stoll(answer);
    }
    static int Serve(const std::string& path, Line& line)
    {
        OpenerHere opener(path);
        line.Say("open");
        for (std::string request = line.Hear(); !request.empty(); request = line.Hear()) {
            std::istringstream words(request);
            std::string what;
            long long argument = 0;
            words >> what >> argument;
            const auto address = static_cast<RecordAddress>(argument);
            long long answer = -1;
            if (what == "lock")
                answer = opener.LockRecord(address);
            else if (what == "unlock")
                answer = opener.UnlockRecord(address);
            else if (what == "delete")
                answer = opener.DeleteRecord(address);
            else if (what == "add")
                answer = opener.AddRecord(static_cast<std::uint64_t>(argument));
            else if (what == "stamp")
                answer = static_cast<long long>(opener.GetChangeStamp());
            else if (what == "count")
                answer = opener.OpenCount();
            line.Say(std::to_string(answer));
        }
        return 0;
    }

    ForkedProcess child;
};

inline std::unique_ptr<TableOpener> MakeOpener(Opener where, const std::string& path)
{
    if (where == Opener::SameProcess)
        return std::make_unique<OpenerHere>(path);
    return std::make_unique<OpenerElsewhere>(path);
}

}  // namespace jotlet::test
