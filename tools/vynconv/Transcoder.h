#pragma once

#include "tools/vynconv/Decoder.h"
#include "tools/vynconv/Encoder.h"

namespace vynconv {

class Input;
class Output;
class Progress;

/// What became of one file.
struct Report {
    std::size_t lostCharacters = 0;
    std::size_t firstLine = 0; ///< Where the first of them stood, from 1.
    bool stopped = false;      ///< The output ends before it.
};

/// Converts files of any size, a chunk at a time.
class Transcoder {
public:
    Transcoder(VynCharSet from, VynCharSet to, ILLCHAR_OPTYPE onError);

    /// Converts all of `input` and writes it to `output`. A character does not go on from one file to the next.
    Report convert(Input& input, Output& output, Progress& progress);

private:
    void convertChunk(std::size_t size, bool last, Output& output);
    std::size_t countLosses(std::size_t length);

    Decoder m_decoder;
    Encoder m_encoder;
    bool m_stopAtLoss;
    std::vector<unsigned char> m_source;
    Text m_text;            // between two chunks: a high surrogate whose low one may be in the next, or nothing
    std::size_t m_line = 1; // where the chunk begins, as long as nothing is lost
    Report m_report;
};

} // namespace vynconv
