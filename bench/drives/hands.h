// The two ways in which a host changes notes: by a copy that keeps the file open, or by calling jotctl each time.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "bench/drives/journal.h"
#include "notes/model/note_record.h"
#include "store/open_table.h"

namespace jotlet {

enum class Outcome {
    Done,     // confirmed
    Refused,  // told that it failed
    Stuck,    // locked by somebody for as long as a host waits
    Lost,     // the note isn't there
    PutBack,  // it is, with a text that it must not have any more
    Killed,   // nobody knows
};

class Hands {
public:
    virtual ~Hands() = default;
    virtual bool Open() = 0;
    // `place` becomes what the other operations take.
    virtual Outcome Add(const std::string& key, const std::string& text, std::uint64_t& place) = 0;
    virtual Outcome Edit(const std::string& key, const NoteFate& fate, const std::string& text) = 0;
    virtual Outcome Delete(const std::string& key, const NoteFate& fate) = 0;
    // Raises what `host` has counted in a shared note; `counted` is what it stands at then. `before` is told with the
    // number before the note is written.
    virtual Outcome Count(int number, int host, const NoteFate& fate, int& counted) = 0;
    virtual bool CanCount() const = 0;
    // Where a note lies now; 0 when it isn't there. Only asked after Open.
    virtual std::uint64_t Find(const std::string& key, const NoteFate& fate) = 0;
};

class OpenCopy : public Hands {
public:
    explicit OpenCopy(std::string path) : path(std::move(path)) {}
    bool Open() override;
    Outcome Add(const std::string& key, const std::string& text, std::uint64_t& place) override;
    Outcome Edit(const std::string& key, const NoteFate& fate, const std::string& text) override;
    Outcome Delete(const std::string& key, const NoteFate& fate) override;
    Outcome Count(int number, int host, const NoteFate& fate, int& counted) override;
    bool CanCount() const override { return true; }
    std::uint64_t Find(const std::string& key, const NoteFate& fate) override;

private:
    // Locks and reads; on any other outcome than Done nothing is locked.
    Outcome Hold(const std::string& key, RecordAddress address, NoteRecord& note);
    Outcome Finish(int result, RecordAddress address);

    std::string path;
    std::unique_ptr<TableFile> table;
    std::map<std::string, RecordAddress> places;  // as they were at the opening
};

class JotctlCalls : public Hands {
public:
    // One call in `killOneIn` is killed at a random moment; 0: none.
    JotctlCalls(std::string program, std::string path, unsigned seed, int killOneIn);
    bool Open() override { return true; }
    Outcome Add(const std::string& key, const std::string& text, std::uint64_t& place) override;
    Outcome Edit(const std::string& key, const NoteFate& fate, const std::string& text) override;
    Outcome Delete(const std::string& key, const NoteFate& fate) override;
    Outcome Count(int, int, const NoteFate&, int&) override { return Outcome::Refused; }
    bool CanCount() const override { return false; }
    std::uint64_t Find(const std::string&, const NoteFate& fate) override { return fate.place; }

private:
    Outcome Call(const std::vector<std::string>& arguments, std::string& output);
    Outcome CallUntilFree(const std::vector<std::string>& arguments);

    std::string program;
    std::string path;
    std::uint64_t state;
    int killOneIn;
    std::int64_t usualMs = 20;
};

}  // namespace jotlet
