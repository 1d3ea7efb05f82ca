#pragma once

#include <string>
#include <vector>

/// Writes rows of 8-bit red, green and blue, top row first. False when the file
/// cannot be written.
bool WritePng(const char* path, int width, int height, const unsigned char* rgb);

/// The pixels of a PNG file that is in memory, rows of 8-bit red, green and blue. False when it is none, or has more
/// than 4096 pixels on a side.
bool ReadPng(const std::string& file, int& width, int& height, std::vector<unsigned char>& rgb);
