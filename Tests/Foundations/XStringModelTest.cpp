#include "Support/Random.h"
#include "Support/Texts.h"
#include "XString.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>

namespace {

constexpr size_t kMaxLength = 65534;

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

/// The operands of one step. The text may be a part of the string that changes, so a copy of it is kept.
struct Step {
    Step(Random& random, const XString& string, std::string& foreign);

    const char* text;
    std::string words;  ///< the text
    std::string view;   ///< the text as an XBaseString reads it
    int start, length;  ///< of a part of the string
    char from, to;
    std::string fromText;
    int count = 0;  ///< replacements
    bool rebuilt = false;
};

char AnyLetter(Random& random)
{
    return "aAbZ \t-\xE9"[random.Int(0, 7)];
}

Step::Step(Random& random, const XString& string, std::string& foreign)
    : start(random.Int(0, string.Length())), length(random.Int(0, string.Length() - start)), from(AnyLetter(random)),
      to(AnyLetter(random)), fromText(size_t(random.Int(0, 2)), from)
{
    foreign.assign(size_t(random.Int(0, 99) == 0 ? random.Int(0, 70000) : random.Int(0, 12)), ' ');
    std::generate(foreign.begin(), foreign.end(), [&random] { return AnyLetter(random); });
    text = random.Int(0, 3) == 0 ? string.Text() + start : foreign.c_str();
    words = text;
    view = words.size() <= kMaxLength ? words : "";
}

std::string ReplaceAll(const std::string& text, const std::string& from, const std::string& to, Step& step)
{
    std::string res = text;
    int count = 0;
    for (size_t at = 0; !from.empty() && (at = res.find(from, at)) != std::string::npos; at += to.size()) {
        res.replace(at, from.size(), to);
        ++count;
    }
    if (res.size() > kMaxLength) {
        return text;
    }
    step.count += count;
    step.rebuilt = !text.empty() && !from.empty() && from.size() != to.size();
    return res;
}

std::string Appended(const std::string& text, const std::string& tail)
{
    return text.size() + tail.size() <= kMaxLength ? text + tail : text;
}

/// The block expected after a step. A block that need not grow stays the same.
enum Block {
    STAYS,
    GROWS,            ///< where text and terminator do not fit
    GROWS_FOR_TEXT,   ///< the same, but an empty text needs no terminator
    GROWS_TO_LENGTH,  ///< of the step
    IS_EXACT,         ///< text and terminator
    IS_COPY,          ///< the same, but an empty text has no block
    IS_REBUILT        ///< exact if a replacement changes the length
};

size_t BlockAfter(Block rule, size_t before, const std::string& text, const Step& step)
{
    const size_t exact = text.size() + 1;
    switch (rule) {
    case STAYS: return before;
    case GROWS: return std::max(before, exact);
    case GROWS_FOR_TEXT: return text.empty() ? before : std::max(before, exact);
    case IS_EXACT: return exact;
    case IS_COPY: return text.empty() ? 0 : exact;
    case IS_REBUILT: return step.rebuilt ? exact : before;
    case GROWS_TO_LENGTH: return std::max(before, size_t(step.length) + 1);
    }
    return 0;
}

typedef std::string Text;

const struct {
    const char* name;
    void (*run)(XString& s, Step& a);
    Text (*expected)(const Text& s, Step& a);
    Block block;
} kOperations[] = {
    {"= text", [](XString& s, Step& a) { s = a.text; },
     [](const Text&, Step& a) { return a.words.size() <= kMaxLength ? a.words : ""; }, GROWS_FOR_TEXT},
    {"= null", [](XString& s, Step&) { s = static_cast<const char*>(nullptr); },
     [](const Text&, Step&) { return Text(); }, STAYS},
    {"= view", [](XString& s, Step& a) { s = XBaseString(a.text); }, [](const Text&, Step& a) { return a.view; },
     GROWS_FOR_TEXT},
    {"= string", [](XString& s, Step& a) { s = XString(a.text); }, [](const Text&, Step& a) { return a.view; },
     GROWS_FOR_TEXT},
    {"= itself", [](XString& s, Step&) { s = static_cast<const XString&>(s); }, [](const Text& s, Step&) { return s; },
     STAYS},
    {"Create", [](XString& s, Step& a) { s.Create(a.text, std::min(a.length, int(a.words.size()))); },
     [](const Text&, Step& a) { return a.words.substr(0, size_t(a.length)); }, GROWS},
    {"CreateTail of a view", [](XString& s, Step& a) { s.CreateTail(XBaseString(a.text), 1); },
     [](const Text&, Step& a) { return a.view.substr(std::min(a.view.size(), size_t(1))); }, GROWS},
    {"CreateTail of itself", [](XString& s, Step& a) { s.CreateTail(s, a.start); },
     [](const Text& s, Step& a) { return s.substr(size_t(a.start)); }, GROWS},
    {"<< text", [](XString& s, Step& a) { s << a.text; }, [](const Text& s, Step& a) { return Appended(s, a.words); },
     GROWS_FOR_TEXT},
    {"<< view", [](XString& s, Step& a) { s << XBaseString(a.text); },
     [](const Text& s, Step& a) { return Appended(s, a.view); }, GROWS},
    {"<< itself", [](XString& s, Step&) { s << s; }, [](const Text& s, Step&) { return Appended(s, s); }, GROWS},
    {"<< char", [](XString& s, Step& a) { s << a.to; }, [](const Text& s, Step& a) { return Appended(s, {a.to}); },
     GROWS},
    {"<< int", [](XString& s, Step& a) { s << -a.start; },
     [](const Text& s, Step& a) { return Appended(s, std::to_string(-a.start)); }, GROWS},
    {"<< float", [](XString& s, Step& a) { s << float(a.start) / 8; },
     [](const Text& s, Step& a) { return Appended(s, std::to_string(float(a.start) / 8)); }, GROWS},
    {"+", [](XString& s, Step& a) { XString(s + XBaseString(a.text)).Swap(s); },
     [](const Text& s, Step& a) { return Appended(s, a.view); }, IS_EXACT},
    {"Format", [](XString& s, Step& a) { s.Format("%s|%d", s.Text(), a.start); },
     [](const Text& s, Step& a) { return (s + "|" + std::to_string(a.start)).substr(0, 511); }, GROWS},
    {"copy", [](XString& s, Step&) { XString(s).Swap(s); }, [](const Text& s, Step&) { return s; }, IS_COPY},
    {"move", [](XString& s, Step&) { XString(std::move(s)).Swap(s); }, [](const Text& s, Step&) { return s; }, STAYS},
    {"upper", [](XString& s, Step&) { s.ToUpper(); }, [](const Text& s, Step&) { return Upper(s); }, STAYS},
    {"lower", [](XString& s, Step&) { s.ToLower(); }, [](const Text& s, Step&) { return Lower(s); }, STAYS},
    {"Trim", [](XString& s, Step&) { s.Trim(); }, [](const Text& s, Step&) { return Trimmed(s); }, STAYS},
    {"Strip", [](XString& s, Step&) { s.Strip(); }, [](const Text& s, Step&) { return Stripped(s); }, STAYS},
    {"Substring", [](XString& s, Step& a) { s.Substring(uint16_t(a.start), uint16_t(a.length)).Swap(s); },
     [](const Text& s, Step& a) { return s.substr(size_t(a.start), size_t(a.length != 0 ? a.length : -1)); }, IS_COPY},
    {"Crop", [](XString& s, Step& a) { s.Crop(uint16_t(a.start), uint16_t(a.length)); },
     [](const Text& s, Step& a) { return s.substr(size_t(a.start), size_t(a.length)); }, STAYS},
    {"Cut", [](XString& s, Step& a) { s.Cut(uint16_t(a.start), uint16_t(a.length)); },
     [](const Text& s, Step& a) { return Text(s).erase(size_t(a.start), size_t(a.length)); }, STAYS},
    {"Replace chars", [](XString& s, Step& a) { a.count -= s.Replace(a.from, a.to); },
     [](const Text& s, Step& a) { return ReplaceAll(s, {a.from}, {a.to}, a); }, STAYS},
    {"Replace", [](XString& s, Step& a) { a.count -= s.Replace(a.fromText.c_str(), a.text); },
     [](const Text& s, Step& a) { return ReplaceAll(s, a.fromText, a.view, a); }, IS_REBUILT},
    {"Replace a part by all", [](XString& s, Step& a) { a.count -= s.Replace(XBaseString(s.Text() + a.start), s); },
     [](const Text& s, Step& a) { return ReplaceAll(s, s.substr(size_t(a.start)), s, a); }, IS_REBUILT},
    {"Reserve", [](XString& s, Step& a) { s.Reserve(uint16_t(a.length)); }, [](const Text& s, Step&) { return s; },
     GROWS_TO_LENGTH},
};

uint16_t PositionOf(size_t found)
{
    return found == std::string::npos ? uint16_t(65535) : uint16_t(found);
}

void CompareSearches(const XString& real, const std::string& text, const Step& step)
{
    const uint16_t start = uint16_t(std::min(step.start, int(text.size())));
    const std::string wanted = step.fromText;
    const XBaseString view(wanted.c_str());
    const bool none = text.empty() || wanted.empty();
    EXPECT_EQ(real.Find(step.from, start), PositionOf(text.find(step.from, start)));
    EXPECT_EQ(real.Find(view, start), PositionOf(none ? std::string::npos : text.find(wanted, start)));
    EXPECT_EQ(real.IFind(view, start), PositionOf(none ? std::string::npos : Lower(text).find(Lower(wanted), start)));
    EXPECT_EQ(real.RFind(step.from), PositionOf(text.rfind(step.from)));
    EXPECT_EQ(real.RFind(step.from, start), PositionOf(text.substr(0, start).rfind(step.from)));
    EXPECT_EQ(real.ICompare(view), ICompare(text, wanted));
    EXPECT_EQ(real.Compare(view) < 0, text < wanted);
    EXPECT_EQ(real.Compare(view) > 0, text > wanted);
    EXPECT_EQ(real == view, text == wanted);
}

TEST(XStringModelTest, RandomOperationsAgreeWithTheModel)
{
    Random random(1);
    XString real;
    std::string text, foreign;
    size_t block = 0;
    for (int i = 0; i < 60000 && !testing::Test::HasFailure(); ++i) {
        const auto& operation = kOperations[random.Int(0, int(std::size(kOperations)) - 1)];
        SCOPED_TRACE(std::string(operation.name) + " at step " + std::to_string(i));
        Step step(random, real, foreign);
        text = operation.expected(text, step);
        const char* before = real.Text();
        const size_t sizeBefore = std::exchange(block, BlockAfter(operation.block, block, text, step));
        operation.run(real, step);
        EXPECT_TRUE(real.Length() == text.size() && memcmp(real.Text(), text.c_str(), text.size() + 1) == 0)
            << real.Text() << "\ninstead of\n"
            << text;
        EXPECT_EQ(real.Capacity(), block);
        EXPECT_EQ(real.Text() == XString().Text(), block == 0);
        EXPECT_TRUE(real.Text() == before || block != sizeBefore || operation.block >= IS_EXACT) << "needless growth";
        EXPECT_EQ(step.count, 0) << "too many replacements counted";
        CompareSearches(real, text, step);
    }
}

}  // namespace
