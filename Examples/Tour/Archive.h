#pragma once

#include <string>
#include <vector>

/// Packs files into an archive, each under its name without the folder. What is there is replaced.
bool PackFiles(const std::string& archive, const std::vector<std::string>& paths, std::string& error);

/// The bytes of a packed file, found by its path or name.
bool ReadPacked(const std::string& archive, const std::string& path, std::string& bytes, std::string& error);
