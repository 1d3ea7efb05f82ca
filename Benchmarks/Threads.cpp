// Starting threads and waiting for them.

#include "Families.h"

#include "ZmThread.h"

#include <vector>

namespace bench {
namespace {

constexpr Task kTasks[] = {
    {"Threads/StartAndJoin", 4, 0, [](Work&) {}, {1, 16}, {0, 0}, 0},
};

unsigned int Raise(void* number)
{
    return unsigned(++*static_cast<int*>(number));
}

/// Starts one thread per element, all at once, and joins them.
void StartAndJoin(const Work& w)
{
    std::vector<ZmThread> threads(size_t(w.count));
    std::vector<int> numbers(threads.size());
    for (size_t i = 0; i < threads.size(); ++i) {
        numbers[i] = int(i);
        threads[i].CreateThread(Raise, &numbers[i]);
    }
    for (size_t i = 0; i < threads.size(); ++i) {
        threads[i].Wait(nullptr, 0);
        threads[i].Close();
        static_cast<float*>(w.dst)[i] = float(numbers[i]);
    }
}

constexpr Entry kEntries[] = {
    {"Threads/StartAndJoin", StartAndJoin},
};

}  // namespace

constexpr Tasks kThreadTasks{kTasks};
constexpr Contender kThreads{"ZmMath", Role::OURS, kEntries};

}  // namespace bench
