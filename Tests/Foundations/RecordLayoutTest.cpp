#include "XGUID.h"
#include "XString.h"

#include <gtest/gtest.h>
#include <stddef.h>

#include <type_traits>

namespace {

// Engine modules share these records in memory.

static_assert(sizeof(XGUID) == 8 && offsetof(XGUID, first) == 0 && offsetof(XGUID, second) == 4);
static_assert(std::is_trivially_copyable<XGUID>::value && std::is_standard_layout<XGUID>::value);
static_assert(sizeof(XBaseString) == 2 * sizeof(void*) && alignof(XBaseString) == alignof(void*));
static_assert(std::is_standard_layout<XString>::value && sizeof(XString) == sizeof(XBaseString));

TEST(RecordLayoutTest, AStringIsAPointerItsLengthAndItsSize)
{
    XString string("abc");
    string.Reserve(1000);
    struct {
        const char* buffer;
        uint16_t length;
        uint16_t allocated;
    } record;
    static_assert(sizeof(record) == sizeof(string));
    memcpy(&record, static_cast<const void*>(&string), sizeof(record));
    EXPECT_EQ(record.buffer, string.Text());
    EXPECT_EQ(record.length, 3);
    EXPECT_EQ(record.allocated, 1001);
    const XString empty;
    memcpy(&record, static_cast<const void*>(&empty), sizeof(record));
    EXPECT_TRUE(record.buffer == nullptr && record.length == 0 && record.allocated == 0);
}

}  // namespace
