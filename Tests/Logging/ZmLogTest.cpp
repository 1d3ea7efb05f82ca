#include "ZmLog.h"

#include "Files/ArchiveBytes.h"
#include "Support/HeardMessages.h"
#include "Support/SilentLog.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Names = std::vector<std::string>;

Names ListenersOf(const std::vector<HeardMessage>& messages)
{
    Names names;
    for (const HeardMessage& message : messages) {
        names.push_back(message.listener);
    }
    return names;
}

class ZmLogTest : public testing::Test {
protected:
    void Print(int module, ZmLog::Level level, const char* text)
    {
        m_Log.SetInformation(module, level, 1, "file").Print("%s", text);
    }

    ZmLog& m_Log = ZmLog::GetLog();
    const int m_A = m_Log.RegisterModule("log test A"), m_B = m_Log.RegisterModule("log test B");
    HeardMessages m_Heard;
};

TEST_F(ZmLogTest, ModulesAreNumberedAndPositionsAreOneLess)
{
    EXPECT_GT(m_A, 1);
    EXPECT_EQ(m_B, m_A + 1);
    EXPECT_EQ(m_Log.RegisterModule("log test A"), m_A);
    EXPECT_EQ(m_Log.IsModule("log test B"), m_B - 1);
    EXPECT_STREQ(m_Log.GetModule(m_B), "log test B");
    for (const char* name : {"", "LOG TEST A", "log test"}) {
        EXPECT_EQ(m_Log.IsModule(name), -1) << name;
    }
    EXPECT_EQ(m_Log.IsModule(nullptr), -1);
    EXPECT_EQ(m_Log.RegisterModule(""), -1);
    EXPECT_EQ(m_Log.RegisterModule(nullptr), -1);
    for (const int id : {0, -1, INT32_MIN, 1000000, INT32_MAX}) {
        EXPECT_EQ(m_Log.GetModule(id), nullptr) << id;
    }
}

TEST_F(ZmLogTest, LevelsHaveNames)
{
    const struct {
        int level;
        const char* name;
    } kRows[] = {{1, "DEBUG"}, {2, "TRACE"}, {4, "ERROR"}, {8, "WARNING"}, {16, "INFO"},
                 {0, ""},      {3, ""},      {32, ""},     {-1, ""}};
    for (const auto& row : kRows) {
        EXPECT_STREQ(ZmLog::GetLevelDesc(ZmLog::Level(row.level)), row.name) << row.level;
    }
}

ZmLogListener* MakeNone(const char*)
{
    return nullptr;
}

TEST_F(ZmLogTest, TheFirstFactoryOfATypeStays)
{
    const XGUID none = {0x4E4F4E45, 1};
    m_Log.RegisterListenerFactory(none, MakeNone);
    EXPECT_EQ(m_Log.RegisterListenerFactory(none, ZmFileListener::ListenerFactory), 0);
    EXPECT_EQ(m_Log.RegisterListener(none, "none", m_A), nullptr);
    EXPECT_EQ(m_Log.GetListener("none"), nullptr);
    EXPECT_EQ(m_Log.RegisterListener({none.first, 2}, "none", m_A), nullptr) << "both words of a type count";
    m_Log.RegisterListenerFactory({none.first, 3}, nullptr);
    EXPECT_EQ(m_Log.RegisterListener({none.first, 3}, "none", m_A), nullptr);
    for (const XGUID& type : {ZmOutputDebugListener::m_Guid, ZmFileListener::m_Guid, ZmConsoleListener::m_Guid}) {
        EXPECT_EQ(m_Log.RegisterListenerFactory(type, MakeNone), 0) << "built in";
    }
}

TEST_F(ZmLogTest, AListenerIsKnownByItsNameAndType)
{
    ZmLogListener* listener = m_Heard.Listen("one", m_A);
    ASSERT_NE(listener, nullptr);
    EXPECT_STREQ(listener->GetName().Text(), "one");
    EXPECT_EQ(m_Log.GetListener("one"), listener);
    EXPECT_EQ(const_cast<const ZmLog&>(m_Log).GetListener("one"), listener);
    EXPECT_EQ(m_Log.GetListener("One"), nullptr);
    EXPECT_EQ(m_Log.RegisterListener(ZmFileListener::m_Guid, "one", m_B), nullptr);
    EXPECT_FALSE(listener->IsModule(m_B)) << "untouched";
    EXPECT_EQ(m_Log.RegisterListener(HeardMessages::kType, "one", m_B), listener);
    EXPECT_TRUE(listener->IsModule(m_A) && listener->IsModule(m_B));
    EXPECT_EQ(m_Log.UnregisterListener("two"), 0);
    EXPECT_EQ(m_Heard.m_Destroyed, 0);
    EXPECT_EQ(m_Log.UnregisterListener("one"), 1);
    EXPECT_EQ(m_Heard.m_Destroyed, 1);
    EXPECT_EQ(m_Log.UnregisterListener("one"), 0);
}

TEST_F(ZmLogTest, AListenerHearsItsModulesAtItsLevels)
{
    ZmLogListener* listener = m_Heard.Listen("one", m_A);
    listener->AddModule(m_A);  // adding it again has no effect
    for (const int mask : {31, 4, 1 | 16, 0}) {
        listener->SetLevel(mask);
        for (const int level : {1, 2, 4, 8, 16}) {
            SCOPED_TRACE(std::to_string(level) + " for " + std::to_string(mask));
            Print(m_A, ZmLog::Level(level), "text");
            EXPECT_EQ(m_Heard.Take().size(), (mask & level) != 0 ? 1u : 0u);
            Print(m_B, ZmLog::Level(level), "text");
            EXPECT_EQ(m_Heard.Take().size(), 0u);
        }
    }
}

TEST_F(ZmLogTest, TheInformationComesWithTheMessageAndStays)
{
    m_Heard.Listen("one", m_A);
    m_Log.SetInformation(m_A, ZmLog::LEVEL_ERROR, -7, "C:\\mesh").Print("%d%% of %s", 42, "it");
    m_Log.Print("again");
    m_Log.SetInformation(m_A, ZmLog::LEVEL_INFO, 0, nullptr).Print("%s", "");
    const std::vector<HeardMessage> heard = m_Heard.Take();
    ASSERT_EQ(heard.size(), 3u);
    EXPECT_EQ(heard[0].text, "42% of it");
    EXPECT_EQ(heard[1].text, "again");
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(heard[size_t(i)].module, m_A);
        EXPECT_EQ(heard[size_t(i)].level, 4);
        EXPECT_EQ(heard[size_t(i)].line, -7);
        EXPECT_EQ(heard[size_t(i)].file, "C:\\mesh");
    }
    EXPECT_EQ(heard[2].file, "");
    EXPECT_EQ(heard[2].text, "");
}

TEST_F(ZmLogTest, MessagesAreFormattedAsThoseOfTheCLibrary)
{
    m_Heard.Listen("one", m_A);
    const std::string longText(300, 'x');
    constexpr const char* kFormats[] = {"text",    "%%d",      "100%% of %d", "%i|%s|%u|%c", "%d%s%d%%", "%u %s",
                                        "%5d %s|", "%d %.2s|", "%+d %s",      "%x %s %o",    "%hhd %5s", "%c%s"};
    for (const char* format : kFormats) {
        for (const char* text : {"it", "", longText.c_str(), static_cast<const char*>(nullptr)}) {
            for (const int number : {42, -1, INT32_MIN}) {
                char expected[1024];
                snprintf(expected, sizeof(expected), format, number, text, 4000000000u, 'c');
                m_Log.SetInformation(m_A, ZmLog::LEVEL_INFO, 1, "").Print(format, number, text, 4000000000u, 'c');
                EXPECT_EQ(m_Heard.Take().at(0).text, expected) << format;
            }
        }
    }
}

TEST_F(ZmLogTest, FormatsThatPrintfRefusesAreTheMessage)
{
    m_Heard.Listen("one", m_A);
    const std::string longText(20000, 'x');
    const struct {
        std::string format, text;
    } kRows[] = {{"100%", "100%"},
                 {"%", "%"},
                 {"%d%%%", "%d%%%"},
                 {"5 % ", "5 % "},
                 {"%-08.3", "%-08.3"},
                 {"%d %ll", "%d %ll"},
                 {"%d%%", "7%"},
                 {"%5d%%|", "    7%|"},
                 {longText + "%", longText.substr(0, 16383)}};
    for (const auto& row : kRows) {
        m_Log.SetInformation(m_A, ZmLog::LEVEL_INFO, 1, "").Print(row.format.c_str(), 7);
        EXPECT_EQ(m_Heard.Take().at(0).text, row.text);
    }
    m_Log.Print(nullptr);
    EXPECT_EQ(m_Heard.Take().at(0).text, "");
    if (ZmGetPlatform() == ZM_PLATFORM_LINUX) {
        m_Log.Print("%lc", 0xD800);  // no character
        EXPECT_EQ(m_Heard.Take().at(0).text, "%lc");
    }
}

TEST_F(ZmLogTest, TheLibrarysWarningsKeepLongNames)
{
    const TemporaryFolder folder;
    m_Heard.Listen("one", m_Log.RegisterModule("ZmMath"));
    const std::string name(505, 'n'), archivePath = folder / "archive";
    MakeFile(folder / "list", name + "\n");
    ZmBigFile archive;
    ASSERT_EQ(archive.Open(archivePath.c_str(), 1) + archive.LoadIndex((folder / "list").c_str()), 2);
    EXPECT_EQ(m_Heard.Take().at(0).text, "Entry " + name + " not found in Big File " + archivePath);
}

TEST_F(ZmLogTest, NamesFromFilesForgeNoLinesInTheLibrarysWarnings)
{
    const TemporaryFolder folder;
    m_Heard.Listen("one", m_Log.RegisterModule("ZmMath"));
    MakeFile(folder / "list", "a\x1b[2J\r[ZmMath]\x0b\n");
    ZmBigFile archive;
    ASSERT_EQ(archive.LoadIndex((folder / "list").c_str()), 1);
    EXPECT_EQ(m_Heard.Take().at(0).text, "Entry a\\x1b[2j\\x0d[zmmath]\\x0b not found in Big File ");

    // Escapes take four times the room: a warning ends before the first that does not fit.
    const std::string path = folder / "archive", bytes = ArchiveBytes({{std::string(5000, '\r'), "x"}});
    MakeFile(path, bytes.substr(0, bytes.size() - 1));
    ASSERT_EQ(archive.Open(path.c_str(), 1), 1);
    EXPECT_EQ(archive.Save(nullptr, nullptr), 0);
    const std::string begin = "The bytes of entry ";
    std::string expected = begin;
    for (size_t i = 0; i < (16383 - begin.size()) / 4; ++i) {
        expected += "\\x0d";
    }
    EXPECT_EQ(m_Heard.Take().at(0).text, expected);
}

TEST_F(ZmLogTest, ListenersHearInTheOrderOfRegistrationAndTheLastFillsAGap)
{
    for (const char* name : {"1", "2", "3", "4", "5"}) {
        m_Heard.Listen(name, m_A);
    }
    Print(m_A, ZmLog::LEVEL_INFO, "");
    EXPECT_EQ(ListenersOf(m_Heard.Take()), (Names{"1", "2", "3", "4", "5"}));
    m_Log.UnregisterListener("2");
    Print(m_A, ZmLog::LEVEL_INFO, "");
    EXPECT_EQ(ListenersOf(m_Heard.Take()), (Names{"1", "5", "3", "4"}));
    m_Log.UnregisterListener("4");
    m_Heard.Listen("2", m_A);
    Print(m_A, ZmLog::LEVEL_INFO, "");
    EXPECT_EQ(ListenersOf(m_Heard.Take()), (Names{"1", "5", "3", "2"}));
}

TEST_F(ZmLogTest, TheBufferGrowsByDoublingAndLongMessagesAreCut)
{
    m_Heard.Listen("one", m_A);
    const struct {
        size_t length;
        int buffer;
    } kRows[] = {{255, 256},     {256, 512},     {300, 512},     {511, 512},       {3000, 4096},
                 {4096, 8192},   {8191, 8192},   {10, 8192},     {8192, 16384},    {9000, 16384},
                 {16383, 16384}, {16384, 16384}, {20000, 16384}, {1000000, 16384}, {10, 16384}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.length);
        std::string text(row.length, 0);
        for (size_t i = 0; i < text.size(); ++i) {
            text[i] = char('a' + i % 26);
        }
        const int before = m_Log.GetBufferSize();
        m_Log.SetInformation(m_A, ZmLog::LEVEL_INFO, 1, "file").Print("%s", text.c_str());
        EXPECT_EQ(m_Log.GetBufferSize(), std::max(before, row.buffer));
        const std::vector<HeardMessage> heard = m_Heard.Take();
        ASSERT_EQ(heard.size(), 1u);
        EXPECT_EQ(heard[0].text, text.substr(0, 16383));
    }
}

void PrintInTurn(const HeardMessage& message)
{
    if (message.listener == "1" && message.text.find("inner") == std::string::npos) {
        const std::string longText(2000, '!');
        ZmLog::GetLog()
            .SetInformationMT(message.module, ZmLog::LEVEL_DEBUG, 2, "inner")
            .PrintMT("inner%s", longText.c_str());
        // Nobody listens to this module.
        ZmLog::GetLog().SetInformationMT(message.module + 1, ZmLog::LEVEL_DEBUG, 3, "inner").PrintMT("inner, unheard");
    }
}

TEST_F(ZmLogTest, AListenerThatPrintsDoesNotChangeTheMessageForTheOthers)
{
    m_Heard.Listen("1", m_A);
    m_Heard.Listen("2", m_A);
    m_Heard.m_Answer = PrintInTurn;
    m_Log.SetInformationMT(m_A, ZmLog::LEVEL_ERROR, 1, "outer").PrintMT("outer %s", "text");
    m_Log.Print("next");
    const std::vector<HeardMessage> heard = m_Heard.Take();
    EXPECT_EQ(ListenersOf(heard), (Names{"1", "1", "2", "2", "1", "1", "2", "2"}));
    for (const HeardMessage& message : heard) {
        const bool inner = message.text.size() > 1000;
        EXPECT_EQ(message.text.substr(0, 5), inner ? "inner" : message.text == "next" ? "next" : "outer");
        EXPECT_EQ(message.file, inner ? "inner" : "outer");
        EXPECT_EQ(message.level, inner ? 1 : 4);
        EXPECT_EQ(message.line, inner ? 2 : 1);
    }
}

/// Removes all listeners while it lives; afterwards the library's are created again.
class NoListeners {
public:
    NoListeners() { SilenceLog(); }
    ~NoListeners()
    {
        ZmLog& log = ZmLog::GetLog();
        log.RegisterListener(ZmFileListener::m_Guid, "ZmMath", 1)->SetTimeFormat(ZmLogListener::TIME_SHORT_MS);
        log.RegisterListener(ZmOutputDebugListener::m_Guid, "OUTPUTDEBUG LISTENER", 1);
    }
};

TEST_F(ZmLogTest, WithoutListenersNothingHappensAndTheLockIsLeft)
{
    {
        const NoListeners none;
        const int before = m_Log.GetBufferSize();
        const std::string text(size_t(before) * 2, 'x');
        Print(1, ZmLog::LEVEL_INFO, text.c_str());
        m_Log.SetInformationMT(1, ZmLog::LEVEL_INFO, 1, "file").PrintMT("%s", text.c_str());
        EXPECT_EQ(m_Log.GetBufferSize(), before) << "not even formatted";
    }
    m_Heard.Listen("one", m_A);
    Print(m_A, ZmLog::LEVEL_INFO, "text");
    EXPECT_EQ(m_Heard.Take().size(), 1u);
}

}  // namespace
