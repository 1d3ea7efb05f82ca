#pragma once

#include <string>
#include <vector>

/// The bytes of a file, or of the standard input for "-". Throws Failure if it cannot be read.
std::string ReadFile(const std::string& path);

/// Replaces a file in one step, or writes to the standard output for "-". Throws Failure.
void WriteFile(const std::string& path, const std::string& bytes);

/// The lines of a text without their ends, LF or CR LF.
std::vector<std::string> LinesOf(const std::string& text);

/// The lines as a text of which ZmConfiguration::BuildFromMemory() reads all: it leaves out the last line.
std::string TextToRead(const std::vector<std::string>& lines);

/// The text without the blanks and tabs at both ends.
std::string Trimmed(const std::string& text);
