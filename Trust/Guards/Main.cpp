// Conversions of images between pages that must not be touched, and of very many pixel values.
//
//     ZmGuards [values]    values of each format with more than 16 bits; all of the others. 0: only the pages
//
// First all operations between all formats, on each path, with each small size and the pixels directly before or after
// such a page: a byte too far ends the program. Then the values, compared with the plain reference of the tests.

#include "Imaging/ReferencePixels.h"
#include "Imaging/TestImage.h"
#include "Support/Paths.h"
#include "ZmBlit.h"
#include "ZmNormalMap.h"
#include "ZmResize.h"

#include <stdio.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <string>

namespace {

constexpr uint32_t kOthers[] = {ZM_PF_DXT1, ZM_PF_DXT2,     ZM_PF_DXT3,    ZM_PF_DXT4,
                                ZM_PF_DXT5, ZM_PF_INDEXED8, ZM_PF_INDEXED4};

using Operation = int (*)(const ZmImageDescEx& src, const ZmImageDescEx& dst);

/// Memory between two pages that cannot be accessed, filled with random bytes.
class Guarded {
public:
    explicit Guarded(size_t bytes)
        : m_Page(size_t(sysconf(_SC_PAGESIZE))), m_Bytes((bytes + m_Page - 1) / m_Page * m_Page)
    {
        void* memory = mmap(nullptr, m_Bytes + 2 * m_Page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        m_Begin = static_cast<uint8_t*>(memory) + m_Page;
        if (memory == MAP_FAILED || mprotect(m_Begin, m_Bytes, PROT_READ | PROT_WRITE) != 0) {
            puts("no memory");
            exit(2);
        }
        Random random(7);
        std::generate(m_Begin, m_Begin + m_Bytes, [&] { return uint8_t(random.Bits()); });
    }
    ~Guarded() { munmap(m_Begin - m_Page, m_Bytes + 2 * m_Page); }
    Guarded(const Guarded&) = delete;
    Guarded& operator=(const Guarded&) = delete;

    /// Returns where a block of that size begins if it lies at the beginning or at the end of the memory.
    uint8_t* Place(size_t bytes, bool atEnd) const { return atEnd ? m_Begin + m_Bytes - bytes : m_Begin; }

private:
    const size_t m_Page, m_Bytes;
    uint8_t* m_Begin;
};

/// How an image lies in its memory.
struct Layout {
    int padding;
    bool upwards, atEnd;
};

ZmImageDescEx Describe(uint32_t format, int width, int height, const Layout& layout, const Guarded& memory)
{
    ZmImageDescEx desc;
    memset(static_cast<void*>(&desc), 0, sizeof(desc));
    ZmPixelFormat2ImageDesc(ZM_PIXELFORMAT(format), desc);
    desc.Width = width;
    desc.Height = height;
    const LineSizes lines = LinesOf(desc);
    const int pitch = lines.bytes + layout.padding;
    desc.Pixels = memory.Place(size_t(pitch) * size_t(lines.count - 1) + size_t(lines.bytes), layout.atEnd);
    desc.BytesPerLine = pitch;
    if (layout.upwards) {
        desc.Pixels += pitch * (lines.count - 1);
        desc.BytesPerLine = -pitch;
    }
    return desc;
}

/// Sources of one size and layout with all operations and destinations.
class GuardRun {
public:
    unsigned long Run(int step)
    {
        for (int width = 1; width <= 37; width += step) {
            for (const uint32_t from : kWithMasks) {
                From(from, width);
            }
            for (const uint32_t from : kOthers) {
                From(from, width);
            }
        }
        return m_Done;
    }

private:
    void From(uint32_t format, int width)
    {
        const int height = 1 + width % 3;
        for (int end = 0; end < 4; ++end) {
            const Layout layout = {width % 5, end % 2 == 0, end < 2}, other = {3 - width % 4, end < 2, end % 2 == 0};
            ZmImageDescEx src = Describe(format, width, height, layout, m_Source);
            if (format >= ZM_PF_INDEXED8) {
                src.PaletteCount = uint16_t(1 + width * 6);
                src.PaletteEntrySize = uint16_t(3 + width % 2);
                src.Palette = m_Palette.Place(size_t(src.PaletteCount * src.PaletteEntrySize), end < 2);
            }
            for (const uint32_t to : kWithMasks) {
                const auto make = [&](int w, int h) { return Describe(to, w, h, other, m_Destination); };
                const ZmImageDescEx same = make(width, height);
                for (const Operation operation : {ZmDoBlit, ZmDoBlitUpsideDown, ZmDoAlphaBlit}) {
                    m_Done += unsigned(operation(src, same));
                }
                m_Done += unsigned(ZmConvertToNormalMap(src, same, src.GreenMask, 3));
                m_Done += unsigned(ZmConvertToBumpMap(src, same, src.RedMask, -2));
                m_Done += unsigned(ZmGenerateMipMap(src, make(std::max(width / 2, 1), std::max(height / 2, 1))));
                m_Done += unsigned(ZmResizeImage32(src, make(1 + (width * 7 + end) % 19, 1 + width % 4)));
                // Numbers without a common factor pair each option with all others.
                m_Option += 1;
                const ZmImageOptions options = {ZMCHANNELS(m_Option % 4), ZMLIGHT(m_Option / 4 % 2),
                                                ZMFILTER(m_Option % 7), ZMEDGES(m_Option % 3)};
                m_Done +=
                    unsigned(ZmGenerateMipMap(src, make(std::max(width / 2, 1), std::max(height / 2, 1)), options));
                m_Done += unsigned(ZmResizeImage32(src, make(1 + (width * 7 + end) % 19, 1 + width % 4), options));
            }
        }
    }

    const Guarded m_Source{65536}, m_Destination{65536}, m_Palette{4096};
    unsigned long m_Done = 0;
    unsigned m_Option = 0;
};

/// What each value of each channel becomes in another format.
class Reference {
public:
    Reference(const ZmImageDescEx& src, const ZmImageDescEx& dst)
    {
        const uint32_t masks[4] = {src.RedMask, src.GreenMask, src.BlueMask, src.AlphaMask};
        m_Nothing = Converted(src, 0, dst);
        for (int c = 0; c < 4; ++c) {
            m_Shift[c] = int(GetBitShift(masks[c]));
            m_Mask[c] = masks[c] >> m_Shift[c];
            for (uint32_t value = 0; value <= m_Mask[c]; ++value) {
                m_Table[c].push_back(Converted(src, value << m_Shift[c], dst) ^ m_Nothing);
            }
        }
    }

    uint32_t Convert(uint32_t pixel) const
    {
        uint32_t res = m_Nothing;
        for (size_t c = 0; c < 4; ++c) {
            res ^= m_Table[c][pixel >> m_Shift[c] & m_Mask[c]];
        }
        return res;
    }

private:
    uint32_t m_Nothing, m_Mask[4];
    int m_Shift[4];
    std::vector<uint32_t> m_Table[4];
};

/// Lines of pixels with many values, as each path converts them.
class ValueRun {
public:
    explicit ValueRun(uint32_t values) : m_Values(values) {}

    /// Returns the number of wrong pixels.
    unsigned long Run()
    {
        for (const uint32_t from : kWithMasks) {
            for (const uint32_t to : kWithMasks) {
                const unsigned long wrong = m_Wrong;
                Pair(from, to);
                if (m_Wrong != wrong) {
                    printf("format %u to %u: %lu wrong\n", from, to, m_Wrong - wrong);
                }
            }
        }
        return m_Wrong;
    }

    unsigned long Pixels() const { return m_Pixels; }

private:
    static constexpr int kSide = 256;

    void Pair(uint32_t from, uint32_t to)
    {
        TestImage src(from, kSide, kSide), argb(1, 1, 1);
        const uint64_t all = uint64_t(1) << src.Bits(),
                       values = src.Bits() <= 16 ? all : std::min(uint64_t(m_Values), all);
        const Reference convert(src.desc, TestImage(to, 1, 1).desc), over(src.desc, argb.desc);
        for (uint64_t first = 0; first < values; first += kSide * kSide) {
            for (uint32_t i = 0; i < kSide * kSide; ++i) {
                // An odd factor reaches every value once before it repeats.
                src.Put(int(i % kSide), int(i / kSide), uint32_t(first + i) * (src.Bits() > 16 ? 0x9E3779B1u : 1u));
            }
            OnPaths(ZmDoBlit, src, to, [&](uint32_t pixel, uint32_t) { return convert.Convert(pixel); });
            if (src.desc.AlphaMask != 0) {
                const TestImage dst(to, 1, 1);
                const Reference under(dst.desc, argb.desc), back(argb.desc, dst.desc);
                OnPaths(ZmDoAlphaBlit, src, to, [&](uint32_t pixel, uint32_t before) {
                    return back.Convert(Composed(over.Convert(pixel), under.Convert(before)));
                });
            }
        }
    }

    // The reference judges the first path, and the others must equal it.
    template <class Expected>
    void OnPaths(Operation operation, const TestImage& src, uint32_t to, Expected expected)
    {
        TestImage before(to, kSide, kSide), first(to, kSide, kSide), other(to, kSide, kSide);
        before.Fill(m_Random);
        for (const Path& path : AllPaths()) {
            const PathGuard guard(path);
            TestImage& dst = &path == &AllPaths().front() ? first : other;
            ZmDoBlit(before.desc, dst.desc);
            m_Wrong += operation(src.desc, dst.desc) == 0;
            m_Wrong += &dst == &other && !other.SameBytes(first);
        }
        for (int i = 0; i < kSide * kSide; ++i) {
            const int x = i % kSide, y = i / kSide;
            m_Wrong += first.Get(x, y) != expected(src.Get(x, y), before.Get(x, y));
        }
        m_Pixels += kSide * kSide;
    }

    const uint32_t m_Values;
    Random m_Random{11};
    unsigned long m_Pixels = 0, m_Wrong = 0;
};

}  // namespace

int main(int argc, char** argv)
{
    const uint32_t count = argc > 1 ? uint32_t(strtoul(argv[1], nullptr, 0)) : 1u << 16;
    unsigned long operations = 0;
    for (const Path& path : AllPaths()) {
        const PathGuard guard(path);
        operations += GuardRun().Run(count == 0 ? 9 : 1);
    }
    printf("%lu operations between guard pages on %zu paths\n", operations, AllPaths().size());
    if (count == 0) {
        return 0;
    }
    ValueRun values(count);
    const unsigned long wrong = values.Run();
    printf("%lu pixels on each path, %lu wrong\n", values.Pixels(), wrong);
    return wrong != 0;
}
