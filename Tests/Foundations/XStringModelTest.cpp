#include "Support/Random.h"
#include "XString.h"

#include <ctype.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>

namespace {

constexpr size_t kMaxLength = 65534;

bool IsSpace(char c)
{
    return isspace(uint8_t(c)) != 0;
}

std::string Lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](char c) { return char(tolower(uint8_t(c))); });
    return text;
}

std::string Upper(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](char c) { return char(toupper(uint8_t(c))); });
    return text;
}

std::string Trimmed(const std::string& text)
{
    const auto first = std::find_if_not(text.begin(), text.end(), IsSpace);
    return {first, std::find_if_not(text.rbegin(), std::make_reverse_iterator(first), IsSpace).base()};
}

std::string Stripped(const std::string& text)
{
    const auto bothSpace = [](char a, char b) { return IsSpace(a) && IsSpace(b); };
    const auto run = std::adjacent_find(text.begin(), text.end(), bothSpace);
    if (run == text.end()) {
        return text;
    }
    std::string res(text.begin(), run + 1);
    for (auto c = run + 1; c != text.end() - 1; ++c) {  // the last character is lost
        if (!IsSpace(*c)) {
            res += *c;
        } else if (!IsSpace(res.back())) {
            res += ' ';
        }
    }
    return res;
}

int ICompare(const std::string& a, const std::string& b)
{
    if (a.empty() || b.empty()) {
        return a.empty() ? -int(b.size()) : int(a.size());
    }
    const std::string lowerA = Lower(a), lowerB = Lower(b);
    size_t i = 0;
    while (i < a.size() && lowerA[i] == lowerB[i]) {
        ++i;
    }
    return lowerA.c_str()[i] - lowerB.c_str()[i];
}

int SignOf(int value)
{
    return (value > 0) - (value < 0);
}

/// A string, and what it must be: its text and the size of its block, 0 for none.
struct Both {
    explicit Both(uint64_t seed) : random(seed) {}

    char Letter() { return "aAbZ \t-\xE9"[random.Int(0, 7)]; }

    /// A text of its own, or a part of the string that it will be given to.
    const char* Text()
    {
        if (random.Int(0, 3) == 0) {
            return real.Text() + random.Int(0, real.Length());
        }
        foreign.assign(size_t(random.Int(0, 99) == 0 ? random.Int(0, 70000) : random.Int(0, 12)), ' ');
        std::generate(foreign.begin(), foreign.end(), [this] { return Letter(); });
        return foreign.c_str();
    }
    uint16_t Position() { return uint16_t(random.Int(0, real.Length())); }

    void Grow(size_t count) { block = std::max(block, count + 1); }
    void Assign(const std::string& value)
    {
        text.clear();
        if (!value.empty() && value.size() <= kMaxLength) {
            Grow(value.size());
            text = value;
        }
    }
    void Append(const std::string& value)
    {
        if (text.size() + value.size() <= kMaxLength) {
            Grow(text.size() + value.size());
            text += value;
        }
    }
    int Replace(const std::string& from, const std::string& to)
    {
        if (text.empty() || from.empty()) {
            return 0;
        }
        std::string res = text;
        int count = 0;
        for (size_t at = 0; (at = res.find(from, at)) != std::string::npos; at += to.size()) {
            res.replace(at, from.size(), to);
            ++count;
        }
        if (res.size() > kMaxLength) {
            return 0;
        }
        block = from.size() != to.size() ? res.size() + 1 : block;
        text = res;
        return count;
    }

    XString real;
    std::string text;
    size_t block = 0;
    Random random;
    std::string foreign;
};

// What an argument says is read before the string changes, for it may be a part of it.
const struct {
    const char* name;
    void (*run)(Both& b);
} kOperations[] = {
    {"= text",
     [](Both& b) {
         const char* value = b.Text();
         b.Assign(value);
         b.real = value;
     }},
    {"= null",
     [](Both& b) {
         b.Assign("");
         b.real = static_cast<const char*>(nullptr);
     }},
    {"= view",
     [](Both& b) {
         const XBaseString value(b.Text());
         b.Assign(value.Text());
         b.real = value;
     }},
    {"= string",
     [](Both& b) {
         const XString other(b.Text()), &self = b.real, &value = b.random.Int(0, 3) == 0 ? self : other;
         b.Assign(value.Text());
         b.real = value;
     }},
    {"Create",
     [](Both& b) {
         const char* value = b.Text();
         const std::string part(value, std::min(strlen(value), size_t(b.random.Int(0, 20))));
         b.Grow(part.size());
         b.text = part;
         b.real.Create(value, int(part.size()));
     }},
    {"CreateTail",
     [](Both& b) {
         const XString other(b.Text()), &value = b.random.Int(0, 3) == 0 ? b.real : other;
         const int start = b.random.Int(0, value.Length());
         const std::string tail = value.Text() + start;
         b.Grow(tail.size());
         b.text = tail;
         b.real.CreateTail(value, start);
     }},
    {"<< text",
     [](Both& b) {
         const char* value = b.Text();
         if (*value != 0) {
             b.Append(value);
         }
         b.real << value;
     }},
    {"<< view",
     [](Both& b) {
         const XBaseString value(b.Text());
         b.Append(value.Text());
         b.real << value;
     }},
    {"<< itself",
     [](Both& b) {
         b.Append(std::string(b.text));
         b.real << b.real;
     }},
    {"<< char",
     [](Both& b) {
         const char value = b.Letter();
         b.Append({value});
         b.real << value;
     }},
    {"<< numbers",
     [](Both& b) {
         const uint32_t bits = b.random.Bits();
         const float value = float(b.random.Int(-100000, 100000)) / 8;
         b.Append(std::to_string(int32_t(bits)));
         b.Append(std::to_string(bits));
         b.Append(std::to_string(value));
         b.real << int32_t(bits) << bits << value;
     }},
    {"+",
     [](Both& b) {
         const XBaseString value(b.Text());
         Both sum(1);
         sum.Assign(b.text);
         sum.Append(value.Text());
         const XString real = b.real + value;
         EXPECT_STREQ(real.Text(), sum.text.c_str());
         EXPECT_EQ(real.Capacity(), sum.block);
     }},
    {"Format",
     [](Both& b) {
         const int value = b.random.Int(-9, 9);
         const std::string all = b.text + "|" + std::to_string(value);
         b.Assign(all.substr(0, 511));
         b.real.Format("%s|%d", b.real.Text(), value);
     }},
    {"copy",
     [](Both& b) {
         b.block = b.text.empty() ? 0 : b.text.size() + 1;
         XString copy(b.real);
         b.real.Swap(copy);
     }},
    {"move",
     [](Both& b) {
         XString moved(std::move(b.real));
         EXPECT_EQ(b.real.Capacity() + b.real.Length(), 0);
         b.real.Swap(moved);
     }},
    {"ToUpper and ToLower",
     [](Both& b) {
         const bool upper = b.random.Int(0, 1) == 0;
         b.text = upper ? Upper(b.text) : Lower(b.text);
         upper ? b.real.ToUpper() : b.real.ToLower();
     }},
    {"Trim",
     [](Both& b) {
         b.text = Trimmed(b.text);
         b.real.Trim();
     }},
    {"Strip",
     [](Both& b) {
         b.text = Stripped(b.text);
         b.real.Strip();
     }},
    {"= Substring",
     [](Both& b) {
         const uint16_t start = b.Position(), length = b.Position();
         b.Assign(b.text.substr(start, length == 0 ? std::string::npos : length));
         b.real = b.real.Substring(start, length);
     }},
    {"Crop",
     [](Both& b) {
         const uint16_t start = b.Position(), length = b.Position();
         b.text = b.text.substr(start, length);
         b.real.Crop(start, length);
     }},
    {"Cut",
     [](Both& b) {
         const uint16_t start = b.Position(), length = uint16_t(b.random.Int(0, b.real.Length() - start));
         b.text.erase(start, length);
         b.real.Cut(start, length);
     }},
    {"Replace char",
     [](Both& b) {
         const char from = b.Letter(), to = b.Letter();
         const int count = int(std::count(b.text.begin(), b.text.end(), from));
         std::replace(b.text.begin(), b.text.end(), from, to);
         EXPECT_EQ(b.real.Replace(from, to), count);
     }},
    {"Replace",
     [](Both& b) {
         const std::string from(size_t(b.random.Int(0, 2)), b.Letter());
         const XBaseString to(b.Text());
         const int count = b.Replace(from, to.Text());
         EXPECT_EQ(b.real.Replace(XBaseString(from.c_str()), to), count);
     }},
    {"Replace its end by itself",
     [](Both& b) {
         const XBaseString from(b.real.Text() + b.Position());
         const int count = b.Replace(from.Text(), std::string(b.text));
         EXPECT_EQ(b.real.Replace(from, b.real), count);
     }},
    {"Reserve",
     [](Both& b) {
         const int size = b.random.Int(0, 40);
         b.Grow(size_t(size));
         b.real.Reserve(uint16_t(size));
     }},
};

uint16_t PositionOf(size_t found)
{
    return found == std::string::npos ? uint16_t(65535) : uint16_t(found);
}

void CompareSearches(Both& b)
{
    const uint16_t start = b.Position();
    const char letter = b.Letter();
    const std::string wanted(size_t(b.random.Int(0, 3)), letter), &text = b.text;
    const XBaseString view(wanted.c_str());
    const bool none = text.empty() || wanted.empty();
    EXPECT_EQ(b.real.Find(letter, start), PositionOf(text.find(letter, start)));
    EXPECT_EQ(b.real.Find(view, start), PositionOf(none ? std::string::npos : text.find(wanted, start)));
    EXPECT_EQ(b.real.IFind(view, start), PositionOf(none ? std::string::npos : Lower(text).find(Lower(wanted), start)));
    EXPECT_EQ(b.real.RFind(letter), PositionOf(text.rfind(letter)));
    EXPECT_EQ(b.real.RFind(letter, start), PositionOf(text.substr(0, start).rfind(letter)));
    EXPECT_EQ(b.real.ICompare(view), ICompare(text, wanted));
    EXPECT_EQ(SignOf(b.real.Compare(view)), SignOf(text.compare(wanted)));
    EXPECT_EQ(b.real == view, text == wanted);
}

TEST(XStringModelTest, RandomOperationsAgreeWithTheModel)
{
    Both b(1);
    const int last = int(std::size(kOperations)) - 1;
    for (int i = 0; i < 40000; ++i) {
        const auto& operation = kOperations[b.random.Int(0, last)];
        operation.run(b);
        CompareSearches(b);
        ASSERT_FALSE(testing::Test::HasFailure()) << operation.name << ", step " << i << ", now " << b.text.substr(0, 99);
        ASSERT_EQ(std::string(b.real.Text(), b.real.Length()), b.text) << operation.name << ", step " << i;
        ASSERT_EQ(b.real.Text()[b.text.size()], 0) << operation.name << ", step " << i;
        ASSERT_EQ(b.real.Capacity(), b.block) << operation.name << ", step " << i;
        ASSERT_EQ(b.real.Text() == XString().Text(), b.block == 0) << operation.name << ", step " << i;
    }
}

}  // namespace
