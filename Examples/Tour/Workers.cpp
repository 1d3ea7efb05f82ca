#include "Workers.h"

#include "ZmMutex.h"
#include "ZmThread.h"

#include <deque>
#include <exception>
#include <stdexcept>
#include <string>
#include <thread>

namespace {

/// A queue of pending items.
class Queue {
public:
    explicit Queue(int count) : m_Count(count) {}

    /// Takes the next item; -1 if none is left.
    int Take()
    {
        const ZmMutexHolder holder(m_Mutex);
        return m_Next < m_Count ? m_Next++ : -1;
    }

    /// Discards the remaining items and keeps the first reason.
    void GiveUp(const std::exception_ptr& reason)
    {
        const ZmMutexHolder holder(m_Mutex);
        m_Next = m_Count;
        if (m_Failure == nullptr) {
            m_Failure = reason;
        }
    }

    std::exception_ptr Failure() const { return m_Failure; }

private:
    ZmMutex m_Mutex;
    const int m_Count;
    int m_Next = 0;
    std::exception_ptr m_Failure;
};

class Worker final : public ZmThread {
public:
    Worker(int number, Queue& queue, const std::function<void(int, int)>& work)
        : m_Number(number), m_Queue(queue), m_Work(work)
    {
        SetName(("Worker " + std::to_string(number)).c_str());
    }

    // The thread needs its object until it ends.
    ~Worker() override
    {
        Wait(nullptr, 0);
        Close();
    }

    unsigned int Run() override
    {
        try {
            for (int item = m_Queue.Take(); item >= 0; item = m_Queue.Take()) {
                m_Work(m_Number, item);
            }
        } catch (...) {
            m_Queue.GiveUp(std::current_exception());
        }
        return CODE_SUCCESS;
    }

private:
    const int m_Number;
    Queue& m_Queue;
    const std::function<void(int, int)>& m_Work;
};

}  // namespace

// The caller only waits, even for a single thread: so all work is done in the same floating-point mode, which threads
// do not inherit from the main thread on every system.
void ShareOut(int threads, int count, const std::function<void(int worker, int item)>& work)
{
    Queue queue(count);
    {
        std::deque<Worker> workers;
        bool started = true;
        for (int i = 0; i < threads && i < count && started; ++i) {
            started = workers.emplace_back(i, queue, work).CreateThread(nullptr, nullptr) != 0;
        }
        if (!started && workers.size() == 1) {
            throw std::runtime_error("the system has no thread to give");
        }
    }
    if (queue.Failure() != nullptr) {
        std::rethrow_exception(queue.Failure());
    }
}

int ProcessorCount()
{
    const unsigned count = std::thread::hardware_concurrency();
    return count != 0 ? int(count) : 1;
}
