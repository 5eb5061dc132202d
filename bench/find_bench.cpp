// From Enter in the Find dialog to the hits on the screen, in 10,000 notes whose title and text are full.
//
//   find_bench [notes]      prints the median and the slowest tenth of each search, in milliseconds, and the limit
//
// The exit code is 1 when a median is above the limit, 2 when a search finds another number of notes than are there.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "notes/find_dialog.h"
#include "notes/model/note_file.h"
#include "platform/base/paths.h"
#include "platform/base/text.h"
#include "platform/desktop/application.h"
#include "platform/desktop/test_input.h"
#include "resources/dialog_ids.h"
#include "store/table_file.h"

namespace jotlet {
namespace {

using Ticks = std::chrono::steady_clock;

constexpr int kRuns = 40;
constexpr double kLimitMs = 30;
constexpr int kTermEdit = 103;
constexpr std::string_view kRareTerm = "zürich quay";

std::string Words(std::mt19937& random, std::size_t length)
{
    static constexpr const char* kWords[] = {
        "Call", "Anna", "about",   "the",  "garden", "fence", "Bread", "milk",  "before", "friday", "two",   "tickets",
        "Lyon", "ask",  "whether", "four", "is",     "paid",  "for",   "müsli", "Zürich", "kayak",  "quiet", "invoice"};
    std::string text;
    while (text.size() < length) {
        text += kWords[random() % std::size(kWords)];
        text += random() % 12 ? " " : "\r\n";
    }
    return std::string(CutText(text, length));
}

// Every 500th note holds the rare term, at the very end of its text.
void Fill(const std::string& path, int count)
{
    TableFile file(path, "");
    std::mt19937 random(20);
    std::vector<NoteRecord> notes(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < notes.size(); ++i) {
        NoteRecord& note = notes[i];
        InitNoteRecord(file, note);
        note.uniqueId = (std::uint64_t{random()} << 32) | random();
        note.date = DateValue{static_cast<int>(1 + random() % 28), static_cast<int>(1 + random() % 12),
                              static_cast<int>(2000 + random() % 20)};
        StoreText(note.title, Words(random, note.title.size() - 1));
        std::string text = Words(random, note.text.size() - 1);
        if (i % 500 == 0)
            text.replace(text.size() - kRareTerm.size(), kRareTerm.size(), kRareTerm);
        StoreText(note.text, text);
    }
    std::vector<RecordAddress> addresses;
    file.AddRecords(std::as_bytes(std::span(notes)), addresses);
}

struct Search {
    const char* what;
    std::string term;
    int hits;
};

// True when it found what is there and was fast enough; `exitCode` takes what is wrong.
void Measure(WindowHandle dialog, const Search& search, int& exitCode)
{
    std::vector<double> times;
    for (int run = 0; run < kRuns; ++run) {
        SetItemTextOf(dialog, kTermEdit, search.term);
        FocusItem(dialog, kTermEdit);
        ServeEvents();
        const auto start = Ticks::now();
        TestKey(DialogItem(dialog, kTermEdit), kKeyReturn);
        UpdateNow(dialog);
        times.push_back(std::chrono::duration<double, std::milli>(Ticks::now() - start).count());
    }
    if (WindowTitle(dialog) != "Occurrences " + std::to_string(search.hits)) {
        std::printf("%-40s found %s instead of %d\n", search.what, WindowTitle(dialog).c_str(), search.hits);
        exitCode = 2;
    }
    std::ranges::sort(times);
    const double median = times[times.size() / 2];
    std::printf("%-40s %8.2f %8.2f %8.0f\n", search.what, median, times[times.size() * 9 / 10], kLimitMs);
    if (median > kLimitMs)
        exitCode = std::max(exitCode, 1);
}

int Run(int count)
{
    namespace fs = std::filesystem;
    const auto now = Ticks::now().time_since_epoch().count();
    const fs::path folder = fs::temp_directory_path() / ("find_bench_" + std::to_string(now));
    fs::create_directory(folder);
    std::ofstream(folder / "portable").flush();  // its settings lie there too, not in the user's own
    SetProgramPath((folder / "jotlet").string());
    const std::string path = (folder / "notes.jot").string();
    CreateNoteFile(path, WithExamples::No);
    Fill(path, count);

    const Search searches[] = {
        {"in no note", "nowhere", 0},
        {"at the end of every 500th text", std::string(kRareTerm), (count + 499) / 500},
        {"a letter that all have", "a", count},
        {"beginning like many words", "fourfold", 0},
        {"499 characters", std::string(499, 'm'), 0},
    };
    std::printf("%d notes, milliseconds %18s %8s %8s\n", count, "median", "90 %", "limit");
    int exitCode = 0;
    {
        TableFile file(path, "");
        FindDialog dialog(&file, "");
        WhenModal([&](WindowHandle window) {
            TestType(DialogItem(window, kTermEdit), "x");  // a term makes Find the button of Enter
            for (const Search& search : searches)
                Measure(window, search, exitCode);
            TestPushItem(window, kIdCancel);
        });
        dialog.DoModal(nullptr, find_dialog_ids::kDialog);
    }
    fs::remove_all(folder);
    return exitCode;
}

}  // namespace
}  // namespace jotlet

int main(int argc, char** argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    jotlet::Application application(argc, argv);
    return jotlet::Run(argc > 1 ? std::clamp(std::atoi(argv[1]), 1, 10000) : 10000);
}
