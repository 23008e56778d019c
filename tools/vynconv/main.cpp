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

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

namespace {

using namespace vynconv;

enum ExitCode : int { allConverted = 0, somethingLost = 1, failed = 2 };

// The files become one output.
ExitCode convertTo(std::string const& outputPath, std::vector<std::string> const& files, Options const& options) {
    Output output(outputPath, options.overwrite, files);
    if (options.mark)
        output.write(byteOrderMark(options.to));
    Transcoder transcoder(options.from, options.to, options.onError, output);
    ExitCode code = allConverted;
    for (std::string const& file : files) {
        Input input(file);
        Progress progress(input);
        auto const tell = [&](auto const& loss) {
            progress.clear();
            printMessage(input.name() + ": " + describe(loss));
        };
        Losses const losses = transcoder.convert(input, progress, options.verbose ? TellLoss(tell) : TellLoss());
        if (losses.count == 0)
            continue;
        tell(losses);
        code = somethingLost;
        if (losses.stopped)
            return code;
    }
    output.commit();
    return code;
}

// Each file by itself: what happens to one does not keep the others from being converted.
ExitCode convertInPlace(Options const& options) {
    ExitCode code = allConverted;
    for (std::string const& file : options.files) {
        try {
            std::error_code error;
            if (std::filesystem::exists(file, error) && !std::filesystem::is_regular_file(file, error))
                throw Failure(printable(file) + " is no regular file, it has no place for its text");
            code = std::max(code, convertTo(file, {file}, options));
        } catch (Failure const& failure) {
            printMessage(failure.what());
            code = failed;
        }
    }
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
    return options.inPlace ? convertInPlace(options) : convertTo(options.output, options.files, options);
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
