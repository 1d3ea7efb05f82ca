#pragma once

/// Writes rows of 8-bit red, green and blue, top row first. False when the file
/// cannot be written.
bool WritePng(const char* path, int width, int height, const unsigned char* rgb);
