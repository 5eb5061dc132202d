// What a hand feels on a board of 10,000 notes: one notch of the wheel, one pull of the thumb, one letter, one change
// that another copy made, from the event to the painted surface.
//
//   board_bench [notes]      prints median and 99th percentile of each in milliseconds, the median of the processor's
//                            time (what is left on a busy machine), and the limit
//
// The exit code is 1 when a median is above its limit.
#include <algorithm>
#include <ctime>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "notes/model/note_file.h"
#include "notes/model/palette.h"
#include "notes/notes_pane.h"
#include "platform/base/paths.h"
#include "platform/base/text.h"
#include "platform/desktop/application.h"
#include "platform/desktop/test_input.h"
#include "toolkit/main_window.h"

namespace jotlet {
namespace {

using Ticks = std::chrono::steady_clock;

constexpr int kRuns = 400;
constexpr int kNotch = 120;
// The pane of a window as most people have it.
constexpr Rect kPane = Rect::At(0, 0, 900, 640);

class Frame : public MarlinWnd {
public:
    void PrepareClass(WindowClass& windowClass) override { windowClass.name = "BenchFrame"; }
    void PrepareCreate(CreateParameters& parameters) override
    {
        parameters.width = kPane.Width() + 20;
        parameters.height = kPane.Height() + 20;
    }
};

std::string Words(std::mt19937& random, std::size_t length)
{
    static constexpr const char* kWords[] = {
        "call", "Anna", "about",   "the",  "garden", "fence", "bread", "milk",  "before", "Friday", "two",   "tickets",
        "Lyon", "ask",  "whether", "four", "is",     "paid",  "for",   "müsli", "Zürich", "kayak",  "quiet", "invoice"};
    std::string text;
    while (text.size() < length) {
        text += kWords[random() % std::size(kWords)];
        text += random() % 12 ? " " : "\r\n";
    }
    return text;
}

std::string Title(std::mt19937& random)
{
    std::string title = Words(random, 10 + random() % 30);
    title[0] = static_cast<char>('a' + random() % 26);
    return title;
}

void Fill(const std::string& path, int count)
{
    static constexpr const char* kCategories[] = {"", "Calls", "Ideas", "Personal", "Business"};
    TableFile file(path, "");
    std::mt19937 random(20);
    std::vector<NoteRecord> notes(static_cast<std::size_t>(count));
    for (NoteRecord& note : notes) {
        InitNoteRecord(file, note);
        note.uniqueId = (std::uint64_t{random()} << 32) | random();
        StoreText(note.title, Title(random));
        StoreText(note.text, Words(random, 40 + random() % 500));
        StoreText(note.category, kCategories[random() % std::size(kCategories)]);
        note.colour = kPalette[random() % std::size(kPalette)].colour;
        note.alarmState = random() % 10 == 0 ? kAlarmSet : kAlarmNone;
    }
    std::vector<RecordAddress> addresses;
    file.AddRecords(std::as_bytes(std::span(notes)), addresses);
}

struct Measured {
    double median = 0;
    double slow = 0;  // 99th percentile
    double processor = 0;
};

double ProcessorMilliseconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

Measured Measure(const std::function<void(int run)>& prepare, const std::function<void(int run)>& work)
{
    std::vector<double> times;
    std::vector<double> processor;
    for (int run = 0; run < kRuns; ++run) {
        prepare(run);
        const auto start = Ticks::now();
        const double before = ProcessorMilliseconds();
        work(run);
        processor.push_back(ProcessorMilliseconds() - before);
        times.push_back(std::chrono::duration<double, std::milli>(Ticks::now() - start).count());
    }
    std::ranges::sort(times);
    std::ranges::sort(processor);
    return {times[times.size() / 2], times[times.size() * 99 / 100], processor[processor.size() / 2]};
}

class Board {
public:
    explicit Board(const std::string& path) : file(path, ""), other(path, "")
    {
        frame.Create(nullptr, kStyleVisible);
        SetMainWindow(frame.window);
        pane.Create(&frame, kStyleDefault);
        pane.Move(0, 0, kPane.Width(), kPane.Height(), 1);
        pane.Show();
        pane.OnFileOpened(&file);
        Settle();
    }
    ~Board() { SetMainWindow(0); }

    void Settle()
    {
        ServeEvents();
        UpdateNow(frame.window);
    }
    WindowHandle Grid() { return pane.GetList().Grid().window; }

    void Repaint()
    {
        InvalidateArea(Grid(), nullptr, false);
        UpdateNow(Grid());
    }
    void Wheel(int run)
    {
        TestWheel(Grid(), {60, 60}, run < kRuns / 2 ? -kNotch : kNotch);
        UpdateNow(pane.window);
    }
    void Thumb()
    {
        pane.GetList().SetTopRow(static_cast<int>(random() % static_cast<unsigned>(pane.GetList().GetCount() / 3)));
        UpdateNow(pane.window);
    }
    void Letter(int run)
    {
        pane.Send(kWmCommand, NotesPane::kLetterBarId, 'a' + run % 26);
        UpdateNow(pane.window);
    }
    // What the other copy does, which is not measured.
    void ChangeElsewhere()
    {
        const auto addresses = Addresses();
        const RecordAddress address = addresses[random() % addresses.size()];
        NoteRecord note;
        other.ReadRecord(BytesOf(note), address);
        StoreText(note.title, Title(random));
        other.WriteRecord(BytesOf(note), address);
    }
    void Tick()
    {
        pane.GetList().Send(kWmTimer, RecordListView::kRefreshTimerId, 0);
        Settle();
    }

private:
    std::vector<RecordAddress> Addresses()
    {
        std::vector<RecordAddress> addresses;
        const FieldRange size{0, 4};
        other.ForEachRecord(
            std::span(&size, 1),
            [&](RecordAddress address, std::span<const std::byte>) {
                addresses.push_back(address);
                return true;
            },
            ScanScope::All);
        return addresses;
    }

    TableFile file;
    TableFile other;
    Frame frame;
    NotesPane pane{PaneColours{.backColour = 0xC0FFFF}, "Work"};
    std::mt19937 random{7};
};

bool Print(const char* what, const Measured& measured, double limit)
{
    std::printf("%-42s %9.2f %9.2f %9.2f %9.0f\n", what, measured.median, measured.slow, measured.processor, limit);
    return measured.median <= limit;
}

bool MeasureBoard(Board& board)
{
    const auto settle = [&](int) { board.Settle(); };
    bool good = true;
    good &= Print("repaint of the whole board", Measure(settle, [&](int) { board.Repaint(); }), 3);
    good &= Print("notch of the wheel, painted", Measure(settle, [&](int run) { board.Wheel(run); }), 3);
    good &= Print("pull of the thumb, painted", Measure(settle, [&](int) { board.Thumb(); }), 3);
    good &= Print("letter, selected and painted", Measure(settle, [&](int run) { board.Letter(run); }), 20);
    const auto change = [&](int) {
        board.Settle();
        board.ChangeElsewhere();
    };
    good &= Print("change of another copy, tick to paint", Measure(change, [&](int) { board.Tick(); }), 50);
    return good;
}

int Run(int count)
{
    namespace fs = std::filesystem;
    const auto now = Ticks::now().time_since_epoch().count();
    const fs::path folder = fs::temp_directory_path() / ("board_bench_" + std::to_string(now));
    fs::create_directory(folder);
    std::ofstream(folder / "portable").flush();  // its settings lie there too, not in the user's own
    SetProgramPath((folder / "jotlet").string());
    const std::string path = (folder / "notes.jot").string();
    CreateNoteFile(path, WithExamples::No);
    Fill(path, count);

    std::printf("%5d notes, milliseconds %28s %9s %9s %9s\n", count, "median", "99 %", "processor", "limit");
    bool good = false;
    {
        Board board(path);
        good = MeasureBoard(board);
    }
    fs::remove_all(folder);
    return good ? 0 : 1;
}

}  // namespace
}  // namespace jotlet

int main(int argc, char** argv)
{
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    jotlet::Application application(argc, argv);
    return jotlet::Run(argc > 1 ? std::max(std::atoi(argv[1]), 3) : 10000);
}
