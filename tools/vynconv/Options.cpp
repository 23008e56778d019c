#include "tools/vynconv/Options.h"

#include "tools/vynconv/CharacterSets.h"
#include "tools/vynconv/Failure.h"

#include <getopt.h>

#include <string_view>

namespace vynconv {

char const helpText[] = R"(Usage: vynconv -f FROM -t TO [--on-error=ACTION] [-o OUT] [FILE...]
       vynconv --list | --detect | --help | --version

Converts text files from one character set to another. Without FILE, or where FILE
is "-", standard input is read; without -o, standard output is written.

  -f FROM            character set of the input
  -t TO              character set of the output
  -o OUT             write to OUT, which appears whole or not at all
  --on-error=ACTION  what to do with a character that can't be converted:
                       replace  write U+FFFD or "?" for it (the default)
                       escape   write "U+XXXX" for what TO can't hold
                       stop     end before it; OUT is then not written
  --list             print the character sets that can be converted
  --detect           print the default character set and the locale it comes from
  --help             print this text
  --version          print the version

A character set is given as its name (VYNCS_KOI8R), the same without VYNCS_ in any
case (koi8r), or its number (20866); OS_DEFAULT is the default set. UTF-16 and UTF-32
are read and written in the machine's byte order, without a byte-order mark.

Exit status: 0 all was converted, 1 something could not be converted, 2 wrong usage,
a file that can't be read or written.
)";

namespace {

enum LongOption : int { optionOnError = 256, optionList, optionDetect, optionHelp, optionVersion };

ILLCHAR_OPTYPE parseOnError(std::string_view text) {
    if (text == "replace")
        return ILLCHAR_REPLACE;
    if (text == "escape")
        return ILLCHAR_ESCAPE;
    if (text == "stop")
        return ILLCHAR_STOP;
    throw UsageFailure("--on-error is replace, escape or stop, not '" + std::string(text) + "'");
}

} // namespace

Options parseOptions(int argc, char** argv) {
    static option const longOptions[] = {
        {"on-error", required_argument, nullptr, optionOnError}, {"list", no_argument, nullptr, optionList},
        {"detect", no_argument, nullptr, optionDetect},          {"help", no_argument, nullptr, optionHelp},
        {"version", no_argument, nullptr, optionVersion},        {nullptr, 0, nullptr, 0}};
    Options options;
    std::string from;
    std::string to;
    opterr = 0;
    for (int found; (found = getopt_long(argc, argv, ":f:t:o:", longOptions, nullptr)) != -1;) {
        switch (found) {
        case 'f':
            from = optarg;
            break;
        case 't':
            to = optarg;
            break;
        case 'o':
            options.output = optarg;
            break;
        case optionOnError:
            options.onError = parseOnError(optarg);
            break;
        case optionList:
            options.action = Action::list;
            break;
        case optionDetect:
            options.action = Action::detect;
            break;
        case optionHelp:
            options.action = Action::help;
            break;
        case optionVersion:
            options.action = Action::version;
            break;
        case ':':
            throw UsageFailure(std::string(argv[optind - 1]) + " needs a value");
        default:
            throw UsageFailure("wrong option " + std::string(argv[optind - 1]));
        }
    }
    if (options.action != Action::convert)
        return options;
    if (from.empty() || to.empty())
        throw UsageFailure("-f FROM and -t TO are both needed");
    options.from = parseCharacterSet(from);
    options.to = parseCharacterSet(to);
    options.files.assign(argv + optind, argv + argc);
    if (options.files.empty())
        options.files.emplace_back("-");
    return options;
}

} // namespace vynconv
