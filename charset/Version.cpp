#include <vynulib/Version.h>

#include "converters/kernels/Kernels.h"

std::string_view vynulib::version() noexcept {
    return VYNULIB_VERSION;
}

std::string_view vynulib::instructionSet() noexcept {
    return vyn::kernels.level;
}
