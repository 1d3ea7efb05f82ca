#include "Png.h"

#define STB_IMAGE_WRITE_IMPLEMENTATION
#include "stb_image_write.h"

bool WritePng(const char* path, int width, int height, const unsigned char* rgb)
{
    return stbi_write_png(path, width, height, 3, rgb, width * 3) != 0;
}
