#pragma once

#include "ZmThread.h"

#include <gtest/gtest.h>

struct PriorityRow {
    unsigned int priority;
    int expected;
};

/// What the system says, inside a thread of each priority.
template <class Ask>
void ExpectPriorities(const std::initializer_list<PriorityRow>& rows, Ask)
{
    for (const PriorityRow& row : rows) {
        SCOPED_TRACE(row.priority);
        ZmThread thread;
        thread.SetPriority(row.priority);
        ASSERT_EQ(thread.CreateThread([](void*) { return unsigned(Ask()()); }, nullptr), 1);
        unsigned int code = 0;
        EXPECT_EQ(thread.Wait(&code, 0), 53);
        EXPECT_EQ(int(code), row.expected);
        thread.Close();
    }
}
