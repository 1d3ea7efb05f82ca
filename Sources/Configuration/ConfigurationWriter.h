#pragma once

#include "ZmConfigurationSection.h"
#include "ZmStream.h"

namespace zm {

/// Writes what is in a section in the text format, each level behind `indent` more blanks. False if the stream did not
/// take all of it, or without memory.
bool WriteConfiguration(ZmStream& res, const ZmConfigurationSection& root, unsigned indent);

}  // namespace zm
