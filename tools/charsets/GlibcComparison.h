#pragma once

#include <vynulib/VynCharSet.h>

#include <vector>

/// How the codes of one and two bytes of a set differ from those of glibc's nearest converter.
struct GlibcComparison {
    VynCharSet cs;
    char const* name; ///< As glibc's iconv has it.
    std::vector<unsigned> onlyHere = {}, onlyThere = {}, otherCharacter = {};
};

/// The version of glibc that the process runs with.
char const* glibcVersion();

/// All table sets for which glibc has a converter.
std::vector<GlibcComparison> compareWithGlibc();
