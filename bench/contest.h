// One piece of work done by Jotlet and by its rival, and the largest ratio of their times that we want.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace jotlet {

struct Contest {
    std::string name;  // for --benchmark_filter
    std::string work;  // for the table
    double atMost = 1;
    int iterations = 1;
    // Each does the work once and gives the seconds that it took; what has to be set up before is not counted.
    std::function<double()> jotlet;
    std::function<double()> rival;
    std::string rivalName = "SQLite";
};

// Seconds that `work` takes.
double Timed(const std::function<void()>& work);

// Ends the program unless the two are equal: times of different work mean nothing.
void Expect(const char* what, long got, long wanted);

// Runs all contests in turns and prints the medians with their ratios. Gives the count of ratios that were missed.
int RunContests(const std::vector<Contest>& contests, int argc, char** argv);

}  // namespace jotlet
