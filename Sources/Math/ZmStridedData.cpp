#include "ZmStridedData.h"

#include "Math/FillKernels.h"
#include "Math/Lanes.h"
#include "Math/Streaming.h"
#include "Platform/FeatureWord.h"

#include <utility>

using namespace zm;

namespace {

// --- Loops over elements of a size that the compiler knows -----------------------

struct Copy {
    char* dst;
    size_t dstStride;
    const char* src;
    size_t srcStride;
    size_t size;
    size_t count;
};

template <size_t kSize>
void FillElements(const Copy& c)
{
    char value[kSize];
    memcpy(value, c.src, kSize);
    char* dst = c.dst;
    for (size_t i = 0; i < c.count; ++i, dst += c.dstStride) {
        memcpy(dst, value, kSize);
    }
}

template <size_t kSize>
void CopyElements(const Copy& c)
{
    char* dst = c.dst;
    const char* src = c.src;
    for (size_t i = 0; i < c.count; ++i, dst += c.dstStride, src += c.srcStride) {
        memcpy(dst, src, kSize);
    }
}

// From memory a gather waits for each element unless its line is asked for well ahead.
const size_t kPrefetchAhead = 32;
const size_t kPrefetchBytes = 1 << 20;  // sources up to here stay in a second-level cache

template <size_t kSize, class Index>
void GatherElements(const Copy& c, const Index* indices)
{
    char* dst = c.dst;
    const auto source = [&](size_t k) { return c.src + ptrdiff_t(indices[k]) * ptrdiff_t(c.srcStride); };
    const size_t ahead = c.srcStride * c.count > kPrefetchBytes && c.count > kPrefetchAhead ? kPrefetchAhead : c.count;
    size_t k = 0;
    for (; k < c.count - ahead; ++k, dst += c.dstStride) {
        _mm_prefetch(source(k + ahead), _MM_HINT_T0);
        memcpy(dst, source(k), kSize);
    }
    for (; k < c.count; ++k, dst += c.dstStride) {
        memcpy(dst, source(k), kSize);
    }
}

// --- The same for any size ----------------------------------------------------------

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

// --- Tight destinations ---------------------------------------------------------------

template <bool stream>
void FillPatterns(char* dst, size_t bytes, const char* pattern)
{
    SseLanes parts[6];
    for (int i = 0; i < 6; ++i) {
        parts[i] = SseLanes::Load4(pattern + 16 * i);
    }
    for (; bytes >= kPatternBytes; bytes -= kPatternBytes, dst += kPatternBytes) {
        for (int i = 0; i < 6; ++i) {
            parts[i].Put<stream>(dst + 16 * i);
        }
    }
}

const size_t kWorthPattern = 512;  // shorter runs are over before the pattern is laid out

// A tight array of elements whose size divides the pattern's, as one run of bytes.
void FillTight(char* dst, size_t bytes, const char* value, size_t size)
{
    // Twice the pattern: streaming starts inside it, at the first multiple of 16.
    char pattern[2 * kPatternBytes];
    for (size_t i = 0; i < sizeof pattern; i += size) {
        memcpy(pattern + i, value, size);
    }
    const bool stream = WorthStreaming(dst, ptrdiff_t(bytes));
    const size_t head = stream ? (16 - uintptr_t(dst) % 16) % 16 : 0;
    memcpy(dst, pattern, head);
    const size_t rest = bytes - head;
    if (UseAvx2()) {
        avx2::FillPatterns(dst + head, rest, pattern + head, stream);
    } else {
        (stream ? FillPatterns<true> : FillPatterns<false>)(dst + head, rest, pattern + head);
    }
    const size_t tail = rest % kPatternBytes;
    memcpy(dst + bytes - tail, pattern + head, tail);
    if (stream) {
        _mm_sfence();
    }
}

// Twelve bytes each from wider elements: four of them fill three registers. Sixteen bytes of each are
// read, so the last element stays for the caller.
template <bool stream>
size_t PackTriples(const Copy& c)
{
    char* dst = c.dst;
    const char* src = c.src;
    size_t done = 0;
    for (; done + 4 < c.count; done += 4, src += 4 * c.srcStride, dst += 48) {
        const __m128 p0 = SseLanes::Load4(src).v, p1 = SseLanes::Load4(src + c.srcStride).v,
                     p2 = SseLanes::Load4(src + 2 * c.srcStride).v, p3 = SseLanes::Load4(src + 3 * c.srcStride).v;
        const __m128 z0x1 = _mm_shuffle_ps(p0, p1, _MM_SHUFFLE(0, 0, 2, 2));
        const __m128 z2x3 = _mm_shuffle_ps(p2, p3, _MM_SHUFFLE(0, 0, 2, 2));
        SseLanes{_mm_shuffle_ps(p0, z0x1, _MM_SHUFFLE(2, 0, 1, 0))}.Put<stream>(dst);
        SseLanes{_mm_shuffle_ps(p1, p2, _MM_SHUFFLE(1, 0, 2, 1))}.Put<stream>(dst + 16);
        SseLanes{_mm_shuffle_ps(z2x3, p3, _MM_SHUFFLE(2, 1, 2, 0))}.Put<stream>(dst + 32);
    }
    return done;
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
int IndexedCopy(const ZmStridedData& dst, const ZmStridedData& src, unsigned long size, const Index* indices,
                int count)
{
    if (!dst.Ptr || !src.Ptr || !indices || !IsElementSize(size) || count < 1) {
        return 0;
    }
    const Copy c = {static_cast<char*>(dst.Ptr), dst.Stride, static_cast<const char*>(src.Ptr), src.Stride,
                    size, size_t(count)};
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

int ZmIndexedCopy(const ZmStridedData& dst, const ZmStridedData& src, unsigned long size, const int* indices,
                  int count)
{
    return IndexedCopy(dst, src, size, indices, count);
}

int ZmIndexedCopy(const ZmStridedData& dst, const ZmStridedData& src, unsigned long size,
                  const unsigned short* indices, int count)
{
    return IndexedCopy(dst, src, size, indices, count);
}
