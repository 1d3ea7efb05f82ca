// Loads the tiles of a terrain on three threads that share one queue, while the main thread stays responsive. The time
// taken is printed to the standard error stream, since it differs from run to run.
#include <ZmMath.h>

#include <cmath>
#include <cstdio>

namespace {

constexpr int kTiles = 24, kSide = 64;

struct Queue {
    int Take()
    {
        const ZmMutexHolder hold(lock);
        return next < kTiles ? next++ : -1;
    }

    void Finish(float height)
    {
        const ZmMutexHolder hold(lock);
        ++finished;
        highest = height > highest ? height : highest;
    }

    ZmMutex lock;
    int next = 0, finished = 0;
    float highest = 0;
};

float HighestOf(int tile)
{
    float highest = 0;
    for (int i = 0; i < kSide * kSide; ++i) {
        const int x = tile * kSide + i % kSide, y = i / kSide;
        highest = std::fmax(highest, 40 * Tsin(x * 23) * Tcos(y * 57));
    }
    return highest;
}

class Loader : public ZmThread {
public:
    Loader(Queue& queue, const char* name) : m_Queue(queue) { SetName(name); }

    unsigned int Run() override
    {
        unsigned int tiles = 0;
        for (int tile; (tile = m_Queue.Take()) >= 0; ++tiles) {
            m_Queue.Finish(HighestOf(tile));
        }
        return tiles;  // the exit code
    }

private:
    Queue& m_Queue;
};

}  // namespace

int main()
{
    ZmTimeProfiler clock;
    clock.Reset();
    Queue queue;
    Loader loaders[] = {{queue, "first"}, {queue, "second"}, {queue, "third"}};
    for (Loader& loader : loaders) {
        loader.SetPriority(ZmThread::PRIORITY_BELOW_NORMAL);
        loader.CreateThread(nullptr, nullptr);  // runs Run()
    }

    unsigned int sum = 0;
    for (Loader& loader : loaders) {
        unsigned int tiles = 0;
        while (loader.Wait(&tiles, 100) == ZmThread::CODE_TIMEOUT) {
            std::fprintf(stderr, "still waiting for the %s\n", loader.GetName().Text());
        }
        loader.Close();
        sum += tiles;
    }
    std::printf("%d tiles finished, %u by these threads; highest point %.1f\n", queue.finished, sum, queue.highest);
    std::fprintf(stderr, "%.2f ms\n", clock.Current());
}
