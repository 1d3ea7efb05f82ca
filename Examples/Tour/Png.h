#pragma once

#include <string>
#include <vector>

/// Writes rows of 8-bit red, green and blue, top row first. Returns false if the file cannot be written.
bool WritePng(const char* path, int width, int height, const unsigned char* rgb);

/// Decodes a PNG file in memory to rows of 8-bit red, green and blue. Returns false if it is not a PNG file or has more
/// than 4096 pixels on a side.
bool ReadPng(const std::string& file, int& width, int& height, std::vector<unsigned char>& rgb);
