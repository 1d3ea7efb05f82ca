#include "Png.h"

#define STBI_ONLY_PNG
#define STBI_MAX_DIMENSIONS 4096
#define STBI_NO_STDIO
#define STB_IMAGE_IMPLEMENTATION
#include "stb_image.h"
#define STB_IMAGE_WRITE_IMPLEMENTATION
#include "stb_image_write.h"

bool WritePng(const char* path, int width, int height, const unsigned char* rgb)
{
    return stbi_write_png(path, width, height, 3, rgb, width * 3) != 0;
}

bool ReadPng(const std::string& file, int& width, int& height, std::vector<unsigned char>& rgb)
{
    int channels;
    stbi_uc* pixels = stbi_load_from_memory(reinterpret_cast<const stbi_uc*>(file.data()), int(file.size()), &width,
                                            &height, &channels, 3);
    if (pixels == nullptr) {
        return false;
    }
    rgb.assign(pixels, pixels + 3 * width * height);
    stbi_image_free(pixels);
    return true;
}
