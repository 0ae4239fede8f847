#pragma once
#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <functional>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace tessarine::bench
{
/// Something to time: what is run before each round and not counted, and what is.
struct Contestant
{
    std::string name;
    std::function<void()> prepare;
    std::function<void()> run;
};

inline double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

inline double ReadClock(clockid_t clock)
{
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// The processor's time of this process, user and system, in seconds. What else the machine does hardly shows
/// in it.
inline double ProcessorSeconds()
{
    return ReadClock(CLOCK_PROCESS_CPUTIME_ID);
}

/// The same of the calling thread alone, where others work beside it.
inline double ThreadSeconds()
{
    return ReadClock(CLOCK_THREAD_CPUTIME_ID);
}

/// The median seconds of each contestant. They take turns, so that a drift of the machine meets them all;
/// a first round warms up and is not counted.
inline std::vector<double> Race(const std::vector<Contestant>& contestants, int rounds,
                                double (*clock)() = ProcessorSeconds)
{
    std::vector<std::vector<double>> seconds(contestants.size());
    for (int round = -1; round < rounds; ++round)
    {
        for (std::size_t i = 0; i < contestants.size(); ++i)
        {
            if (contestants[i].prepare)
            {
                contestants[i].prepare();
            }
            const double begin = clock();
            contestants[i].run();
            const double taken = clock() - begin;
            if (round >= 0)
            {
                seconds[i].push_back(taken);
            }
        }
    }
    std::vector<double> medians;
    for (auto& list : seconds)
    {
        medians.push_back(Median(std::move(list)));
    }
    return medians;
}

/// What `measure` gives in a process of its own. To be called before anything else has filled the heap.
inline double InAProcessOfItsOwn(const std::function<double()>& measure)
{
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0)
    {
        throw std::runtime_error("no pipe");
    }
    const pid_t child = fork();
    if (child == 0)
    {
        const double figure = measure();
        const bool isSent = write(ends[1], &figure, sizeof figure) == sizeof figure;
        _exit(isSent ? 0 : 1);
    }
    close(ends[1]);
    double figure = 0.0;
    const bool isReceived = read(ends[0], &figure, sizeof figure) == sizeof figure;
    close(ends[0]);
    waitpid(child, nullptr, 0);
    if (!isReceived)
    {
        throw std::runtime_error("a run in a process of its own failed");
    }
    return figure;
}

/// The processor's seconds of one run as a user starts one: nothing is warm but the files.
inline double SecondsInAFreshProcess(const Contestant& contestant)
{
    return InAProcessOfItsOwn(
        [&contestant]
        {
            if (contestant.prepare)
            {
                contestant.prepare();
            }
            const double begin = ProcessorSeconds();
            contestant.run();
            return ProcessorSeconds() - begin;
        });
}

/// Prints a figure with the bound that it is meant to keep, and whether it does.
/// @return true when it does
inline bool Judge(const std::string& what, double figure, double bound, bool atMost = true)
{
    const bool holds = atMost ? figure <= bound : figure >= bound;
    std::printf("%-66s %8.3f  (%s %g) %s\n", what.c_str(), figure, atMost ? "at most" : "at least", bound,
                holds ? "holds" : "MISSED");
    return holds;
}
}
