// Path texts, patterns and walks: split paths must join again, conversions and matches agree with simple models, and a
// walk finds the files of a known tree.

#include "Files/WildcardPattern.h"
#include "Input.h"
#include "RKDirectoryParser.h"
#include "ScratchFolder.h"
#include "Support/Texts.h"
#include "ZmPath.h"

#include <memory>
#include <set>

namespace {

constexpr size_t kLongestPart = 255, kLongestPath = 259;
constexpr char kSeparators[] = "/\\";

bool IsSeparator(char c)
{
    return c == '/' || c == '\\';
}

void TestSplitting(const std::string& path)
{
    const RKPathSplitter splitter(path.c_str());
    const std::string drive = splitter.GetDrive(), dir = splitter.GetDir(), name = splitter.GetName(),
                      extension = splitter.GetExtension(), whole = drive + dir + name + extension;
    Demand(whole == path || (whole.empty() && path.size() > kLongestPart));
    Demand(drive.empty() || (drive.size() == 2 && drive[1] == ':'));
    Demand(dir.empty() || IsSeparator(dir.back()));
    Demand((name + extension).find_first_of(kSeparators) == std::string::npos);
    Demand(extension.empty() ? name.find('.') == std::string::npos : extension.rfind('.') == 0);
    const RKPathMaker maker(drive.c_str(), dir.c_str(), name.c_str(), extension.c_str());
    Demand(maker.GetPath() == (whole.size() <= kLongestPath ? whole : ""));
}

void TestJoining(const std::string& dir, const std::string& file)
{
    const std::unique_ptr<char[]> res(new char[kLongestPath + 1]);
    const std::string joined = dir + (dir.empty() || IsSeparator(dir.back()) ? "" : "\\") + file;
    const bool fits = joined.size() <= kLongestPath;
    Demand(ZmMakePath(res.get(), dir.c_str(), file.c_str()) == fits && res.get() == (fits ? joined : ""));
}

void TestConversion(const std::string& path)
{
    XString res(path.c_str());
    ZmConvertPathToSystemPath(res);
    std::string expected = path;
    const bool hasDrive =
        path.size() > 2 && path[1] == ':' && path[2] == '\\' && ((path[0] | 32) >= 'a') && ((path[0] | 32) <= 'z');
    std::replace_if(
        expected.begin() + (hasDrive ? 2 : 0), expected.end(), [](char c) { return c == ':' || c == '/'; }, '\\');
    Demand(expected == res.Text());
}

void TestUrls(const std::string& text)
{
    constexpr char kEscaped[] = " \\+,;=@[]^{}";
    XString url, plain(text.c_str());
    Demand(ZmEscapeURL(text.c_str(), url) == 0);
    std::string expected;
    if (Lower(text.substr(0, 7)) == "file://" || text.find_first_of(kEscaped) == std::string::npos) {
        expected = text;
    } else {
        expected = text.find("://") == std::string::npos ? "file://" : "";
        for (const char c : text) {
            char code[4] = {c == '\\' ? '/' : c};
            if (c != '\\' && strchr(kEscaped, c) != nullptr) {
                snprintf(code, sizeof(code), "%%%02x", unsigned(c));
            }
            expected += code;
        }
    }
    Demand(expected == url.Text());
    ZmUnEscapeUrl(plain);
    expected.clear();
    for (size_t i = 0; i < text.size(); ++i) {
        const bool isCode = text[i] == '%' && i + 2 < text.size();
        expected += isCode ? std::to_string((text[i + 1] - '0') * 10 + text[i + 2] - '0') : std::string(1, text[i]);
        i += isCode ? 2 : 0;
    }
    Demand(expected == plain.Text());
}

bool Matches(const char* name, const char* pattern)
{
    if (*pattern == '*') {
        return Matches(name, pattern + 1) || (*name != 0 && Matches(name + 1, pattern));
    }
    if (*name == 0) {
        return *pattern == 0 || (pattern[0] == '.' && pattern[1] == '*' && pattern[2] == 0);
    }
    return (*pattern == '?' || *pattern == *name) && Matches(name + 1, pattern + 1);
}

/// A folder with some files, of which a walk with a pattern must find the right ones.
class Tree {
public:
    Tree()
    {
        for (const char* folder : {"sub", "sub/deep", "other.d"}) {
            std::filesystem::create_directory(m_Scratch / folder);
        }
        for (const char* name : kFiles) {
            MakeFile(m_Scratch / name, "");
        }
    }

    void TestWalk(const std::string& pattern, bool recursive) const
    {
        const std::string root = m_Scratch / "";
        std::set<std::string> found, expected;
        RKDirectoryParser walk(root.substr(0, root.size() - 1).c_str(), pattern.c_str(), recursive, 0);
        while (const char* path = walk.GetNextFile()) {
            Demand(found.insert(path).second);
        }
        for (std::string path : kFiles) {
            const size_t name = path.rfind('/') + 1;
            if ((recursive || name == 0) && zm::MatchesPattern(path.c_str() + name, pattern.c_str())) {
                std::replace(path.begin(), path.end(), '/', '\\');
                expected.insert(root.substr(0, root.size() - 1) + '\\' + path);
            }
        }
        Demand(found == expected);
    }

private:
    static constexpr const char* kFiles[] = {"a", "b.txt", ".hidden", "ab.c.d", "sub/a.txt", "sub/deep/x", "other.d/b"};

    ScratchFolder m_Scratch;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    constexpr size_t kLongestPattern = 8, kLongestName = 12;  // the model takes exponential time
    static const Tree tree;
    Input input(data, size);
    const int choice = input.UpTo(255), repeat = choice % 16 == 15 ? 20 : 1;
    const std::string first = input.Text(input.UpTo(30)).c_str(), second = input.Rest().c_str();
    std::string path = first;
    for (int i = 0; i < repeat; ++i) {
        path += second;
    }
    TestSplitting(path);
    TestJoining(path, first);
    TestConversion(path);
    TestUrls(path);
    const std::string pattern = first.substr(0, kLongestPattern), name = second.substr(0, kLongestName);
    Demand(zm::MatchesPattern(name.c_str(), pattern.c_str(), false) == Matches(name.c_str(), pattern.c_str()));
    if (choice % 32 == 0) {
        tree.TestWalk(pattern, choice / 32 % 2 != 0);
    }
    return 0;
}
