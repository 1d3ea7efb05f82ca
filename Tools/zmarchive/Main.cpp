// zmarchive: makes, lists, extracts, changes and checks archives.

#include "Commands.h"
#include "Text.h"
#include "Warnings.h"
#include "ZmVersion.h"

#include <cstdio>
#include <exception>

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
    "  create archive path...     packs files and whole folders; --force replaces an archive that exists\n"
    "  list archive               names and sizes; --names gives the bare names, a list for reorder\n"
    "  extract archive [name...]  writes all entries or those named to the folder of --to (default: here);\n"
    "                             --force replaces files that exist\n"
    "  add archive path...        packs more files; --replace lets them take the place of entries\n"
    "  remove archive name...     takes entries out\n"
    "  reorder archive list       brings the entries that a text file lists, one a line, to the front\n"
    "  verify archive             checks the structure; the format has no checksum\n"
    "\n"
    "  --flat     create, add: names without the folders that the files lie in\n"
    "  --quiet    neither progress nor summary\n"
    "  --         what follows are no options\n"
    "  --version, --help\n"
    "\n"
    "Entries of a folder are named by their path in it, with '/'. Names are stored in lower case.\n"
    "ZmBigFile::Find(), by which programs look entries up, drops the folder of the name that it is\n"
    "asked for: it finds no entry whose own name has one. For such programs pack with --flat.\n"
    "\n"
    "Extracting writes nothing outside its folder. Changes replace an archive in one step, or not at all.\n"
    "Exit codes: 0 done, 1 not done or not sound, 2 a command line that makes no sense.\n";

int Run(int argc, char** argv)
{
    std::vector<Shape> shapes;
    for (const auto& command : kCommands)
        shapes.push_back(command.shape);
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
    for (const auto& command : kCommands) {
        if (arguments.Command == command.shape.Command)
            return command.run(arguments);
    }
    return 2;
}

}  // namespace

int main(int argc, char** argv)
{
    try {
        const int code = Run(argc, argv);
        if (std::fflush(stdout) == 0)
            return code;
        std::fputs("zmarchive: the output cannot be written\n", stderr);
        return 1;
    } catch (const UsageError& error) {
        std::fprintf(stderr, "zmarchive: %s\nzmarchive --help tells more\n", Printable(error.what()).c_str());
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "zmarchive: %s\n", Printable(error.what()).c_str());
        return 1;
    }
}
