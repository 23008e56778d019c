#include "tools/vynconv/CharacterSets.h"
#include "tools/vynconv/Failure.h"
#include "tools/vynconv/Input.h"
#include "tools/vynconv/Options.h"
#include "tools/vynconv/Output.h"
#include "tools/vynconv/Progress.h"
#include "tools/vynconv/StandardDescriptors.h"
#include "tools/vynconv/Transcoder.h"

#include <csignal>
#include <cstdio>

namespace {

using namespace vynconv;

enum ExitCode : int { allConverted = 0, somethingLost = 1, failed = 2 };

void print(Input const& input, Report const& report) {
    bool const one = report.lostCharacters == 1;
    std::fprintf(stderr, "vynconv: %s: %zu %s could not be converted, %s line %zu%s\n", input.name().c_str(),
                 report.lostCharacters, one ? "character" : "characters", one ? "in" : "the first in", report.firstLine,
                 report.stopped ? "; stopped there" : "");
}

ExitCode convert(Options const& options) {
    Transcoder transcoder(options.from, options.to, options.onError);
    Output output(options.output);
    Progress progress;
    ExitCode code = allConverted;
    for (std::string const& file : options.files) {
        Input input(file);
        Report const report = transcoder.convert(input, output, progress);
        if (report.lostCharacters == 0)
            continue;
        progress.clear();
        print(input, report);
        code = somethingLost;
        if (report.stopped)
            return code;
    }
    output.commit();
    return code;
}

ExitCode printText(std::string const& text) {
    Output output("-");
    output.write(reinterpret_cast<unsigned char const*>(text.data()), text.size());
    output.commit();
    return allConverted;
}

ExitCode run(Options const& options) {
    switch (options.action) {
    case Action::list:
        return printText(listCharacterSets());
    case Action::detect:
        return printText(describeDefaultSet());
    case Action::help:
        return printText(helpText);
    case Action::version:
        return printText("vynconv " VYNCONV_VERSION "\n");
    case Action::convert:
        break;
    }
    return convert(options);
}

} // namespace

int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN); // a closed pipe is a write error like others
    try {
        fillClosedStandardDescriptors();
        return run(parseOptions(argc, argv));
    } catch (UsageFailure const& failure) {
        std::fprintf(stderr, "vynconv: %s\nvynconv --help tells how it is used.\n", failure.what());
    } catch (Failure const& failure) {
        std::fprintf(stderr, "vynconv: %s\n", failure.what());
    } catch (std::exception const& error) {
        std::fprintf(stderr, "vynconv: internal failure: %s\n", error.what());
    }
    return failed;
}
