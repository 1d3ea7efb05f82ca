#pragma once

#include "ZmConfigurationSection.h"
#include "ZmStream.h"

namespace zm {

/// Writes the contents of a section in the text format, indenting each level by `indent` more blanks. Returns false if
/// the stream refused some of it or memory ran out.
bool WriteConfiguration(ZmStream& res, const ZmConfigurationSection& root, unsigned indent);

}  // namespace zm
