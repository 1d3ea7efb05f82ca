#include "ZmStridedData.h"

#include "Math/FillKernels.h"
#include "Math/Lanes.h"
#include "Math/Streaming.h"
#include "Platform/FeatureWord.h"

#include <utility>

using namespace zm;

namespace {

// --- Loops over elements of a size known at compile time -------------------------

struct Copy {
    char* dst;
    size_t dstStride;
    const char* src;
    size_t srcStride;
    size_t size;
    size_t count;
};

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
void FillElements(const Copy& c)
{
    char value[kSize];
    memcpy(value, c.src, kSize);
    char* const dst = c.dst;
    const size_t stride = c.dstStride;
    ForEach(c.count, [&, dst, stride](size_t i) { memcpy(dst + i * stride, value, kSize); });
}

template <size_t kSize>
void CopyElements(const Copy& c)
{
    const Copy copy = c;  // by value: otherwise it is reloaded after each write through a char pointer
    ForEach(copy.count,
            [copy](size_t i) { memcpy(copy.dst + i * copy.dstStride, copy.src + i * copy.srcStride, kSize); });
}

// When gathering from memory each element stalls unless its cache line is requested well ahead.
const size_t kPrefetchAhead = 32;
const size_t kPrefetchBytes = 2 << 20;  // smaller sources stay in the second-level cache

template <size_t kSize, class Index>
void GatherElements(const Copy& c, const Index* indices)
{
    const Copy copy = c;
    const auto source = [copy, indices](size_t k) {
        return copy.src + ptrdiff_t(indices[k]) * ptrdiff_t(copy.srcStride);
    };
    const bool far = copy.srcStride * copy.count > kPrefetchBytes;
    const size_t prefetched = far && copy.count > kPrefetchAhead ? copy.count - kPrefetchAhead : 0;
    ForEach(prefetched, [copy, source](size_t k) {
        _mm_prefetch(source(k + kPrefetchAhead), _MM_HINT_T0);
        memcpy(copy.dst + k * copy.dstStride, source(k), kSize);
    });
    ForEach(copy.count - prefetched, [copy, source, prefetched](size_t i) {
        const size_t k = prefetched + i;
        memcpy(copy.dst + k * copy.dstStride, source(k), kSize);
    });
}

// --- Loops over elements of any size --------------------------------------------------

const size_t kFixedSizes = 16;  // 4 to 64 bytes have loops of their own

size_t FixedIndex(size_t size)
{
    return size / 4 - 1;
}

template <size_t... kIndex>
void RunFill(const Copy& c, std::index_sequence<kIndex...>)
{
    static void (*const loops[])(const Copy&) = {FillElements<4 * kIndex + 4>...};
    loops[FixedIndex(c.size)](c);
}

template <size_t... kIndex>
void RunCopy(const Copy& c, std::index_sequence<kIndex...>)
{
    static void (*const loops[])(const Copy&) = {CopyElements<4 * kIndex + 4>...};
    loops[FixedIndex(c.size)](c);
}

template <class Index, size_t... kIndex>
void RunGather(const Copy& c, const Index* indices, std::index_sequence<kIndex...>)
{
    static void (*const loops[])(const Copy&, const Index*) = {GatherElements<4 * kIndex + 4, Index>...};
    loops[FixedIndex(c.size)](c, indices);
}

using FixedSizes = std::make_index_sequence<kFixedSizes>;

bool HasFixedSize(const Copy& c)
{
    return c.size <= 4 * kFixedSizes;
}

void CopyAny(const Copy& c)
{
    if (HasFixedSize(c)) {
        RunCopy(c, FixedSizes());
        return;
    }
    for (size_t i = 0; i < c.count; ++i) {
        memcpy(c.dst + i * c.dstStride, c.src + i * c.srcStride, c.size);
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

const size_t kFillAlignment = 32;
const size_t kWorthPattern = 256;  // shorter runs do not pay for building the pattern

// Fills a contiguous array as one run of bytes; the element size must divide the pattern's.
void FillTight(char* dst, size_t bytes, const char* value, size_t size)
{
    // Longer than the pattern by the bytes before the first whole register, so that the pattern can start anywhere in
    // an element.
    char words[kPatternBytes + kFillAlignment];
    for (size_t i = 0, from = 0; i < sizeof words; i += 4) {
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
size_t PackTriples(const Copy& c)
{
    const size_t groups = c.count > 0 ? (c.count - 1) / 4 : 0, stride = c.srcStride;
    char* const dst = c.dst;
    const char* const src = c.src;
    ForEach(groups, [dst, src, stride](size_t i) {
        const char* const from = src + 4 * i * stride;
        char* const to = dst + 48 * i;
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

Copy Rest(Copy c, size_t done)
{
    c.dst += done * c.dstStride;
    c.src += done * c.srcStride;
    c.count -= done;
    return c;
}

void CopyToTightTriples(Copy c)
{
    if (WorthStreaming(c.dst, ptrdiff_t(12 * c.count))) {
        Copy head = c;
        head.count = size_t(ElementsToAlignment(c.dst, 16));
        CopyElements<12>(head);
        c = Rest(c, head.count);
        c = Rest(c, PackTriples<true>(c));
        _mm_sfence();
    } else {
        c = Rest(c, PackTriples<false>(c));
    }
    CopyElements<12>(c);
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
    const Copy c = {
        static_cast<char*>(dst.Ptr), dst.Stride, static_cast<const char*>(src.Ptr), src.Stride, size, size_t(count)};
    if (HasFixedSize(c)) {
        RunGather(c, indices, FixedSizes());
        return 1;
    }
    for (int k = 0; k < count; ++k) {
        memcpy(c.dst + size_t(k) * c.dstStride, c.src + ptrdiff_t(indices[k]) * ptrdiff_t(c.srcStride), size);
    }
    return 1;
}

}  // namespace

int ZmFillStructure(int count, void* dst, unsigned long dstStride, unsigned long size, const void* value)
{
    if (!value || !dst || count < 1 || dstStride == 0 || !IsElementSize(size)) {
        return 0;
    }
    const Copy c = {static_cast<char*>(dst), dstStride, static_cast<const char*>(value), 0, size, size_t(count)};
    if (dstStride == size && kPatternBytes % size == 0 && size * c.count >= kWorthPattern && UseSse()) {
        FillTight(c.dst, size * c.count, c.src, size);
    } else if (HasFixedSize(c)) {
        RunFill(c, FixedSizes());
    } else {
        CopyAny(c);
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
    if (!src || !dst || count < 1 || dstStride == 0 || srcStride == 0 || !IsElementSize(size)) {
        return 0;
    }
    const Copy c = {static_cast<char*>(dst), dstStride, static_cast<const char*>(src), srcStride, size, size_t(count)};
    if (dstStride == size && srcStride == size) {
        memcpy(dst, src, size * c.count);
    } else if (size == 12 && dstStride == 12 && srcStride >= 16 && UseSse()) {
        CopyToTightTriples(c);
    } else {
        CopyAny(c);
    }
    return 1;
}

int ZmCopyStructure(int count, const ZmStridedData& dst, unsigned long size, const ZmStridedData& src)
{
    return ZmCopyStructure(count, dst.Ptr, dst.Stride, size, src.Ptr, src.Stride);
}

int ZmIndexedCopy(const ZmStridedData& dst, const ZmStridedData& src, unsigned long size, const int* indices, int count)
{
    return IndexedCopy(dst, src, size, indices, count);
}

int ZmIndexedCopy(const ZmStridedData& dst, const ZmStridedData& src, unsigned long size, const unsigned short* indices,
                  int count)
{
    return IndexedCopy(dst, src, size, indices, count);
}
