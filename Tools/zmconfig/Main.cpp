// zmconfig: checks, reads and changes configuration files.

#include "Commands.h"
#include "Tool.h"
#include "Warnings.h"
#include "ZmVersion.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace {

const struct {
    const char* command;
    int (*run)(const Arguments&);
    int least, most;  ///< arguments after the file; -1 for any number
} kCommands[] = {
    {"check", Check, 0, -1},   {"get", Get, 1, 2},       {"list", List, 0, 0},     {"set", Set, 2, 2},
    {"remove", Remove, 1, -1}, {"format", Format, 0, 0}, {"import", Import, 1, 1},
};

const char kUsage[] =
    "Usage: zmconfig command [options] file [arguments]\n"
    "\n"
    "  check file...              names every mistake and its line\n"
    "  get file path [otherwise]  prints a value, or the text that stands for a missing one\n"
    "  list file                  prints all entries as lines 'path = value'\n"
    "  set file path value        changes or adds an entry; makes a missing file\n"
    "  remove file path...        removes entries\n"
    "  format file                indents by sections and puts blanks around '='\n"
    "  import ini file            makes a configuration of an INI file; a section [a.b] becomes <b> in <a>\n"
    "\n"
    "  --indent N   blanks for each level of sections (default: 2)\n"
    "  --           end of the options\n"
    "  --version, --help\n"
    "\n"
    "A path names the sections and the entry: Video.Shadows.Size. Changes keep comments, order and blank lines, and "
    "are\n"
    "made in one step. A '-' stands for the standard input as the file to check, get, list, format or import, and for\n"
    "the standard output as the file that format and import make.\n"
    "Exit codes: 0 success, 1 failure, mistake or missing entry, 2 invalid command line.\n";

int IndentOf(const char* text)
{
    const std::string digits = text != nullptr ? text : "";
    if (digits.empty() || digits.size() > 2 || digits.find_first_not_of("0123456789") != std::string::npos) {
        throw UsageError("--indent needs a number below 100");
    }
    return std::stoi(digits);
}

/// Stores the options and returns all other words.
std::vector<std::string> WordsOf(int argc, char** argv, Arguments& res)
{
    std::vector<std::string> words;
    bool options = true;
    for (int i = 1; i < argc; ++i) {
        const std::string word = argv[i];
        if (!options || word.size() < 2 || word[0] != '-') {
            words.push_back(word);
        } else if (word == "--") {
            options = false;
        } else if (word == "--indent") {
            res.indent = IndentOf(argv[++i]);
        } else {
            throw UsageError("unknown option '" + word + "'");
        }
    }
    return words;
}

int Run(int argc, char** argv)
{
    const std::string only = argc > 1 ? argv[1] : "";
    if (only == "--help" || only == "-h") {
        std::fputs(kUsage, stdout);
        return 0;
    }
    if (only == "--version") {
        std::puts("zmconfig " ZMMATH_VERSION_STRING);
        return 0;
    }
    Arguments arguments;
    const std::vector<std::string> words = WordsOf(argc, argv, arguments);
    if (words.size() < 2) {
        throw UsageError(words.empty() ? "no command given" : words[0] + " needs a file");
    }
    const auto* const command = std::find_if(std::begin(kCommands), std::end(kCommands),
                                             [&](const auto& known) { return words[0] == known.command; });
    if (command == std::end(kCommands)) {
        throw UsageError("unknown command '" + words[0] + "'");
    }
    const int count = int(words.size()) - 2;
    if (count < command->least || (command->most >= 0 && count > command->most)) {
        throw UsageError(words[0] + (count < command->least ? " needs more" : " takes fewer") + " arguments");
    }
    arguments.command = words[0];
    arguments.file = words[1];
    arguments.rest.assign(words.begin() + 2, words.end());
    HearWarnings("zmconfig");
    return command->run(arguments);
}

}  // namespace

int main(int argc, char** argv)
{
    return RunTool("zmconfig", Run, argc, argv);
}
