#pragma once

#include "Picture.h"

#include <string>
#include <vector>

/// Writes a finished picture with the imaging functions of the library: tour.png in true colour, tour-256.png with a
/// palette learnt from it, tour-formats.png with a band for each of some pixel formats, and tour-mipmaps.png with its
/// mipmap levels. `paths` receives the files written. Returns false, with a message in `error`, if a file cannot be
/// written.
bool SaveImages(const Picture& picture, const std::string& folder, std::vector<std::string>& paths, std::string& error);

/// Writes pictures of one size, in rows of `columns`, to tour-crowd.png; otherwise like SaveImages().
bool SaveSheet(const std::vector<Picture>& pictures, int columns, const std::string& folder,
               std::vector<std::string>& paths, std::string& error);
