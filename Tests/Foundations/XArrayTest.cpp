#include "XArray.h"

#include "Support/Random.h"
#include "Support/Tracked.h"
#include "XString.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

namespace {

int NumberOf(int item)
{
    return item;
}
int NumberOf(const Tracked& item)
{
    return item.Number();
}
int NumberOf(const XString& item)
{
    return int(strtol(item.Text(), nullptr, 10));
}

template <class T>
T Made(int number)
{
    return T(number);
}
template <>
XString Made(int number)
{
    return XString() + number;
}

template <class T>
void ChangeAtRandom(XArray<T>& array, std::vector<int>& model, Random& random)
{
    const int number = random.Int(0, 999), choice = random.Int(0, 9), capacity = array.Capacity();
    const int place = model.empty() ? 0 : random.Int(0, int(model.size()) - 1);
    if (choice < 3 || model.empty()) {
        model.push_back(number);
        array.PushBack(Made<T>(number));
    } else if (choice == 3) {
        model.push_back(int(model[size_t(place)]));
        array.PushBack(array[place]);
    } else if (choice == 4) {
        model.pop_back();
        array.PopBack();
    } else if (choice == 5) {
        model.erase(model.begin() + place);
        array.RemoveAt(place);
    } else if (choice == 6) {
        XArray<T> copy(array), other;
        EXPECT_EQ(copy.Capacity(), array.Size());
        other.PushBack(Made<T>(number));
        other = copy;
        array.Swap(other);
    } else if (choice == 7) {
        XArray<T> moved(std::move(array));
        EXPECT_EQ(array.Size() + array.Capacity(), 0);
        array = std::move(moved);
    } else if (choice == 8) {
        array.Reserve(number % 40);
        EXPECT_EQ(array.Capacity(), std::max(capacity, number % 40));
    } else if (number < 100) {
        model.clear();
        array.Clear();
        EXPECT_EQ(array.Capacity(), capacity);
    }
}

template <class T>
void CompareWithVector(uint64_t seed)
{
    Random random(seed);
    XArray<T> array;
    std::vector<int> model;
    for (int i = 0; i < 10000; ++i) {
        ChangeAtRandom(array, model, random);
        std::vector<int> numbers;
        for (const T* item = array.Begin(); item != array.End(); ++item) {
            numbers.push_back(NumberOf(*item));
        }
        ASSERT_EQ(numbers, model) << "step " << i;
        ASSERT_EQ(array.Size(), int(model.size())) << "step " << i;
    }
}

TEST(XArrayTest, RandomOperationsAgreeWithAVector)
{
    CompareWithVector<int>(1);
    CompareWithVector<XString>(2);
    CompareWithVector<Tracked>(3);
    EXPECT_EQ(Tracked::Alive(), 0);
}

/// Appends the array's own items, which must stay valid even when the array grows; returns the capacities on the way.
template <class T>
std::vector<int> GrowByOwnItems(bool byMoving)
{
    XArray<T> array;
    std::vector<int> capacities{array.Capacity()};
    array.PushBack(Made<T>(7));
    while (array.Size() < 9) {
        if (array.Capacity() != capacities.back()) {
            capacities.push_back(array.Capacity());
        }
        byMoving ? array.PushBack(std::move(array.Back())) : array.PushBack(array.Front());
        EXPECT_EQ(NumberOf(array.Back()), 7);
    }
    return capacities;
}

TEST(XArrayTest, CapacityDoublesFromTwoPlainValuesOrOneOther)
{
    const std::vector<int> plain{0, 2, 4, 8}, other{0, 1, 2, 4, 8};
    for (const bool byMoving : {false, true}) {
        EXPECT_EQ(GrowByOwnItems<int>(byMoving), plain);
        EXPECT_EQ(GrowByOwnItems<XString>(byMoving), other);
        EXPECT_EQ(GrowByOwnItems<Tracked>(byMoving), other);
    }
    XArray<char*> pointers;
    pointers.PushBack(nullptr);
    EXPECT_EQ(pointers.Capacity(), 2);
}

TEST(XArrayTest, ItemsThatOnlyMoveGrowAndGo)
{
    XArray<std::unique_ptr<Tracked>> array;
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(array.PushBack(std::make_unique<Tracked>(i)), 1);
    }
    array.RemoveAt(0);
    EXPECT_EQ(array.Front()->Number(), 1);
    EXPECT_EQ(Tracked::Alive(), 19);
    array = XArray<std::unique_ptr<Tracked>>();
    EXPECT_EQ(Tracked::Alive(), 0);
}

#ifndef NDEBUG
TEST(XArrayDeathTest, DebugBuildsStopOutsideTheArray)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    XArray<int> array, empty;
    array.PushBack(1);
    EXPECT_DEATH(array[1] = 2, "position");
    EXPECT_DEATH(array[-1] = 2, "position");
    EXPECT_DEATH(array.RemoveAt(1), "position");
    EXPECT_DEATH(empty.Back() = 2, "position");
    EXPECT_DEATH(empty.PopBack(), "IsEmpty");
}
#endif

}  // namespace
