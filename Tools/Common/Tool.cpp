#include "Tool.h"

#include "Text.h"

#include <cstdio>
#include <filesystem>

int RunTool(const char* name, int (*run)(int argc, char** argv), int argc, char** argv)
{
    try {
        const int code = run(argc, argv);
        if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) {
            return code;
        }
        std::fprintf(stderr, "%s: the output cannot be written\n", name);
    } catch (const UsageError& error) {
        std::fprintf(stderr, "%s: %s\nFor help, run %s --help\n", name, Printable(error.what()).c_str(), name);
        return 2;
    } catch (const std::filesystem::filesystem_error& error) {
        std::fprintf(stderr, "%s: %s: %s\n", name, Printable(error.path1().string()).c_str(),
                     error.code().message().c_str());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", name, Printable(error.what()).c_str());
    }
    return 1;
}
