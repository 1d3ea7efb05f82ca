#include "Registry.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace bench {
namespace {

std::vector<float> Results(const Measurement& m)
{
    Work w = Prepare(*m.task, m.Count());
    const size_t bytes = size_t(w.count) * size_t(w.dstStride);
    if (w.src != w.dst) {
        std::memset(w.dst, 0, bytes);
    }
    {
        const ChosenPath path(m.contender->role);
        m.entry->function(w);
    }
    std::vector<float> res(bytes / sizeof(float));
    std::memcpy(res.data(), w.dst, bytes);
    for (size_t at = 0; at < res.size(); at += size_t(w.dstStride) / sizeof(float)) {
        for (auto* convert : {m.entry->decode, m.task->canonical}) {
            if (convert) {
                convert(&res[at]);
            }
        }
    }
    return res;
}

bool Agree(const float* ours, const float* theirs, int floats, double tolerance)
{
    if (tolerance == 0) {
        return std::memcmp(ours, theirs, size_t(floats) * sizeof(float)) == 0;
    }
    double largest = 0;
    double difference = 0;
    for (int i = 0; i < floats; ++i) {
        largest = std::max(largest, std::fabs(double(ours[i])));
        // Written so that NaN fails.
        const double apart = std::fabs(double(ours[i]) - double(theirs[i]));
        difference = apart <= difference ? difference : apart;
    }
    return difference <= tolerance * largest;
}

void Verify(const Measurement& m, const std::vector<float>& ours)
{
    if (m.task->tolerance < 0) {
        return;
    }
    const std::vector<float> theirs = Results(m);
    const int floats = m.task->dstStride / int(sizeof(float));
    for (int element = 0; element < m.Count(); ++element) {
        const size_t at = size_t(element) * size_t(floats);
        if (!Agree(&ours[at], &theirs[at], floats, m.task->tolerance)) {
            std::fprintf(stderr, "%s: element %d differs from ZmMath's\n", m.Name().c_str(), element);
            for (int i = 0; i < floats; ++i) {
                std::fprintf(stderr, "%12g %12g\n", double(ours[at + size_t(i)]), double(theirs[at + size_t(i)]));
            }
            std::exit(1);
        }
    }
}

}  // namespace

void VerifyAll()
{
    std::vector<float> ours;
    for (const Measurement& m : Measurements()) {
        if (m.size != 0) {
            continue;  // the smallest size suffices
        }
        if (m.contender->role == Role::OURS) {
            ours = Results(m);
        } else {
            Verify(m, ours);
        }
    }
}

}  // namespace bench
