#include "ZmFPU.h"

#include <gtest/gtest.h>

namespace {

/// Restores the control word. Clears pending exceptions, so that unmasking them raises none.
class ControlWordGuard {
public:
    ControlWordGuard() : m_Word(ZmGetFPUControlWord()) { asm volatile("fnclex"); }
    ~ControlWordGuard() { ZmSetFPUControlWord(m_Word); }
    ControlWordGuard(const ControlWordGuard&) = delete;
    ControlWordGuard& operator=(const ControlWordGuard&) = delete;

private:
    unsigned short m_Word;
};

const struct {
    const char* name;
    unsigned short before, after;
} kWords[] = {
    {"53 bits", 0x027F, 0x007F},
    {"64 bits", 0x037F, 0x007F},
    {"already there", 0x007F, 0x007F},
    {"rounding down", 0x047F, 0x007F},
    {"one exception open", 0x007B, 0x007F},
    {"all exceptions open, towards zero", 0x0F40, 0x007F},
};

TEST(ZmFPUTest, TheBaseModeIsTwentyFourBitsMaskedAndToNearest)
{
    for (const auto& row : kWords) {
        const ControlWordGuard guard;
        ZmSetFPUControlWord(row.before);
        const unsigned short loaded = ZmGetFPUControlWord();
        ZmSetBaseFPUControlWord();
        const unsigned short base = ZmGetFPUControlWord();
        EXPECT_EQ(loaded, row.before) << row.name;
        EXPECT_EQ(base, row.after) << row.name;
    }
}

TEST(ZmFPUTest, OtherBitsStay)
{
    const ControlWordGuard guard;
    ZmSetFPUControlWord(0x137F);  // the infinity control of old processors
    const unsigned short others = ZmGetFPUControlWord() & 0xF0C0;
    ZmSetBaseFPUControlWord();
    EXPECT_EQ(ZmGetFPUControlWord(), others | 0x003F);
}

}  // namespace
