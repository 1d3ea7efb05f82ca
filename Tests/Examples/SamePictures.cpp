// SamePictures <folder> <other folder> <name>...: compares the pixels of the named pictures in both folders.
#include <cstdio>
#include <cstring>
#include <string>

#define STB_IMAGE_IMPLEMENTATION
#define STBI_ONLY_PNG
#include "stb_image.h"

namespace {

struct Picture {
    explicit Picture(const std::string& path) : pixels(stbi_load(path.c_str(), &width, &height, &channels, 3)) {}
    ~Picture() { stbi_image_free(pixels); }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    int width = 0, height = 0, channels = 0;
    unsigned char* pixels;
};

bool AreSame(const Picture& a, const Picture& b)
{
    return a.pixels != nullptr && b.pixels != nullptr && a.width == b.width && a.height == b.height &&
           std::memcmp(a.pixels, b.pixels, size_t(a.width) * size_t(a.height) * 3) == 0;
}

}  // namespace

int main(int argc, char** argv)
{
    int differing = 0;
    for (int i = 3; i < argc; ++i) {
        const std::string name = std::string("/") + argv[i];
        if (!AreSame(Picture(argv[1] + name), Picture(argv[2] + name))) {
            std::printf("%s: not the same picture in %s and %s\n", argv[i], argv[1], argv[2]);
            ++differing;
        }
    }
    return differing > 0 || argc < 4 ? 1 : 0;
}
