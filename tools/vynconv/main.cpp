#include "tools/vynconv/CharacterSets.h"
#include "tools/vynconv/Failure.h"
#include "tools/vynconv/Input.h"
#include "tools/vynconv/Messages.h"
#include "tools/vynconv/Options.h"
#include "tools/vynconv/Output.h"
#include "tools/vynconv/Progress.h"
#include "tools/vynconv/StandardDescriptors.h"
#include "tools/vynconv/Transcoder.h"

#include <vynulib/Version.h>

#include <csignal>
#include <string>

namespace {

using namespace vynconv;

enum ExitCode : int { allConverted = 0, somethingLost = 1, failed = 2 };

ExitCode convert(Options const& options) {
    Output output(options.output, options.overwrite, options.files);
    if (options.mark)
        output.write(byteOrderMark(options.to));
    Transcoder transcoder(options.from, options.to, options.onError, output);
    Progress progress;
    ExitCode code = allConverted;
    for (std::string const& file : options.files) {
        Input input(file);
        Losses const losses = transcoder.convert(input, progress);
        if (losses.count == 0)
            continue;
        progress.clear();
        printMessage(input.name() + ": " + describe(losses));
        code = somethingLost;
        if (losses.stopped)
            return code;
    }
    output.commit();
    return code;
}

ExitCode printText(std::string const& text) {
    Output output("-", false, {});
    output.write(text);
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
        return printText("vynconv " VYNCONV_VERSION "\nvynulib64 " + std::string(vynulib::version()) + " (" +
                         std::string(vynulib::instructionSet()) + ")\n");
    case Action::convert:
        break;
    }
    return convert(options);
}

} // namespace

int main(int argc, char** argv) {
    std::signal(SIGXFSZ, SIG_IGN); // a file that grows too large is a write error like others
    try {
        fillClosedStandardDescriptors();
        return run(parseOptions(argc, argv));
    } catch (UsageFailure const& failure) {
        printMessage(std::string(failure.what()) + "\nvynconv --help tells how it is used.");
    } catch (Failure const& failure) {
        printMessage(failure.what());
    } catch (std::exception const& error) {
        printMessage(std::string("internal failure: ") + error.what());
    }
    return failed;
}
