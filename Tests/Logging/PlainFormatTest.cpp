#include "Logging/PlainFormat.h"

#include <gtest/gtest.h>
#include <stdarg.h>
#include <stdio.h>
#include <string.h>

#include <string>

namespace {

bool Format(char* res, int size, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const bool done = zm::FormatPlain(res, size, format, arguments);
    va_end(arguments);
    return done;
}

/// A buffer that is large enough gets the text of the C library. Any other is refused.
template <class... Arguments>
void ExpectAtAllSizes(const char* format, Arguments... arguments)
{
    char expected[100], found[100];
    const int length = snprintf(expected, sizeof(expected), format, arguments...);
    for (int size = 1; size <= length + 3; ++size) {
        memset(found, '#', sizeof(found));
        ASSERT_EQ(Format(found, size, format, arguments...), length < size) << format << " in " << size;
        ASSERT_TRUE(length >= size || std::string(expected) == found) << found;
        ASSERT_EQ(found[size], '#') << format << " in " << size;
    }
}

TEST(PlainFormatTest, WhatFitsIsFormattedAndNothingIsWrittenBeyond)
{
    ExpectAtAllSizes("%s", "");
    ExpectAtAllSizes("%d%d", -2147483647 - 1, 7);
    ExpectAtAllSizes("before %i after", 0);
    ExpectAtAllSizes("%u of %u", 4294967295u, 0u);
    ExpectAtAllSizes("%s and %s", "a text", "another");
    ExpectAtAllSizes("%c%c and %c", 'a', 'b', 'c');
    ExpectAtAllSizes("100 %%%% of %d", 5);
}

TEST(PlainFormatTest, OtherConversionsAreLeftToOthers)
{
    char res[100];
    EXPECT_FALSE(Format(res, sizeof(res), "%s", static_cast<const char*>(nullptr)));
    for (const char* format : {"%x", "%5d", "%ld", "text %", "%-s", "%n"}) {
        EXPECT_FALSE(Format(res, sizeof(res), format, 1)) << format;
    }
}

}  // namespace
