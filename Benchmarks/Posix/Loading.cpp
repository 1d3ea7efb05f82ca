// ZmLoadingBenchmark <library> <empty library>
//
// Measures the cost of loading the library, beyond that of an empty library and the 10 ms sleep of the clock
// measurement. A separate program, since the other benchmarks link the library.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <dlfcn.h>
#include <thread>
#include <vector>

namespace {

constexpr int kRounds = 101;

struct Times {
    std::vector<double> wall, processor;  // milliseconds
};

double ProcessorMilliseconds()
{
    timespec time;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

template <class Action>
void Measure(Times& res, Action action)
{
    const auto start = std::chrono::steady_clock::now();
    const double processor = ProcessorMilliseconds();
    action();
    res.processor.push_back(ProcessorMilliseconds() - processor);
    res.wall.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
}

bool MeasureLoading(Times& res, const char* path)
{
    void* module = nullptr;
    Measure(res, [&] { module = dlopen(path, RTLD_NOW | RTLD_LOCAL); });
    if (module == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        return false;
    }
    dlclose(module);
    return true;
}

double Median(std::vector<double> times)
{
    std::nth_element(times.begin(), times.begin() + kRounds / 2, times.end());
    return times[kRounds / 2];
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s <library> <empty library>\n", argv[0]);
        return 2;
    }
    Times ours, empty, sleep;
    for (int round = 0; round < kRounds; ++round) {
        if (!MeasureLoading(ours, argv[1]) || !MeasureLoading(empty, argv[2])) {
            return 1;
        }
        Measure(sleep, [] { std::this_thread::sleep_for(std::chrono::milliseconds(10)); });
    }
    std::printf("medians of %d, in ms    wall  processor\n", kRounds);
    const auto print = [](const char* what, double wall, double processor) {
        std::printf("%-20s %8.3f %10.3f\n", what, wall, processor);
    };
    print("this library", Median(ours.wall), Median(ours.processor));
    print("an empty library", Median(empty.wall), Median(empty.processor));
    print("10 ms of sleep", Median(sleep.wall), Median(sleep.processor));
    print("beyond both", Median(ours.wall) - Median(empty.wall) - Median(sleep.wall),
          Median(ours.processor) - Median(empty.processor) - Median(sleep.processor));
    return 0;
}
