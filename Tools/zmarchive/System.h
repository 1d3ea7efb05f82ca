#pragma once

#include <stdio.h>

#include <string>

// What the tool needs from the operating system.

/// Whether the stream is an interactive terminal.
bool IsTerminal(FILE* stream);

/// Whether the path is a link of any kind, which may lead elsewhere.
bool IsLink(const std::string& path);

/// Whether the system would not create a regular file of exactly this name. `name` is a single part of a path.
bool IsSpecialName(const std::string& name);
