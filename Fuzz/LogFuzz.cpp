// Messages, lines of the log and numbers in strings beside what snprintf() writes. All values of an input have one
// type, so that any format made for that type can be used.

#include "Input.h"
#include "ZmLog.h"

#include <stdio.h>

namespace {

constexpr XGUID kType = {0x46757A7A, 1};

class Catcher : public ZmLogListener {
public:
    explicit Catcher(const char* name) : ZmLogListener(name) {}
    const XGUID& GetGuid() const override { return kType; }
    void Output(int module, int level, int line, const char* file, const char* text) override
    {
        message = text;
        built = BuildLine(module, level, line, file, text).text;
    }

    std::string message, built;
};

struct Setup {
    Setup()
    {
        ZmLog::GetLog().RegisterListenerFactory(kType,
                                                [](const char* name) -> ZmLogListener* { return new Catcher(name); });
        catcher = static_cast<Catcher*>(ZmLog::GetLog().RegisterListener(kType, "Catcher", module));
    }

    int module = ZmLog::GetLog().RegisterModule("Fuzz");
    Catcher* catcher;
};

struct Format {
    std::string text;
    bool complete;  ///< does not end within a conversion
};

/// Texts and up to four conversions to one of the letters.
Format ReadFormat(Input& input, const std::string& size, const std::string& letters)
{
    constexpr int kValues = 4, kBeyondMessages = 17000;
    Format res = {"", true};
    for (int values = 0; res.complete && !input.IsEmpty();) {
        const int choice = input.Byte();
        if (choice >= 64 || values == kValues) {
            res.text += choice == '%' ? "%%" : std::string(1, char(std::max(choice, 1)));
            continue;
        }
        res.text += '%';
        for (const char flag : std::string("-+ #0")) {
            res.text += (choice & 32) != 0 && input.UpTo(1) != 0 ? std::string(1, flag) : "";
        }
        const int width = (choice & 16) != 0 ? input.UpTo(63) : 0;
        res.text += width == 63 ? std::to_string(kBeyondMessages) : width != 0 ? std::to_string(width) : "";
        res.text += (choice & 8) != 0 ? '.' + std::to_string(input.UpTo(30)) : "";
        res.complete = (choice & 7) != 0;
        res.text += res.complete ? size + letters[size_t(choice & 7) % letters.size()] : "";
        ++values;
    }
    return res;
}

std::string LineOf(const Catcher& catcher, int level, int line, const std::string& file, const std::string& message)
{
    const char* const name = ZmLog::GetLevelDesc(ZmLog::Level(level));
    std::string res = std::string("[Fuzz] [") + name + "] ";
    if ((catcher.GetFlags() & ZmLogListener::SOURCE_LINE) != 0) {
        res += '[' + file.substr(file.rfind('\\') + 1) + ':' + std::to_string(line) + "] ";
    }
    res += ": ";
    for (const char c : message) {
        char code[5] = {c};
        if ((catcher.GetFlags() & ZmLogListener::ESCAPED) != 0 && ((c >= 0 && c < ' ') || c == 127)) {
            snprintf(code, sizeof(code), "\\x%02x", unsigned(c));
        }
        res += code;
    }
    return res + '\n';
}

template <class Value>
void Test(Input& input, const Value (&v)[4], const char* size, const char* letters)
{
    static const Setup setup;
    static char expected[80000];
    constexpr size_t kLongestMessage = 16383, kLongestString = 511;
    Catcher& catcher = *setup.catcher;
    catcher.SetFlags(input.UpTo(15));
    const int level = 1 << input.UpTo(4), line = int(input.Word());
    const std::string file = input.Text(input.UpTo(9)).c_str();
    const Format format = ReadFormat(input, size, letters);
    const char* const text = format.text.c_str();
    ZmLog::GetLog().SetInformationMT(setup.module, ZmLog::Level(level), line, file.c_str());
    ZmLog::GetLog().PrintMT(text, v[0], v[1], v[2], v[3]);
    if (!format.complete || snprintf(expected, sizeof(expected), text, v[0], v[1], v[2], v[3]) < 0) {
        snprintf(expected, sizeof(expected), "%s", text);
    } else {
        XString string;
        string.Format(text, v[0], v[1], v[2], v[3]);
        Demand(string.Text() == std::string(expected).substr(0, kLongestString));
    }
    Demand(catcher.message == std::string(expected).substr(0, kLongestMessage));
    Demand(catcher.built == LineOf(catcher, level, line, file, catcher.message));
}

template <class Value>
void TestNumber(Input& input, const char* size, const char* letters, const char* format)
{
    const Value value = input.As<Value>();
    char expected[400];
    snprintf(expected, sizeof(expected), format, value);
    Demand((XString() << value) == expected);
    const Value values[4] = {value, 0, Value(value / 7), Value(value / 1000)};
    Test(input, values, size, letters);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Input input(data, size);
    switch (input.UpTo(5)) {
    case 0: TestNumber<int>(input, "", "dic", "%d"); break;
    case 1: TestNumber<unsigned>(input, "", "uxXo", "%u"); break;
    case 2: TestNumber<unsigned long long>(input, "ll", "uxXo", "%llu"); break;
    case 3: TestNumber<long long>(input, "ll", "di", "%lld"); break;
    case 4: TestNumber<double>(input, "", "fFeEgGaA", "%f"); break;
    default: {
        const std::string texts[2] = {input.Text(input.UpTo(9)), input.Text(input.UpTo(9))};
        const char* const values[4] = {texts[0].c_str(), "", texts[1].c_str(), "x"};
        Test(input, values, "", "s");
    }
    }
    return 0;
}
