#pragma once

#include <string>
#include <vector>

/// Packs files into an archive, each under its name without the folder. Replaces an existing archive.
bool PackFiles(const std::string& archive, const std::vector<std::string>& paths, std::string& error);

/// Reads a packed file, which is found by its path or name.
bool ReadPacked(const std::string& archive, const std::string& path, std::string& bytes, std::string& error);
