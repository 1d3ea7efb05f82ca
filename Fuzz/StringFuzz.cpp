// Strings beside std::string. Texts may contain NULs, and arguments may be the string itself.

#include "Input.h"
#include "Support/Texts.h"
#include "XStringTokenizer.h"

namespace {

typedef std::string Model;
constexpr size_t kMaxLength = XString::kMaxLength;

struct Pair {
    XString real;
    Model model;
};

/// The operands of one operation.
struct Step {
    Step(Input& input, const Pair& o)
        : other(o), number(input.UpTo(12)), length(input.UpTo(12)), letter(char(std::max(1, int(input.Byte())))),
          text(input.Text(number)), word(text.c_str())
    {
        length = length == 12 ? 65535 : length;
    }

    const Pair& other;  ///< may be the string itself
    int number, length;
    char letter;
    Model text, word;  ///< the word has no NULs
    int replaced = 0;  ///< counted by the string minus counted by the model
};

Model ToNul(const Model& text)
{
    return text.c_str();
}

/// Case changes only up to the first NUL.
Model AfterNul(const Model& text)
{
    return text.substr(ToNul(text).size());
}

Model Part(const Model& text, int start, int length = 65535)
{
    return size_t(start) < text.size() ? text.substr(size_t(start), size_t(length)) : "";
}

Model Sum(const Model& text, const Model& tail)
{
    return text.size() + tail.size() <= kMaxLength ? text + tail : text;
}

Model Replaced(const Model& text, Step& a)
{
    const Model from = a.word, to = a.other.model;
    const size_t end = ToNul(text).size();
    Model res;
    size_t read = 0, count = 0;
    for (size_t at; !from.empty() && (at = text.find(from, read)) < end && res.size() <= kMaxLength; ++count) {
        res += text.substr(read, at - read) + to;
        read = at + from.size();
    }
    if (res.size() + text.size() - read > kMaxLength) {
        return text;
    }
    a.replaced -= int(count);
    return res + text.substr(read);
}

const struct {
    void (*run)(XString& s, Step& a);
    Model (*expected)(const Model& s, Step& a);
} kOperations[] = {
    {[](XString& s, Step& a) { s.Create(a.text.data(), int(a.text.size())); },
     [](const Model&, Step& a) { return a.text; }},
    {[](XString& s, Step& a) { s = a.word.c_str(); }, [](const Model&, Step& a) { return a.word; }},
    {[](XString& s, Step& a) { s = a.other.real; }, [](const Model&, Step& a) { return a.other.model; }},
    {[](XString& s, Step& a) { s.CreateTail(a.other.real, a.number); },
     [](const Model&, Step& a) { return Part(a.other.model, a.number); }},
    {[](XString& s, Step& a) { s << a.word.c_str(); }, [](const Model& s, Step& a) { return Sum(s, a.word); }},
    {[](XString& s, Step& a) { s << a.other.real; }, [](const Model& s, Step& a) { return Sum(s, a.other.model); }},
    {[](XString& s, Step& a) { s << a.letter; }, [](const Model& s, Step& a) { return Sum(s, {a.letter}); }},
    {[](XString& s, Step& a) { s = a.other.real + a.word.c_str(); },
     [](const Model&, Step& a) { return Sum(a.other.model, a.word); }},
    {[](XString& s, Step& a) { s.Format("%s|%d", a.other.real.Text(), a.length); },
     [](const Model&, Step& a) { return (ToNul(a.other.model) + "|" + std::to_string(a.length)).substr(0, 511); }},
    {[](XString& s, Step&) { s.ToUpper(); }, [](const Model& s, Step&) { return Upper(ToNul(s)) + AfterNul(s); }},
    {[](XString& s, Step&) { s.ToLower(); }, [](const Model& s, Step&) { return Lower(ToNul(s)) + AfterNul(s); }},
    {[](XString& s, Step&) { s.Trim(); }, [](const Model& s, Step&) { return Trimmed(s); }},
    {[](XString& s, Step&) { s.Strip(); }, [](const Model& s, Step&) { return Stripped(s); }},
    {[](XString& s, Step& a) { s.Crop(uint16_t(a.number), uint16_t(a.length)); },
     [](const Model& s, Step& a) { return Part(s, a.number, a.length); }},
    {[](XString& s, Step& a) { s.Cut(uint16_t(a.number), uint16_t(a.length)); },
     [](const Model& s, Step& a) { return s.substr(0, size_t(a.number)) + Part(s, a.number + a.length); }},
    {[](XString& s, Step& a) { s = s.Substring(uint16_t(a.number), uint16_t(a.length)); },
     [](const Model& s, Step& a) {
         const Model res = Part(s, a.number, a.length != 0 ? a.length : 65535);
         return res[0] != 0 ? res : "";
     }},
    {[](XString& s, Step& a) { a.replaced += s.Replace(a.word.c_str(), a.other.real); }, Replaced},
    {[](XString& s, Step& a) { s.Replace(a.letter, 'b'); },
     [](const Model& s, Step& a) {
         Model res = s;
         std::replace(res.begin(), res.end(), a.letter, 'b');
         return res;
     }},
    {[](XString& s, Step& a) { s.Reserve(uint16_t(a.length)); }, [](const Model& s, Step&) { return s; }},
    {[](XString& s, Step&) { s.FitLength(); }, [](const Model& s, Step&) { return ToNul(s); }},
};

uint16_t PositionOf(size_t found)
{
    return found == Model::npos ? XString::kNotFound : uint16_t(found);
}

int Sign(int number)
{
    return (number > 0) - (number < 0);
}

void CompareSearches(const Pair& a, const Pair& b, const Step& step)
{
    const Model text = ToNul(a.model), wanted = step.word.substr(0, 2);
    const char c = step.letter;
    const uint16_t start = uint16_t(step.number);
    const bool hasStart = start <= text.size(), none = !hasStart || wanted.empty();
    if (hasStart || start > a.model.size()) {
        Demand(a.real.Find(c, start) == PositionOf(hasStart ? text.find(c, start) : Model::npos));
        Demand(a.real.Find(wanted.c_str(), start) == PositionOf(none ? Model::npos : text.find(wanted, start)));
        Demand(a.real.IFind(wanted.c_str(), start) ==
               PositionOf(none ? Model::npos : Lower(text).find(Lower(wanted), start)));
    }
    Demand(a.real.RFind(c) == PositionOf(text.rfind(c)));
    Demand(a.real.RFind(c, start) == PositionOf(text.substr(0, start).rfind(c)));
    Demand(Sign(a.real.Compare(b.real)) == Sign(a.model.compare(b.model)));
    Demand((a.real == b.real) == (a.model == b.model) && (a.real < b.real) == (a.model < b.model));
    const int lengths = int(a.model.size()) - int(b.model.size());
    const bool same = Lower(ToNul(a.model)) == Lower(ToNul(b.model));
    Demand(a.model.empty() || b.model.empty() ? a.real.ICompare(b.real) == lengths
                                              : (a.real.ICompare(b.real) == 0) == same);
}

void CompareTokens(XString copy, const Model& delimiters)
{
    const Model text = copy.Text();
    copy.FitLength();
    XStringTokenizer tokens(copy, delimiters.c_str());
    const char* token = tokens.NextToken(nullptr);
    for (size_t at = 0; (at = text.find_first_not_of(delimiters, at)) != Model::npos; token = tokens.NextToken(token)) {
        const size_t end = std::min(text.find_first_of(delimiters, at), text.size());
        Demand(token == copy.Text() + at && token == text.substr(at, end - at));
        at = end;
    }
    Demand(token == nullptr);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    constexpr size_t kLongest = 200;  // for speed; XStringModelTest has the longest strings
    Input input(data, size);
    Pair strings[2];
    for (int step = 0; step < 12 && !input.IsEmpty(); ++step) {
        const int choice = input.UpTo(3);
        const auto& operation = kOperations[input.UpTo(int(std::size(kOperations)) - 1)];
        Pair& changed = strings[choice % 2];
        Step operands(input, strings[choice / 2]);
        Model expected = operation.expected(changed.model, operands);
        operation.run(changed.real, operands);
        Demand(changed.real.Length() == expected.size() && operands.replaced == 0);
        Demand(memcmp(changed.real.Text(), expected.c_str(), expected.size() + 1) == 0);
        changed.model.swap(expected);
        if (changed.model.size() > kLongest) {
            break;
        }
    }
    const Step step(input, strings[0]);
    CompareSearches(strings[0], strings[1], step);
    CompareTokens(strings[0].real, step.word);
    return 0;
}
