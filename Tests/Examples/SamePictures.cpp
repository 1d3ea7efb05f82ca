// SamePictures <folder> <other folder> <name>...: compares the pixels of the named pictures in both folders.
#include <cstdio>
#include <cstring>
#include <string>

#define STB_IMAGE_IMPLEMENTATION
#define STBI_ONLY_PNG
#include "stb_image.h"

namespace {

struct Picture {
    explicit Picture(const std::string& path) : Pixels(stbi_load(path.c_str(), &Width, &Height, &Channels, 3)) {}
    ~Picture() { stbi_image_free(Pixels); }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    int Width = 0, Height = 0, Channels = 0;
    unsigned char* Pixels;
};

bool AreSame(const Picture& a, const Picture& b)
{
    return a.Pixels != nullptr && b.Pixels != nullptr && a.Width == b.Width && a.Height == b.Height &&
           std::memcmp(a.Pixels, b.Pixels, size_t(a.Width) * size_t(a.Height) * 3) == 0;
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
