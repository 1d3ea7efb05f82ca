#include "ZmFPU.h"

namespace {

constexpr unsigned kExceptionMasks = 0x003F;
constexpr unsigned kPrecisionAndRounding = 0x0F00;  // both fields 0: 24 bits, round to nearest

}  // namespace

unsigned short ZmGetFPUControlWord()
{
    unsigned short word;
    asm volatile("fnstcw %0" : "=m"(word));
    return word;
}

void ZmSetFPUControlWord(unsigned short word)
{
    asm volatile("fldcw %0" : : "m"(word));
}

void ZmSetBaseFPUControlWord()
{
    const unsigned word = ZmGetFPUControlWord();
    const unsigned base = (word & ~kPrecisionAndRounding) | kExceptionMasks;
    if (base != word) {
        ZmSetFPUControlWord(static_cast<unsigned short>(base));
    }
}
