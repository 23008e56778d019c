#pragma once

#include "tools/vynconv/CharacterSets.h"
#include "tools/vynconv/Losses.h"

#include <vynulib/Transcoding.h>

#include <cstddef>
#include <functional>
#include <string_view>
#include <vector>

namespace vynconv {

class Input;
class Output;
class Progress;

/// Is told of a loss, and may be empty.
using TellLoss = std::function<void(Loss const&)>;

/// Converts files of any size, a piece at a time.
class Transcoder {
public:
    Transcoder(InputSet from, VynCharSet to, vynulib::OnError onError, Output& output);

    /// Converts all of `input` and writes it. A character does not go on from one input to the next. `tell` hears
    /// of each loss.
    Losses convert(Input& input, Progress& progress, TellLoss const& tell);

private:
    bool readMore(Input& input);
    void skipMark(Input& input);
    bool convertPiece(TellLoss const& tell);
    void findLosses(vynulib::Report const& report, std::size_t read, TellLoss const& tell);
    void pass(std::size_t bytes);
    Loss lossAt(std::size_t position);
    std::size_t nextLoss(std::size_t position);

    InputSet m_fromNamed;
    VynCharSet m_to;
    vynulib::OnError m_onError;
    Output& m_output;
    std::vector<char> m_source;
    std::vector<char> m_bytes;

    // Of the input:
    VynCharSet m_from;
    std::string_view m_rest;  // what is read of it and not yet converted
    bool m_ended = false;     // whether nothing follows m_rest
    std::size_t m_offset = 0; // where m_rest begins
    std::size_t m_line = 1;   // the same, as long as losses are looked for
    Losses m_losses;
};

} // namespace vynconv
