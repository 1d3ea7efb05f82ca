// zmarchive: creates, lists, extracts, changes and checks archives.

#include "Commands.h"
#include "Text.h"
#include "Warnings.h"
#include "ZmVersion.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iterator>

namespace {

typedef Arguments A;

const struct {
    Shape shape;
    int (*run)(const Arguments&);
} kCommands[] = {
    {{"create", A::FLAT | A::FORCE, 1, -1}, Create},
    {{"list", A::NAMES, 0, 0}, List},
    {{"extract", A::TO | A::FORCE, 0, -1}, Extract},
    {{"add", A::FLAT | A::REPLACE, 1, -1}, Add},
    {{"remove", 0, 1, -1}, Remove},
    {{"reorder", 0, 1, 1}, Reorder},
    {{"verify", 0, 0, 0}, Verify},
};

const char kUsage[] =
    "Usage: zmarchive command [options] archive [arguments]\n"
    "\n"
    "  create archive path...     packs files and folders; --force replaces an existing archive\n"
    "  list archive               lists names and sizes; --names prints names only, as input for reorder\n"
    "  extract archive [name...]  extracts all or the named entries to the folder of --to (default: here);\n"
    "                             --force replaces existing files\n"
    "  add archive path...        packs more files; --replace replaces entries of the same name\n"
    "  remove archive name...     removes entries\n"
    "  reorder archive list       moves the entries listed in a text file, one per line, to the front\n"
    "  verify archive             checks the structure; the format has no checksum\n"
    "\n"
    "  --flat     create, add: name entries without their folders\n"
    "  --quiet    show neither progress nor summary\n"
    "  --         end of the options\n"
    "  --version, --help\n"
    "\n"
    "Files in a folder are named by their path within it, with '/'. Names are stored in lower case.\n"
    "ZmBigFile::Find() ignores the folder of the name it looks for, so it does not find entries whose names\n"
    "include one: use --flat for programs that call it.\n"
    "\n"
    "Archives, and files that --force replaces, change in one step or not at all. Extraction writes only inside\n"
    "the target folder. If it is killed it may leave a file such as name.1234abcd.tmp, which you can delete.\n"
    "Exit codes: 0 success, 1 failure or damaged archive, 2 invalid command line.\n";

int Run(int argc, char** argv)
{
    std::vector<Shape> shapes;
    for (const auto& command : kCommands) {
        shapes.push_back(command.shape);
    }
    const Arguments arguments = ParseArguments(argc, argv, shapes);
    if (arguments.Has(A::HELP)) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    if (arguments.Has(A::VERSION)) {
        std::puts("zmarchive " ZMMATH_VERSION_STRING);
        return 0;
    }
    HearWarnings();
    const auto isMeant = [&](const auto& command) { return arguments.command == command.shape.command; };
    return std::find_if(std::begin(kCommands), std::end(kCommands), isMeant)->run(arguments);
}

}  // namespace

int main(int argc, char** argv)
{
    try {
        const int code = Run(argc, argv);
        if (std::fflush(stdout) == 0) {
            return code;
        }
        std::fputs("zmarchive: the output cannot be written\n", stderr);
        return 1;
    } catch (const UsageError& error) {
        std::fprintf(stderr, "zmarchive: %s\nFor help, run zmarchive --help\n", Printable(error.what()).c_str());
        return 2;
    } catch (const std::filesystem::filesystem_error& error) {
        std::fprintf(stderr, "zmarchive: %s: %s\n", Printable(error.path1().string()).c_str(),
                     error.code().message().c_str());
        return 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "zmarchive: %s\n", Printable(error.what()).c_str());
        return 1;
    }
}
