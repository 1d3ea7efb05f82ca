#include "ZmStridedData.h"

#include "Math/FillKernels.h"
#include "Math/Lanes.h"
#include "Math/Streaming.h"
#include "Math/StridedPair.h"
#include "Platform/FeatureWord.h"

#include <utility>

namespace zm {
namespace {

// --- Loops over elements of a size known at compile time -------------------------

/// Calls f(i) for i below count, unrolled by four: a branch per element would cost more than the move.
template <class F>
inline void ForEach(size_t count, F f)
{
    size_t i = 0;
    for (; i + 4 <= count; i += 4) {
        f(i);
        f(i + 1);
        f(i + 2);
        f(i + 3);
    }
    for (; i < count; ++i) {
        f(i);
    }
}

template <size_t kSize>
void FillElements(const StridedPair& pair)
{
    char value[kSize];
    memcpy(value, pair.src, kSize);
    char* const res = pair.res;
    const ptrdiff_t stride = pair.resStride;
    ForEach(size_t(pair.count), [&, res, stride](size_t i) { memcpy(res + i * stride, value, kSize); });
}

template <size_t kSize>
void CopyElements(const StridedPair& pair)
{
    const StridedPair p = pair;  // by value: otherwise it is reloaded after each write through a char pointer
    ForEach(size_t(p.count), [p](size_t i) { memcpy(p.res + i * p.resStride, p.src + i * p.srcStride, kSize); });
}

// When gathering from memory each element stalls unless its cache line is requested well ahead.
constexpr size_t kPrefetchAhead = 32;
constexpr size_t kPrefetchBytes = 2 << 20;  // smaller sources stay in the second-level cache

template <size_t kSize, class Index>
void GatherElements(const StridedPair& pair, const Index* indices)
{
    const StridedPair p = pair;
    const size_t count = size_t(p.count);
    const auto source = [p, indices](size_t k) { return p.src + ptrdiff_t(indices[k]) * p.srcStride; };
    const bool far = size_t(p.srcStride) * count > kPrefetchBytes;
    const size_t prefetched = far && count > kPrefetchAhead ? count - kPrefetchAhead : 0;
    ForEach(prefetched, [p, source](size_t k) {
        _mm_prefetch(source(k + kPrefetchAhead), _MM_HINT_T0);
        memcpy(p.res + k * p.resStride, source(k), kSize);
    });
    ForEach(count - prefetched, [p, source, prefetched](size_t i) {
        const size_t k = prefetched + i;
        memcpy(p.res + k * p.resStride, source(k), kSize);
    });
}

// --- Loops over elements of any size --------------------------------------------------

constexpr size_t kFixedSizes = 16;  // 4 to 64 bytes have loops of their own

size_t FixedIndex(size_t size)
{
    return size / 4 - 1;
}

template <size_t... kIndex>
void RunFill(const StridedPair& pair, size_t size, std::index_sequence<kIndex...>)
{
    static void (*const loops[])(const StridedPair&) = {FillElements<4 * kIndex + 4>...};
    loops[FixedIndex(size)](pair);
}

template <size_t... kIndex>
void RunCopy(const StridedPair& pair, size_t size, std::index_sequence<kIndex...>)
{
    static void (*const loops[])(const StridedPair&) = {CopyElements<4 * kIndex + 4>...};
    loops[FixedIndex(size)](pair);
}

template <class Index, size_t... kIndex>
void RunGather(const StridedPair& pair, size_t size, const Index* indices, std::index_sequence<kIndex...>)
{
    static void (*const loops[])(const StridedPair&, const Index*) = {GatherElements<4 * kIndex + 4, Index>...};
    loops[FixedIndex(size)](pair, indices);
}

using FixedSizes = std::make_index_sequence<kFixedSizes>;

bool HasFixedSize(size_t size)
{
    return size <= 4 * kFixedSizes;
}

void CopyAny(const StridedPair& pair, size_t size)
{
    if (HasFixedSize(size)) {
        RunCopy(pair, size, FixedSizes());
        return;
    }
    for (ptrdiff_t i = 0; i < pair.count; ++i) {
        memcpy(pair.res + i * pair.resStride, pair.src + i * pair.srcStride, size);
    }
}

// --- Contiguous destinations ----------------------------------------------------------

void FillPatterns(char* dst, size_t bytes, const char* pattern)
{
    const SseLanes a = SseLanes::Load4(pattern), b = SseLanes::Load4(pattern + 16), c = SseLanes::Load4(pattern + 32);
    for (char* const end = dst + bytes; dst != end; dst += 2 * kPatternBytes) {
        a.Store4(dst);
        b.Store4(dst + 16);
        c.Store4(dst + 32);
        a.Store4(dst + 48);
        b.Store4(dst + 64);
        c.Store4(dst + 80);
    }
}

constexpr size_t kFillAlignment = 32;
constexpr size_t kWorthPattern = 256;  // shorter runs do not pay for building the pattern

// Fills a contiguous array as one run of bytes; the element size must divide the pattern's.
void FillTight(char* dst, size_t bytes, const char* value, size_t size)
{
    // Longer than the pattern by the bytes before the first whole register, so that the pattern can start anywhere in
    // an element.
    char words[kPatternBytes + kFillAlignment];
    for (size_t i = 0, from = 0; i < sizeof(words); i += 4) {
        memcpy(words + i, value + from, 4);
        from = from + 4 == size ? 0 : from + 4;
    }
    const size_t head =
        uintptr_t(dst) % 4 == 0 ? (kFillAlignment - uintptr_t(dst) % kFillAlignment) % kFillAlignment : 0;
    memcpy(dst, words, head);
    const char* const pattern = words + head;
    const size_t tail = (bytes - head) % (2 * kPatternBytes), body = bytes - head - tail;
    (UseAvx2() ? avx2::FillPatterns : FillPatterns)(dst + head, body, pattern);
    char* const rest = dst + head + body;
    const size_t first = tail < kPatternBytes ? tail : kPatternBytes;
    memcpy(rest, pattern, first);
    memcpy(rest + first, pattern, tail - first);
}

// Gathers twelve bytes each from wider elements: four of them fill three registers. Reads sixteen bytes of each, so the
// last element is left to the caller.
template <bool stream>
ptrdiff_t PackTriples(const StridedPair& pair)
{
    const ptrdiff_t groups = pair.count > 0 ? (pair.count - 1) / 4 : 0, stride = pair.srcStride;
    char* const res = pair.res;
    const char* const src = pair.src;
    ForEach(size_t(groups), [res, src, stride](size_t i) {
        const char* const from = src + 4 * i * stride;
        char* const to = res + 48 * i;
        const __m128 p0 = SseLanes::Load4(from).v, p1 = SseLanes::Load4(from + stride).v,
                     p2 = SseLanes::Load4(from + 2 * stride).v, p3 = SseLanes::Load4(from + 3 * stride).v;
        const __m128 z0x1 = _mm_shuffle_ps(p0, p1, _MM_SHUFFLE(0, 0, 2, 2));
        const __m128 z2x3 = _mm_shuffle_ps(p2, p3, _MM_SHUFFLE(0, 0, 2, 2));
        SseLanes{_mm_shuffle_ps(p0, z0x1, _MM_SHUFFLE(2, 0, 1, 0))}.Put<stream>(to);
        SseLanes{_mm_shuffle_ps(p1, p2, _MM_SHUFFLE(1, 0, 2, 1))}.Put<stream>(to + 16);
        SseLanes{_mm_shuffle_ps(z2x3, p3, _MM_SHUFFLE(2, 1, 2, 0))}.Put<stream>(to + 32);
    });
    return 4 * groups;
}

void CopyToTightTriples(StridedPair pair)
{
    if (WorthStreaming(pair.res, 12 * pair.count)) {
        StridedPair head = pair;
        head.count = ElementsToAlignment(pair.res, 16);
        CopyElements<12>(head);
        Advance(pair, head.count);
        Advance(pair, PackTriples<true>(pair));
        _mm_sfence();
    } else {
        Advance(pair, PackTriples<false>(pair));
    }
    CopyElements<12>(pair);
}

/// Gathers eight bytes each: two of them fill a register, which halves the stores.
void CopyToTightPairs(StridedPair pair)
{
    const ptrdiff_t groups = pair.count / 2, stride = pair.srcStride;
    char* const res = pair.res;
    const char* const src = pair.src;
    ForEach(size_t(groups), [res, src, stride](size_t i) {
        const char* const from = src + 2 * i * stride;
        const SseLanes first = SseLanes::Load2(from), second = SseLanes::Load2(from + stride);
        SseLanes::Shuffle<0, 1, 0, 1>(first, second).Store4(res + 16 * i);
    });
    Advance(pair, 2 * groups);
    CopyElements<8>(pair);
}

bool IsElementSize(unsigned long size)
{
    return size != 0 && size % 4 == 0;
}

template <class Index>
int IndexedCopy(const ZmStridedData& dst, const ZmStridedData& src, unsigned long size, const Index* indices, int count)
{
    if (!dst.Ptr || !src.Ptr || !indices || !IsElementSize(size) || count < 1) {
        return 0;
    }
    const StridedPair pair = PairOf(dst, src, count);
    if (HasFixedSize(size)) {
        RunGather(pair, size, indices, FixedSizes());
        return 1;
    }
    for (ptrdiff_t k = 0; k < count; ++k) {
        memcpy(pair.res + k * pair.resStride, pair.src + ptrdiff_t(indices[k]) * pair.srcStride, size);
    }
    return 1;
}

}  // namespace
}  // namespace zm

int ZmFillStructure(int count, void* dst, unsigned long dstStride, unsigned long size, const void* value)
{
    if (!value || !dst || count < 1 || dstStride == 0 || !zm::IsElementSize(size)) {
        return 0;
    }
    const zm::StridedPair pair = zm::PairOf(dst, dstStride, value, 0, count);
    const size_t bytes = size_t(size) * size_t(count);
    if (dstStride == size && zm::kPatternBytes % size == 0 && bytes >= zm::kWorthPattern && zm::UseSse()) {
        zm::FillTight(pair.res, bytes, pair.src, size);
    } else if (zm::HasFixedSize(size)) {
        zm::RunFill(pair, size, zm::FixedSizes());
    } else {
        zm::CopyAny(pair, size);
    }
    return 1;
}

int ZmFillStructure(int count, const ZmStridedData& dst, unsigned long size, const void* value)
{
    return ZmFillStructure(count, dst.Ptr, dst.Stride, size, value);
}

int ZmCopyStructure(int count, void* dst, unsigned long dstStride, unsigned long size, const void* src,
                    unsigned long srcStride)
{
    if (!src || !dst || count < 1 || dstStride == 0 || srcStride == 0 || !zm::IsElementSize(size)) {
        return 0;
    }
    const zm::StridedPair pair = zm::PairOf(dst, dstStride, src, srcStride, count);
    if (dstStride == size && srcStride == size) {
        memcpy(dst, src, size_t(size) * size_t(count));
    } else if (size == 12 && dstStride == 12 && srcStride >= 16 && zm::UseSse()) {
        zm::CopyToTightTriples(pair);
    } else if (size == 8 && dstStride == 8 && zm::UseSse()) {
        zm::CopyToTightPairs(pair);
    } else {
        zm::CopyAny(pair, size);
    }
    return 1;
}

int ZmCopyStructure(int count, const ZmStridedData& dst, unsigned long size, const ZmStridedData& src)
{
    return ZmCopyStructure(count, dst.Ptr, dst.Stride, size, src.Ptr, src.Stride);
}

int ZmIndexedCopy(const ZmStridedData& dst, const ZmStridedData& src, unsigned long size, const int* indices, int count)
{
    return zm::IndexedCopy(dst, src, size, indices, count);
}

int ZmIndexedCopy(const ZmStridedData& dst, const ZmStridedData& src, unsigned long size, const unsigned short* indices,
                  int count)
{
    return zm::IndexedCopy(dst, src, size, indices, count);
}
