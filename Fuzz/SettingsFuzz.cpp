// The text of settings files beside a map: damaged texts, any names and values.

#include "Configuration/SettingsText.h"
#include "Input.h"
#include "Support/Texts.h"

#include <map>
#include <vector>

namespace {

std::string Unescaped(const std::string& text)
{
    constexpr char kDigits[] = "0123456789abcdef";
    std::string res;
    for (size_t i = 0; i < text.size(); ++i) {
        const std::string code = text.substr(i, 3);
        const bool isCode =
            code.size() == 3 && code[0] == '%' && code.find_first_not_of(kDigits, 1) == std::string::npos;
        res += isCode ? char(std::stoi(code.substr(1), nullptr, 16)) : text[i];
        i += isCode ? 2 : 0;
    }
    return res;
}

std::vector<std::string> LinesOf(const std::string& text)
{
    std::vector<std::string> res;
    for (size_t begin = 0, end = 0; begin < text.size(); begin = end + 1) {
        end = std::min(text.find('\n', begin), text.size());
        res.push_back(text.substr(begin, end - begin));
    }
    return res;
}

/// The first line of each name counts.
std::map<std::string, std::string> SettingsOf(const std::string& text)
{
    std::map<std::string, std::string> res;
    for (const std::string& line : LinesOf(text)) {
        const size_t equal = line.find('=');
        if (equal != std::string::npos) {
            res.emplace(Lower(Unescaped(line.substr(0, equal))), Unescaped(line.substr(equal + 1)));
        }
    }
    return res;
}

/// Each line stays where it is, and at most its value changes.
void CompareLines(const std::string& before, const std::string& after)
{
    const std::vector<std::string> lines = LinesOf(after);
    size_t i = 0;
    for (const std::string& line : LinesOf(before)) {
        Demand(i < lines.size());
        const bool isSetting = line.find('=') != std::string::npos;
        Demand(line == lines[i] ||
               (isSetting && line.substr(0, line.find('=')) == lines[i].substr(0, lines[i].find('='))));
        ++i;
    }
}

void TestPath(const std::string& key)
{
    constexpr char kEnd[] = ".settings";
    constexpr size_t kLongestName = 255;
    std::string path = zm::SettingsPath(key), plain;
    Demand(path.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789_- %/.") == std::string::npos);
    for (size_t begin = 0, end = 0; end != path.size(); begin = end + 1) {
        end = std::min(path.find('/', begin), path.size());
        Demand(end - begin <= kLongestName && end != begin);
        const bool isLast = end == path.size();
        plain += path.substr(begin, end - begin - (isLast ? sizeof(kEnd) - 1 : 1));  // "%" ends the others
    }
    Demand(Unescaped(plain) == Lower(key));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Input input(data, size);
    std::string text = input.Text(input.UpTo(80));
    auto settings = SettingsOf(text);
    for (int step = 0; step < 8 && !input.IsEmpty(); ++step) {
        const std::string name = input.Text(input.UpTo(7)), value = input.Text(input.UpTo(9));
        std::string found;
        const auto setting = settings.find(Lower(name));
        Demand(zm::FindSetting(text, name, found) == (setting != settings.end()));
        Demand(setting == settings.end() || setting->second == found);
        const std::string before = text;
        text = zm::WithSetting(text, name, value);
        settings[Lower(name)] = value;
        CompareLines(before, text);
        Demand(SettingsOf(text) == settings);
    }
    TestPath(text + text + text);
    return 0;
}
