#include "ZmStream.h"

#include "ZmAllocator.h"

#include <algorithm>
#include <string.h>

ZmStream::ZmStream() = default;
ZmStream::ZmStream(const ZmStream&) = default;
ZmStream& ZmStream::operator=(const ZmStream&) = default;
ZmStream::~ZmStream() = default;

unsigned int ZmStream::Copy(ZmStream& source, unsigned int size)
{
    constexpr unsigned int kStep = 32768;
    const unsigned int total = size != 0 ? size : source.Size();
    ZmAllocator& allocator = ZmAllocator::Instance();
    void* buffer = allocator.AllocateScratch(kStep);
    if (buffer == nullptr) {
        return 0;
    }
    memset(buffer, 0, std::min(total, kStep));  // scratch memory of other users must not end up in a file
    unsigned int rest = total;
    do {
        // The results are ignored: after a short read, zeros or bytes of the previous step are written
        // (ZmStreamTest, CopyGoesOnWhenTheStreamsRefuse).
        const unsigned int step = std::min(rest, kStep);
        source.Read(buffer, step);
        Write(buffer, step);
        rest -= step;
    } while (rest > 0);
    allocator.ReleaseScratch(buffer);
    return total;
}
