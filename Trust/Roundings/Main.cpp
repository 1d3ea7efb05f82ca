// ZmRoundings [function]...
//
// Compares the functions of ZmTrigonometry.h with the floats nearest to their true values: those of one argument for
// every float, on every path, atan2 for a thousand million pairs. Prints a table of Documentation/Accuracy.md and exits
// with 1 if a result is wrong. The reference is the C library's function of doubles where it leaves no doubt, MPFR
// elsewhere.

#include "Support/Paths.h"
#include "Support/SinesAndCosines.h"

#include <math.h>
#include <mpfr.h>
#include <stdio.h>
#include <string.h>

#include <algorithm>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace {

constexpr double kDoubt = 0x1p-40;  // the C library's relative error is far below
constexpr int kBlock = 1 << 16;
constexpr uint64_t kPairs = 1000000000;

float FloatOf(uint32_t bits)
{
    float f;
    memcpy(&f, &bits, sizeof(f));
    return f;
}

bool IsSame(float a, float b)
{
    return memcmp(&a, &b, sizeof(a)) == 0 || (isnan(a) && isnan(b));
}

/// A number with 1000 bits: enough to tell the angle of a tiny ratio from the ratio itself.
class Exact {
public:
    explicit Exact(float value = 0)
    {
        mpfr_init2(m_Value, 1000);
        mpfr_set_flt(m_Value, value, MPFR_RNDN);
    }
    ~Exact() { mpfr_clear(m_Value); }
    Exact(const Exact&) = delete;
    Exact& operator=(const Exact&) = delete;
    mpfr_ptr Value() { return m_Value; }
    float ToFloat() { return mpfr_get_flt(m_Value, MPFR_RNDN); }

private:
    mpfr_t m_Value;
};

/// What the results of some inputs add up to.
struct Tally {
    uint64_t results = 0, doubtful = 0, wrong = 0;
    double worst = 0, sum = 0;  // errors in units of the last place
    float worstInput[2] = {};

    void Add(const Tally& o)
    {
        results += o.results;
        doubtful += o.doubtful;
        wrong += o.wrong;
        sum += o.sum;
        if (o.worst > worst) {
            worst = o.worst;
            memcpy(worstInput, o.worstInput, sizeof(worstInput));
        }
    }

    /// A result, the reference in double, the true float where that leaves a doubt, and the input.
    template <class Decide>
    void Check(float result, double reference, float x, float y, Decide decide)
    {
        float expected = float(reference);
        if (!isnan(reference) && float(reference * (1 - kDoubt)) != float(reference * (1 + kDoubt))) {
            ++doubtful;
            expected = decide();
        }
        if (!IsSame(result, expected) && wrong++ == 0) {
            printf("wrong: %a %a gives %a, not %a\n", double(x), double(y), double(result), double(expected));
        }
        if (isnan(reference) || isinf(result)) {
            return;
        }
        ++results;
        const float size = fabsf(result);
        const double error = fabs(double(result) - reference) / (double(nextafterf(size, INFINITY)) - double(size));
        sum += error;
        if (error > worst) {
            worst = error;
            worstInput[0] = x;
            worstInput[1] = y;
        }
    }
};

using Many = void (*)(const ZmStridedData&, const ZmStridedData&, int);

const struct Function {
    const char* name;
    float (*single)(float);
    Many many;
    double (*reference)(double);
    int (*exact)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t);
} kFunctions[] = {
    {"ZmSin", ZmSin, ZmSinStrided, sin, mpfr_sin},
    {"ZmCos", ZmCos, ZmCosStrided, cos, mpfr_cos},
    {"ZmTan", ZmTan, ZmTanStrided, tan, mpfr_tan},
    {"ZmAsin", ZmAsin, ZmAsinStrided, asin, mpfr_asin},
    {"ZmAcos", ZmAcos, ZmAcosStrided, acos, mpfr_acos},
    {"ZmAtan", ZmAtan, ZmAtanStrided, atan, mpfr_atan},
    {"sine of ZmSinCos", SineOfBoth, SinesOfBoth, sin, mpfr_sin},
    {"cosine of ZmSinCos", CosineOfBoth, CosinesOfBoth, cos, mpfr_cos},
};

/// Runs work(block, tally) for the blocks, on all processors but with one path at a time.
Tally InParallel(uint64_t blocks, const std::function<void(uint64_t, Tally&)>& work)
{
    Tally total;
    std::mutex mutex;
    std::vector<std::thread> threads;
    const unsigned count = std::max(1u, std::thread::hardware_concurrency());
    for (unsigned i = 0; i < count; ++i) {
        threads.emplace_back([&, i] {
            Tally tally;
            for (uint64_t block = i; block < blocks; block += count) {
                work(block, tally);
            }
            const std::lock_guard<std::mutex> lock(mutex);
            total.Add(tally);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    return total;
}

/// Compares the results with the reference on the widest path, and the other paths and the single form with these.
Tally CheckAll(const Function& f)
{
    constexpr uint64_t kBlocks = (uint64_t(1) << 32) / kBlock;
    std::vector<uint64_t> sums(kBlocks);
    Tally total;
    for (size_t path = AllPaths().size(); path-- > 0;) {
        const bool isFirst = path + 1 == AllPaths().size();
        const PathGuard guard(AllPaths()[path]);
        total.Add(InParallel(kBlocks, [&](uint64_t block, Tally& tally) {
            std::vector<float> in(kBlock), out(kBlock);
            for (int i = 0; i < kBlock; ++i) {
                in[size_t(i)] = FloatOf(uint32_t(block * kBlock + uint64_t(i)));
            }
            f.many({out.data(), 4}, {in.data(), 4}, kBlock);
            uint64_t sum = 0;
            for (const float result : out) {
                uint32_t bits;
                memcpy(&bits, &result, sizeof(bits));
                sum = (sum ^ (isnan(result) ? 0x7FC00000u : bits)) * 0x100000001B3u;
            }
            if (!isFirst) {
                tally.wrong += sum != sums[block];
                return;
            }
            sums[block] = sum;
            for (size_t i = 0; i < size_t(kBlock); ++i) {
                const float x = in[i];
                tally.wrong += !IsSame(f.single(x), out[i]);
                tally.Check(out[i], f.reference(double(x)), x, 0, [&] {
                    Exact res(x);
                    f.exact(res.Value(), res.Value(), MPFR_RNDN);
                    return res.ToFloat();
                });
            }
        }));
    }
    return total;
}

/// Random pairs of all floats and of those of similar size, and pairs of special ones.
Tally CheckPairs()
{
    return InParallel(kPairs / kBlock + 1, [](uint64_t block, Tally& tally) {
        const float special[] = {0,          -0.0f, 0x1p-149f, 0x3p-149f,       -0x5p-149f, 0x1p-126f, 1,         -1,
                                 -0x1p-148f, 2,     3,         0x1.fffffep127f, 0x1p127f,   INFINITY,  -INFINITY, NAN};
        constexpr size_t kSpecial = sizeof(special) / sizeof(*special);
        Random random(block);
        std::vector<float> y(kBlock), x(kBlock), out(kBlock);
        for (size_t i = 0; i < size_t(kBlock); ++i) {
            y[i] = FloatOf(random.Bits());
            x[i] = i % 2 == 0 ? FloatOf(random.Bits()) : y[i] * random.Float(20);
            if (i < kSpecial * kSpecial && block == 0) {
                y[i] = special[i / kSpecial];
                x[i] = special[i % kSpecial];
            }
        }
        ZmAtan2Strided({out.data(), 4}, {y.data(), 4}, {x.data(), 4}, kBlock);
        for (size_t i = 0; i < size_t(kBlock); ++i) {
            tally.wrong += !IsSame(ZmAtan2(y[i], x[i]), out[i]);
            tally.Check(out[i], atan2(double(y[i]), double(x[i])), y[i], x[i], [&] {
                Exact res, rise(y[i]), run(x[i]);
                mpfr_atan2(res.Value(), rise.Value(), run.Value(), MPFR_RNDN);
                return res.ToFloat();
            });
        }
    });
}

bool Print(const char* name, const Tally& tally)
{
    printf("| `%s` | %.7f | %.4f | %a", name, tally.worst, tally.sum / double(tally.results),
           double(tally.worstInput[0]));
    if (tally.worstInput[1] != 0) {
        printf(", %a", double(tally.worstInput[1]));
    }
    printf(" | %llu | %llu | %llu |\n", static_cast<unsigned long long>(tally.results),
           static_cast<unsigned long long>(tally.doubtful), static_cast<unsigned long long>(tally.wrong));
    fflush(stdout);
    return tally.wrong == 0;
}

}  // namespace

int main(int argc, char** argv)
{
    const auto isWanted = [&](const std::string& name) {
        return argc == 1 || std::find(argv + 1, argv + argc, name) != argv + argc;
    };
    printf("| Function | Worst error | Mean error | At | Numbers | Decided by MPFR | Wrong "
           "|\n|---|---|---|---|---|---|---|\n");
    bool isGood = true;
    for (const Function& f : kFunctions) {
        isGood = (!isWanted(f.name) || Print(f.name, CheckAll(f))) && isGood;
    }
    isGood = (!isWanted("ZmAtan2") || Print("ZmAtan2", CheckPairs())) && isGood;
    return isGood ? 0 : 1;
}
