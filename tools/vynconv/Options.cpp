#include "tools/vynconv/Options.h"

#include "tools/vynconv/Failure.h"
#include "tools/vynconv/Messages.h"

#include <getopt.h>

#include <algorithm>
#include <string_view>

namespace vynconv {

using vynulib::OnError;

char const helpText[] = R"(Usage: vynconv [-f FROM] [-t TO] [OPTION...] [FILE...]
       vynconv [-f FROM] [-t TO] [OPTION...] -i FILE...
       vynconv --list | --detect | --help | --version

Converts text files from one character set to another. Without FILE, or where FILE
is "-", standard input is read; without -o, standard output is written.

  -f, --from-code=FROM  character set of the input; left out, the default set
  -t, --to-code=TO      character set of the output; left out, the default set
  -o, --output=OUT      write to OUT
  -i, --in-place        convert each FILE by itself and write it in its place
  --on-error=ACTION     what to do with a character that can't be converted:
                          replace  write U+FFFD in Unicode sets, "?" in others
                                   (the default)
                          escape   write "U+XXXX" for what TO does not have, and
                                   replace what is malformed in FROM
                          drop     write nothing
                          stop     end before it; OUT is then not written
  -c                    the same as --on-error=drop
  --bom                 begin the output with a byte-order mark
  --overwrite           write into an existing OUT itself
  --verbose             tell every loss, not only the first of each file
  -l, --list            print the character sets that can be converted
  --detect              print the default set and the locale it comes from
  --help                print this text
  --version             print the version

A character set is given by its number, its name, or another usual name of it, in any
case and without regard to "-", "_" and blanks: 20866, VYNCS_KOI8R, KOI8-R, koi8r,
csKOI8R. OS_DEFAULT is the default set.

A byte-order mark at the beginning of a file in UTF-8, UTF-16 or UTF-32 is read and not
converted. The names UTF-16 and UTF-32 leave the byte order of an input to its mark;
without one, and in the output, it is the machine's. All other names fix it, UTF-16BE,
UTF-16LE and the numbers as well: then only a mark of that order is taken for one.

OUT appears whole or not at all: the text is written to a temporary file beside it,
which then takes its place. OUT may be one of the files. A link stays a link to the
file. The file keeps its permissions, its group if the user is in that, and its owner
if root converts; other (hard) links to it keep the old text, and access control lists
and extended attributes are lost. With --overwrite the file stays the same one, but may
be left incomplete, and must not be one of the files. Devices and pipes are written
directly in any case. What is said of OUT holds for each FILE with -i, where one that
can't be converted does not keep the others from it.

What is lost is told on standard error, for each file: how many characters or malformed
sequences, and the line, the bytes and the offset (from 0, in bytes) of the first. Where
that is a terminal, a conversion that takes long shows there how far it has come.

Exit status: 0 all was converted, 1 something could not be converted, 2 wrong usage, or
a file that can't be read or written.
)";

namespace {

enum LongOption : int {
    optionOnError = 256,
    optionBom,
    optionOverwrite,
    optionVerbose,
    optionList,
    optionDetect,
    optionHelp,
    optionVersion,
};

constexpr option longOptions[] = {
    {"from-code", required_argument, nullptr, 'f'},
    {"to-code", required_argument, nullptr, 't'},
    {"output", required_argument, nullptr, 'o'},
    {"in-place", no_argument, nullptr, 'i'},
    {"on-error", required_argument, nullptr, optionOnError},
    {"bom", no_argument, nullptr, optionBom},
    {"overwrite", no_argument, nullptr, optionOverwrite},
    {"verbose", no_argument, nullptr, optionVerbose},
    {"list", no_argument, nullptr, optionList},
    {"detect", no_argument, nullptr, optionDetect},
    {"help", no_argument, nullptr, optionHelp},
    {"version", no_argument, nullptr, optionVersion},
    {},
};

OnError parseOnError(std::string_view text) {
    constexpr std::pair<std::string_view, OnError> actions[] = {
        {"replace", OnError::replace}, {"escape", OnError::escape}, {"drop", OnError::drop}, {"stop", OnError::stop}};
    for (auto const& [name, action] : actions)
        if (text == name)
            return action;
    throw UsageFailure("--on-error is replace, escape, drop or stop, not '" + printable(text) + "'");
}

// The option that getopt could not take. A short one may stand in a cluster with others.
std::string wrongOption(char const* argument) {
    bool const isShort = optopt > 0 && optopt < optionOnError;
    return isShort ? "-" + printable(std::string(1, static_cast<char>(optopt))) : printable(argument);
}

struct SetNames {
    std::string from = "OS_DEFAULT";
    std::string to = from;
};

void take(int option, char const* value, Options& options, SetNames& names) {
    switch (option) {
    case 'f':
        names.from = value;
        break;
    case 't':
        names.to = value;
        break;
    case 'o':
        options.output = value;
        break;
    case 'i':
        options.inPlace = true;
        break;
    case 'c':
        options.onError = OnError::drop;
        break;
    case optionOnError:
        options.onError = parseOnError(value);
        break;
    case optionBom:
        options.mark = true;
        break;
    case optionOverwrite:
        options.overwrite = true;
        break;
    case optionVerbose:
        options.verbose = true;
        break;
    case 'l':
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
    default:
        break;
    }
}

// What is converted in place has no other.
void refuseOutput(Options const& options) {
    if (options.output != "-" || options.overwrite)
        throw UsageFailure(options.overwrite ? "--overwrite can't write a file in its place"
                                             : "-i writes each file in its place, not to an output");
    if (options.files.empty() || std::ranges::find(options.files, "-") != options.files.end())
        throw UsageFailure("-i needs the names of files");
}

} // namespace

Options parseOptions(int argc, char** argv) {
    Options options;
    SetNames names;
    opterr = 0;
    for (int found; (found = ::getopt_long(argc, argv, ":f:t:o:icl", longOptions, nullptr)) != -1;) {
        if (found == '?')
            throw UsageFailure("wrong option " + wrongOption(argv[optind - 1]));
        if (found == ':')
            throw UsageFailure(wrongOption(argv[optind - 1]) + " needs a value");
        take(found, optarg, options, names);
    }
    if (options.action != Action::convert)
        return options;
    options.from = findInputSet(names.from);
    options.to = findSet(names.to);
    if (options.mark && byteOrderMark(options.to).empty())
        throw UsageFailure("--bom needs an output in UTF-8, UTF-16 or UTF-32");
    options.files.assign(argv + optind, argv + argc);
    if (options.inPlace)
        refuseOutput(options);
    if (options.files.empty())
        options.files.emplace_back("-");
    return options;
}

} // namespace vynconv
