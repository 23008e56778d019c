#pragma once

#include <vynulib/VynCharSetConverter.h>

#include <functional>
#include <optional>
#include <set>
#include <string>

using Text = std::optional<std::u16string>;
using Code = std::optional<std::string>;

/// Converts one character at a time, strictly: what is no whole, valid, mapped character has no result.
struct Codec {
    std::function<Text(std::string const& code)> decode;
    std::function<Code(std::u16string const& text)> encode;
};

Codec libraryCodec(VynCharSet set);

/// Nothing where ICU has no converter of that name.
std::optional<Codec> icuCodec(char const* name);

/// The converter that ICU opens for a name; empty where it has none.
std::string icuConverterName(char const* name);

/// Every name of every converter of ICU.
std::set<std::string> icuAliases();
