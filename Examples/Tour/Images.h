#pragma once

#include "Picture.h"

#include <string>
#include <vector>

/// Writes a finished picture through the library's images: tour.png in true colour, tour-256.png with a palette that
/// was learnt from it, tour-formats.png with a band for each of some pixel formats, tour-mipmaps.png with its levels.
/// `paths` gets what was written. False with a message in `error` when a file cannot be.
bool SaveImages(const Picture& picture, const std::string& folder, std::vector<std::string>& paths, std::string& error);
