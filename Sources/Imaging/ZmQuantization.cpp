#include "ZmQuantization.h"

#include <atomic>

namespace {

std::atomic<int> g_SamplingFactor{15};

}  // namespace

int GetQuantizationSamplingFactor()
{
    return g_SamplingFactor.load(std::memory_order_relaxed);
}

void SetQuantizationSamplingFactor(int factor)
{
    g_SamplingFactor.store(factor, std::memory_order_relaxed);
}
