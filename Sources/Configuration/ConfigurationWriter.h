#pragma once

#include "ZmConfigurationSection.h"
#include "ZmStream.h"

namespace zm {

/// Writes the contents of a section in the text format, indenting each level by `indent` more blanks, or less where the
/// line would become too long to be read. Returns false if the stream refused some of it or memory ran out.
bool WriteConfiguration(ZmStream& res, const ZmConfigurationSection& root, unsigned indent);

/// Whether the text format holds all names and values; if not, `why` receives the reason and the first place.
bool FormatHolds(const ZmConfigurationSection& root, XString& why);

}  // namespace zm
