#include "../Harness.h"
#include "../TestFiles.h"

#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

namespace bench {
namespace {

template <class Sink>
spdlog::logger& Logger(const char* name)
{
    static const auto logger = [name] {
        auto res = std::make_shared<spdlog::logger>("bench", std::make_shared<Sink>(TestFolder() + name, true));
        res->set_pattern("[%n] [%l] [%d/%m/%Y %H:%M:%S] [%s:%#] : %v");
        res->flush_on(spdlog::level::trace);
        return res;
    }();
    return *logger;
}

template <class Sink>
void LogLines(const Work& w, const char* name)
{
    spdlog::logger& logger = Logger<Sink>(name);
    for (int i = 0; i < w.count; ++i) {
        logger.log(spdlog::source_loc{"bench", __LINE__, ""}, spdlog::level::info, "object {} has {} triangles", i,
                   2 * i);
    }
}

void LogOneThread(const Work& w)
{
    LogLines<spdlog::sinks::basic_file_sink_st>(w, "/spdlog1");
}

void LogThreads(const Work& w)
{
    LogLines<spdlog::sinks::basic_file_sink_mt>(w, "/spdlog2");
}

constexpr Entry kEntries[] = {
    {"Log/Line", LogOneThread},
    {"Log/LineOfThreads", LogThreads},
};

}  // namespace

extern const Contender kSpdlog;
constexpr Contender kSpdlog{"spdlog", Role::PEER, kEntries};

}  // namespace bench
