// zmarchive: creates, lists, extracts, changes and checks archives.

#include "Commands.h"
#include "Spool.h"
#include "Tool.h"
#include "Warnings.h"
#include "ZmVersion.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace {

typedef Arguments A;

struct Command {
    Shape shape;
    int (*run)(const Arguments&);
    enum {
        FILES_ONLY,
        READS,
        WRITES
    } stream;  ///< what '-' as the archive means
};

const Command kCommands[] = {
    {{"create", A::FLAT | A::FORCE | A::FROM | A::CLASH, 1, -1}, Create, Command::WRITES},
    {{"list", A::NAMES | A::JSON | A::SHA256, 0, 0}, List, Command::READS},
    {{"extract", A::TO | A::FORCE, 0, -1}, Extract, Command::READS},
    {{"add", A::FLAT | A::REPLACE | A::FROM | A::CLASH, 1, -1}, Add, Command::FILES_ONLY},
    {{"remove", 0, 1, -1}, Remove, Command::FILES_ONLY},
    {{"reorder", 0, 1, 1}, Reorder, Command::FILES_ONLY},
    {{"verify", A::AGAINST, 0, 0}, Verify, Command::READS},
};

const char kUsage[] =
    "Usage: zmarchive command [options] archive [arguments]\n"
    "\n"
    "  create archive path...     packs files and folders; --force replaces an existing archive\n"
    "  list archive               lists names and sizes\n"
    "  extract archive [name...]  extracts all or the named entries to the folder of --to (default: here);\n"
    "                             --force replaces existing files\n"
    "  add archive path...        packs more files; --replace replaces entries of the same name\n"
    "  remove archive name...     removes entries\n"
    "  reorder archive list       moves the entries listed in a text file, one per line, to the front\n"
    "  verify archive             checks the structure, and with --against the bytes\n"
    "\n"
    "  --from LIST     create, add: pack the paths listed in a text file too, one per line, in its order;\n"
    "                  these entries are named by the whole path\n"
    "  --flat          create, add: name entries without their folders\n"
    "  --clash HOW     create, add: what becomes of files whose names contain a backslash or differ from\n"
    "                  another one in case only: fail (default), skip or rename\n"
    "  --names         list: names only, as input for reorder\n"
    "  --json          list: an array of objects with name, size and whole\n"
    "  --sha256        list: the hash and the name of each entry, as input for sha256sum -c and --against\n"
    "  --against LIST  verify: compare the entries with such a list\n"
    "  --quiet         show neither progress nor summary\n"
    "  --              end of the options\n"
    "  --version, --help\n"
    "\n"
    "A '-' stands for the standard output as the archive to create and as the target of --to, and for the standard\n"
    "input as the archive to list, extract or verify and as a list.\n"
    "\n"
    "Files in a folder are named by their path within it, with '/'. Names are stored in lower case.\n"
    "ZmBigFile::Find() ignores the folder of the name it looks for, so it does not find entries whose names\n"
    "include one: use --flat for programs that call it.\n"
    "\n"
    "Archives, and files that --force replaces, change in one step or not at all. Extraction writes only inside\n"
    "the target folder. If it is killed it may leave a file such as name.1234abcd.tmp, which you can delete.\n"
    "Exit codes: 0 success, 1 failure or damaged archive, 2 invalid command line.\n";

/// Runs a command whose archive is the standard input or output.
int RunOnStream(const Command& command, Arguments arguments)
{
    const Spool spool;
    arguments.archive = spool.Path();
    if (command.stream == Command::READS) {
        spool.CopyFrom(stdin);
        return command.run(arguments);
    }
    arguments.options |= A::QUIET;
    const int code = command.run(arguments);
    spool.CopyTo(stdout);
    return code;
}

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
    HearWarnings("zmarchive");
    const Command& command = *std::find_if(std::begin(kCommands), std::end(kCommands), [&](const Command& meant) {
        return arguments.command == meant.shape.command;
    });
    if (IsStream(arguments.archive) && command.stream != Command::FILES_ONLY) {
        return RunOnStream(command, arguments);
    }
    return command.run(arguments);
}

}  // namespace

int main(int argc, char** argv)
{
    return RunTool("zmarchive", Run, argc, argv);
}
