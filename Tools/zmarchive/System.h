#pragma once

#include <stdio.h>

#include <string>

// What the tool asks of the operating system.

/// Whether what is written there is seen at once by somebody.
bool IsTerminal(FILE* stream);

/// Whether the path names a link of any kind, which may lead elsewhere.
bool IsLink(const std::string& path);

/// Whether a file of that name, a single part of a path, would be something else than a file of that name.
bool IsSpecialName(const std::string& name);
