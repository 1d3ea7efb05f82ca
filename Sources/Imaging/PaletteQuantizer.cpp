#include "Imaging/PaletteQuantizer.h"

#include "Imaging/PaletteKernels.h"
#include "Platform/FeatureWord.h"

#include <stdio.h>

namespace zm {
namespace {

/// The initial state: a ramp of greys, no wins.
void Initialise(PaletteNetwork& network)
{
    for (int i = 0; i < kPaletteSize; ++i) {
        network.colour[0][i] = network.colour[1][i] = network.colour[2][i] = uint16_t(i << PaletteNetwork::kColourBits);
        network.frequency[i] = 0;
    }
}

struct OrderedEntry {
    uint8_t colour[3];
    uint8_t number;
};

/// Must be a selection sort, which is not stable: the order it leaves among equal second components decides between
/// equally near entries (PaletteQuantizerTest, PixelsMapAsInTheModel).
void Sort(OrderedEntry (&entries)[kPaletteSize])
{
    for (int i = 0; i < kPaletteSize; ++i) {
        int smallest = i;
        for (int j = i + 1; j < kPaletteSize; ++j) {
            smallest = entries[j].colour[1] < entries[smallest].colour[1] ? j : smallest;
        }
        const OrderedEntry entry = entries[i];
        entries[i] = entries[smallest];
        entries[smallest] = entry;
    }
}

/// Sets where the search for each value begins: in the middle of the entries with that value, or at the first entry of
/// the next value.
void FillStarts(PaletteIndex& index)
{
    constexpr int last = kPaletteSize - 1;
    int value = 0, runStart = 0;
    for (int i = 0; i < kPaletteSize; ++i) {
        const int next = index.up[1][i];
        if (next != value) {
            index.start[value] = uint16_t((runStart + i) >> 1);
            for (int between = value + 1; between < next; ++between) {
                index.start[between] = uint16_t(i);
            }
            value = next;
            runStart = i;
        }
    }
    index.start[value] = uint16_t((runStart + last) >> 1);
    for (int above = value + 1; above < kPaletteSize; ++above) {
        index.start[above] = uint16_t(last);
    }
}

}  // namespace

void LearnPalette(Palette& res, const PackedPicture& picture, int factor)
{
    PaletteNetwork network;
    Initialise(network);
    fprintf(stderr, "beginning 1D learning: initial radius=%d\n", Neighbourhood::kLargest);
    const int alpha =
        DispatchWide(avx2::Learn, Learn<SseWords>, Learn<ScalarWord>, network, picture, factor < 1 ? 1 : factor);
    fprintf(stderr, "finished 1D learning: final alpha=%f !\n", alpha / 1024.0);
    for (int i = 0; i < kPaletteSize; ++i) {
        for (int c = 0; c < 3; ++c) {
            res.colour[i][c] = uint8_t(network.colour[c][i] >> PaletteNetwork::kColourBits);
        }
    }
}

void BuildPaletteIndex(PaletteIndex& res, const Palette& palette)
{
    OrderedEntry entries[kPaletteSize];
    for (int i = 0; i < kPaletteSize; ++i) {
        const uint8_t* const colour = palette.colour[i];
        entries[i] = {{colour[0], colour[1], colour[2]}, uint8_t(i)};
    }
    Sort(entries);
    // Farther from every pixel than any entry, but small enough for the keys of the search.
    constexpr uint16_t nowhere[3] = {0, 1200, 0};
    for (int c = 0; c < 3; ++c) {
        for (int i = 0; i < kPaletteSize + PaletteIndex::kPadding; ++i) {
            const bool inside = i < kPaletteSize;
            res.up[c][i] = inside ? entries[i].colour[c] : nowhere[c];
            res.down[c][i] = inside ? entries[kPaletteSize - 1 - i].colour[c] : nowhere[c];
        }
    }
    for (int i = 0; i < kPaletteSize; ++i) {
        res.entry[i] = entries[i].number;
    }
    FillStarts(res);
}

void MapToPalette(const PaletteIndex& index, const uint8_t* pixels, uint8_t* res, int count)
{
    DispatchWide(avx2::Map, Map<SseWords>, Map<ScalarWord>, index, pixels, res, count);
}

}  // namespace zm
