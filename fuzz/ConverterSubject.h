#pragma once

#include "fuzz/Input.h"
#include "tests/support/Reference.h"

#include <memory>

/// A set with what tests its converter.
struct ConverterSubject {
    explicit ConverterSubject(ReferenceSet const& chosen) : set(chosen) {}

    /// All of `text` that makes elements of the set.
    Bytes bytes(std::string const& text) const {
        std::size_t const unitSize = converter.getMinUnitSize();
        return Bytes(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(text.size() / unitSize * unitSize));
    }

    ReferenceSet set;
    VynCharSetConverter& converter = *VynCharSetConverter::getConverter(set.cs);
    ConvertKit kit{converter};
    Reference reference{set};
};

/// The one that the input chooses. Each is made when it is first chosen.
inline ConverterSubject& subjectOf(Input& input) {
    static std::vector<ReferenceSet> const sets = allSets();
    static std::vector<std::unique_ptr<ConverterSubject>> subjects(sets.size());
    std::size_t const index = input.upTo(sets.size() - 1);
    if (!subjects[index])
        subjects[index] = std::make_unique<ConverterSubject>(sets[index]);
    return *subjects[index];
}

/// Room for whatever a text becomes: an escape in UTF-32 takes 24 bytes.
template <class Element>
unsigned long ampleFor(std::vector<Element> const& text) {
    return 24 * text.size() + 24;
}

/// Makes a failure in a `ConvertKit` end the process, so that the fuzzer keeps its input.
inline void endProcessAtFailures(int* argc, char** argv) {
    testing::InitGoogleTest(argc, argv);
    testing::FLAGS_gtest_throw_on_failure = true;
}
