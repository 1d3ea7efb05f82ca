#include "Imaging/PaletteQuantizer.h"
#include "Support/Paths.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <string>

namespace {

/// The published algorithm, step by step on 32-bit integers, one neuron at a time.
class Model {
public:
    Model(const std::vector<uint8_t>& picture, int factor) : m_Picture(picture), m_Factor(factor)
    {
        for (int i = 0; i < 256; ++i) {
            m_Network[i][0] = m_Network[i][1] = m_Network[i][2] = (i << 12) / 256;
            m_Frequency[i] = 65536 / 256;
        }
        Learn();
        for (int i = 0; i < 256; ++i) {
            for (int c = 0; c < 3; ++c) {
                m_Network[i][c] >>= 4;
            }
            m_Network[i][3] = i;
        }
        memcpy(m_Sorted, m_Network, sizeof(m_Network));
        Sort();
    }

    int Colour(int entry, int c) const { return m_Network[entry][c]; }
    double FinalAlpha() const { return m_Alpha / 1024.0; }

    int Search(int b, int g, int r) const
    {
        int best = 1000, res = -1;
        int i = m_Start[g], j = i - 1;
        while (i < 256 || j >= 0) {
            i = i < 256 ? Look(i, b, g, r, best, res) ? i + 1 : 256 : i;
            j = j >= 0 ? Look(j, b, g, r, best, res) ? j - 1 : -1 : j;
        }
        return res;
    }

private:
    void Learn()
    {
        const int length = int(m_Picture.size()), decrement = 30 + (m_Factor - 1) / 3;
        const int samples = length / (3 * m_Factor), delta = samples / 100;
        const int step = 3 * (length % 499 ? 499 : length % 491 ? 491 : length % 487 ? 487 : 503);
        int radius = 2048, rad = 32, power[32];
        for (int i = 0; i < 32; ++i) {
            power[i] = ((1024 - i * i) >> 2) << 10;
        }
        for (int i = 1, p = 0; i <= samples; ++i, p = (p + step) % length) {
            const int sample[3] = {m_Picture[size_t(p)] << 4, m_Picture[size_t(p) + 1] << 4,
                                   m_Picture[size_t(p) + 2] << 4};
            const int winner = Contest(sample);
            Move(winner, sample, m_Alpha, 1024);
            for (int k = 1; k < rad; ++k) {
                Move(winner + k, sample, power[k], 1 << 18);
                Move(winner - k, sample, power[k], 1 << 18);
            }
            if (delta == 0 || i % delta == 0) {
                m_Alpha -= m_Alpha / decrement;
                radius -= radius / 30;
                rad = radius >> 6 < 2 ? 0 : radius >> 6;
                for (int k = 0; k < rad; ++k) {
                    power[k] = m_Alpha * (((rad * rad - k * k) * 256) / (rad * rad));
                }
            }
        }
    }

    int Contest(const int (&sample)[3])
    {
        int best = 0, bestBiased = 0, distance = INT32_MAX, biasedDistance = INT32_MAX;
        for (int i = 0; i < 256; ++i) {
            int d = 0;
            for (int c = 0; c < 3; ++c) {
                d += abs(m_Network[i][c] - sample[c]);
            }
            const int biased = d - (m_Bias[i] >> 12), share = m_Frequency[i] >> 10;
            best = d < distance ? i : best;
            distance = d < distance ? d : distance;
            bestBiased = biased < biasedDistance ? i : bestBiased;
            biasedDistance = biased < biasedDistance ? biased : biasedDistance;
            m_Frequency[i] -= share;
            m_Bias[i] += share * 1024;
        }
        m_Frequency[best] += 64;
        m_Bias[best] -= 65536;
        return bestBiased;
    }

    void Move(int i, const int (&sample)[3], int weight, int unit)
    {
        for (int c = 0; c < 3 && i >= 0 && i < 256; ++c) {
            m_Network[i][c] -= (m_Network[i][c] - sample[c]) * weight / unit;
        }
    }

    void Sort()
    {
        int previous = 0, start = 0;
        for (int i = 0; i < 256; ++i) {
            int small = i;
            for (int j = i + 1; j < 256; ++j) {
                small = m_Sorted[j][1] < m_Sorted[small][1] ? j : small;
            }
            std::swap(m_Sorted[i], m_Sorted[small]);
            if (m_Sorted[i][1] != previous) {
                m_Start[previous] = (start + i) / 2;
                for (int j = previous + 1; j < m_Sorted[i][1]; ++j) {
                    m_Start[j] = i;
                }
                previous = m_Sorted[i][1];
                start = i;
            }
        }
        m_Start[previous] = (start + 255) / 2;
        for (int j = previous + 1; j < 256; ++j) {
            m_Start[j] = 255;
        }
    }

    /// Examines one entry. Returns whether the search continues in this direction.
    bool Look(int i, int b, int g, int r, int& best, int& res) const
    {
        int d = abs(m_Sorted[i][1] - g);
        if (d >= best) {
            return false;
        }
        d += abs(m_Sorted[i][0] - b);
        d += d < best ? abs(m_Sorted[i][2] - r) : 0;
        if (d < best) {
            best = d;
            res = m_Sorted[i][3];
        }
        return true;
    }

    const std::vector<uint8_t>& m_Picture;
    int m_Factor, m_Alpha = 1024;
    int m_Network[256][4], m_Sorted[256][4], m_Frequency[256], m_Bias[256] = {}, m_Start[256];
};

std::vector<uint8_t> Noise(int pixels)
{
    Random random(7);
    std::vector<uint8_t> res(size_t(pixels) * 3);
    for (uint8_t& byte : res) {
        byte = uint8_t(random.Bits());
    }
    return res;
}

/// Soft gradients, as in a photograph.
std::vector<uint8_t> Landscape(int width, int height)
{
    std::vector<uint8_t> res;
    for (int i = 0; i < width * height; ++i) {
        const int x = i % width, y = i / width;
        res.push_back(uint8_t(x * 255 / width));
        res.push_back(uint8_t((x * y / 40 + y) & 0xFF));
        res.push_back(uint8_t(128 + (x * x / 90 - y) % 100));
    }
    return res;
}

std::vector<uint8_t> Plain(int pixels, int b, int g, int r)
{
    std::vector<uint8_t> res;
    for (int i = 0; i < pixels; ++i) {
        res.insert(res.end(), {uint8_t(b), uint8_t(g), uint8_t(r)});
    }
    return res;
}

const struct {
    const char* name;
    std::vector<uint8_t> picture;
    int factor;
} kPictures[] = {
    {"noise", Noise(20000), 1},
    {"noise, one in fifteen", Noise(20000), 15},
    {"soft gradients", Landscape(200, 150), 1},
    {"soft gradients, one in seven", Landscape(200, 150), 7},
    {"a single colour wins for ever", Plain(30000, 255, 0, 255), 1},
    {"black and a corner", Plain(5000, 0, 0, 0), 2},
    {"a length that 499 divides", Landscape(499, 20), 1},
    {"a length that 499 and 491 divide", Landscape(499, 491), 15},
    {"a cycle for each of 50 samples", Noise(50), 1},
    {"99 samples", Noise(99), 1},
    {"100 samples", Noise(100), 1},
    {"199 samples", Noise(199), 1},
    {"one pixel", Plain(1, 10, 200, 30), 1},
    {"two pixels, fewer bytes than a step", Noise(2), 1},
    {"no sample at all", Noise(10), 15},
    {"a factor as large as can be", Noise(10), INT32_MAX / 3},
};

zm::Palette Learnt(const std::vector<uint8_t>& picture, int factor, std::string& messages)
{
    zm::Palette palette;
    testing::internal::CaptureStderr();
    zm::LearnPalette(palette, {picture.data(), int64_t(picture.size())}, factor);
    messages = testing::internal::GetCapturedStderr();
    return palette;
}

std::string Messages(double alpha)
{
    char text[120];
    snprintf(text, sizeof(text), "beginning 1D learning: initial radius=32\nfinished 1D learning: final alpha=%f !\n",
             alpha);
    return text;
}

TEST(PaletteQuantizerTest, PalettesAndMessagesAreTheModelsBitForBit)
{
    for (const auto& row : kPictures) {
        SCOPED_TRACE(row.name);
        const Model model(row.picture, row.factor);
        OnEachPath(1, [&](Random&) {
            std::string messages;
            const zm::Palette palette = Learnt(row.picture, row.factor, messages);
            int different = 0;
            for (int i = 0; i < 256 * 3; ++i) {
                different += palette.colour[i / 3][i % 3] != model.Colour(i / 3, i % 3);
            }
            EXPECT_EQ(different, 0);
            messages.erase(std::remove(messages.begin(), messages.end(), '\r'), messages.end());
            EXPECT_EQ(messages, Messages(model.FinalAlpha()));
        });
    }
}

TEST(PaletteQuantizerTest, PixelsMapAsInTheModel)
{
    const std::vector<uint8_t> pixels = Noise(20000);
    for (const auto& row : kPictures) {
        SCOPED_TRACE(row.name);
        const Model model(row.picture, row.factor);
        std::vector<uint8_t> expected;
        for (size_t i = 0; i < pixels.size(); i += 3) {
            expected.push_back(uint8_t(model.Search(pixels[i], pixels[i + 1], pixels[i + 2])));
        }
        zm::Palette palette;
        for (int i = 0; i < 256 * 3; ++i) {
            palette.colour[i / 3][i % 3] = uint8_t(model.Colour(i / 3, i % 3));
        }
        zm::PaletteIndex index;
        zm::BuildPaletteIndex(index, palette);
        OnEachPath(1, [&](Random&) {
            std::vector<uint8_t> mapped(expected.size());
            zm::MapToPalette(index, pixels.data(), mapped.data(), int(mapped.size()));
            EXPECT_EQ(mapped, expected);
        });
    }
}

TEST(PaletteQuantizerTest, EquallyNearEntriesAreChosenAsInTheModel)
{
    // Few distinct values: nearly every pixel has several entries at the same distance.
    std::vector<uint8_t> picture = Noise(400);
    for (uint8_t& byte : picture) {
        byte = uint8_t(byte & 0xC0);
    }
    const Model model(picture, 1);
    std::string messages;
    const zm::Palette palette = Learnt(picture, 1, messages);
    zm::PaletteIndex index;
    zm::BuildPaletteIndex(index, palette);
    OnEachPath(1, [&](Random&) {
        int different = 0;
        for (int i = 0; i < 64 * 64 * 64; ++i) {
            const uint8_t pixel[3] = {uint8_t(i / 4096 * 4), uint8_t(i / 64 % 64 * 4), uint8_t(i % 64 * 4)};
            uint8_t entry;
            zm::MapToPalette(index, pixel, &entry, 1);
            different += entry != model.Search(pixel[0], pixel[1], pixel[2]);
        }
        EXPECT_EQ(different, 0);
    });
}

TEST(PaletteQuantizerTest, ASingleColourIsLearntExactly)
{
    const std::vector<uint8_t> picture = Plain(4000, 12, 130, 250);
    OnEachPath(1, [&](Random&) {
        std::string messages;
        const zm::Palette palette = Learnt(picture, 1, messages);
        zm::PaletteIndex index;
        zm::BuildPaletteIndex(index, palette);
        uint8_t entry = 0;
        zm::MapToPalette(index, picture.data(), &entry, 1);
        EXPECT_EQ(0, memcmp(palette.colour[entry], picture.data(), 3));
    });
}

}  // namespace
