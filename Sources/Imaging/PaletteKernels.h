#pragma once

#include "Imaging/PaletteQuantizer.h"
#include "Imaging/WordLanes.h"

#include <string.h>

namespace zm {
namespace {

/// How strongly the winner and its neighbours on both sides move towards a sample, in units of 2^-18.
class Neighbourhood {
public:
    static constexpr int kLargest = 32;

    /// `radius` is 0 or counts the neurons on one side, winner included. The winner itself moves by alpha / 1024.
    void Set(int alpha, int radius)
    {
        memset(m_Eighths, 0, sizeof(m_Eighths));
        memset(m_Rest, 0, sizeof(m_Rest));
        Put(0, alpha * 256);
        for (int k = 1; k < radius; ++k) {
            const int weight = alpha * (((radius * radius - k * k) * 256) / (radius * radius));
            Put(k, weight);
            Put(-k, weight);
        }
        m_Reach = radius > 0 ? radius - 1 : 0;
    }

    int Reach() const { return m_Reach; }
    /// Weights by distance from the winner, up to kCentre on both sides.
    SplitWeights AroundWinner() const { return {m_Eighths + kCentre, m_Rest + kCentre}; }

private:
    static constexpr int kCentre = kLargest + 16;  // padded for whole registers, wherever the reach begins in one

    void Put(int place, int weight)
    {
        const int eighths = weight >> 3 > INT16_MAX ? INT16_MAX : weight >> 3;
        m_Eighths[kCentre + place] = int16_t(eighths);
        m_Rest[kCentre + place] = int16_t(weight - 8 * eighths);
    }

    int m_Reach;
    int16_t m_Eighths[2 * kCentre], m_Rest[2 * kCentre];
};

/// The learning rate and the radius, which shrink over a hundred cycles.
class Schedule {
public:
    explicit Schedule(int factor) : m_Decrement(30 + (factor - 1) / 3) { Update(); }

    int Alpha() const { return m_Alpha; }
    const Neighbourhood& Near() const { return m_Near; }

    void Advance()
    {
        m_Alpha -= m_Alpha / m_Decrement;
        m_Radius -= m_Radius / 30;
        Update();
    }

private:
    void Update() { m_Near.Set(m_Alpha, m_Radius >> 6 < 2 ? 0 : m_Radius >> 6); }

    int m_Alpha = 1024, m_Decrement;
    int m_Radius = Neighbourhood::kLargest << 6;
    Neighbourhood m_Near;
};

/// The lowest value and its position, block by block.
template <class Words>
struct LowestOf {
    Words value = Words::Splat(INT16_MAX), block = Words::Splat(0);

    void Add(Words newValue, Words newBlock) { Words::KeepLower(value, block, newValue, newBlock); }
    int Place() const { return Words::PlaceOfLowest(value, block); }
};

/// Returns the neuron nearest to the sample, with a bonus for neurons that win seldom. The win counts of all neurons
/// decay by about a thousandth, and the neuron nearest without the bonus gains one win.
template <class Words>
inline int Contest(PaletteNetwork& network, const Words (&sample)[3])
{
    const Words one = Words::Splat(1), two = Words::Splat(2), start = Words::Splat(255);
    LowestOf<Words> nearest, biased;
    Words number = Words::Splat(0);
    for (int at = 0; at < kPaletteSize; at += Words::kCount) {
        const Words distance = Words::AbsDiff(Words::Load(network.colour[0] + at), sample[0]) +
                               Words::AbsDiff(Words::Load(network.colour[1] + at), sample[1]) +
                               Words::AbsDiff(Words::Load(network.colour[2] + at), sample[2]);
        const Words frequency = Words::Load(network.frequency + at);
        nearest.Add(distance, number);
        // The bias divided by 2^12 is -frequency / 4, rounded down; Average() rounds without overflowing 16 bits.
        biased.Add(distance + Words::Average(frequency, two).template ShiftRight<1>(), number);
        (frequency - Words::Average(frequency, start).template ShiftRight<9>()).Store(network.frequency + at);
        number = number + one;
    }
    uint16_t& wins = network.frequency[nearest.Place()];
    wins = uint16_t(wins + 64);
    return biased.Place();
}

/// Moves the winner and its neighbours towards the sample, in whole registers.
template <class Words>
inline void Attract(PaletteNetwork& network, const Neighbourhood& near, int winner, const Words (&sample)[3])
{
    const SplitWeights weights = near.AroundWinner();
    const int first = winner - near.Reach(), last = winner + near.Reach();
    const int begin = first > 0 ? first & -Words::kCount : 0, end = last < kPaletteSize ? last : kPaletteSize - 1;
    for (int at = begin; at <= end; at += Words::kCount) {
        const typename Words::Weights weight = Words::LoadWeights(weights, at - winner);
        for (int c = 0; c < 3; ++c) {
            uint16_t* const place = network.colour[c] + at;
            const Words colour = Words::Load(place);
            (colour - Words::Weighted(colour - sample[c], weight)).Store(place);
        }
    }
}

/// The step from one sample to the next: a prime number of pixels that does not divide the picture.
inline int64_t SampleStep(int64_t length)
{
    constexpr int primes[] = {499, 491, 487};
    for (const int prime : primes) {
        if (length % prime != 0) {
            return 3 * prime;
        }
    }
    return 3 * 503;
}

/// Trains the network. Returns the last alpha.
template <class Words>
inline int Learn(PaletteNetwork& network, const PackedPicture& picture, int factor)
{
    const int64_t count = picture.length / (3 * int64_t(factor));
    // With fewer samples than cycles, each sample ends a cycle.
    const int64_t cycle = count < 100 ? 1 : count / 100;
    Schedule schedule(factor);
    const int64_t step = count > 0 ? SampleStep(picture.length) % picture.length : 0;
    int64_t at = 0, left = cycle;
    for (int64_t i = 0; i < count; ++i) {
        const uint8_t* const pixel = picture.bytes + at;
        const Words sample[3] = {Words::Splat(pixel[0] << PaletteNetwork::kColourBits),
                                 Words::Splat(pixel[1] << PaletteNetwork::kColourBits),
                                 Words::Splat(pixel[2] << PaletteNetwork::kColourBits)};
        Attract(network, schedule.Near(), Contest(network, sample), sample);
        at += step;
        at -= at >= picture.length ? picture.length : 0;
        if (--left == 0) {
            schedule.Advance();
            left = cycle;
        }
    }
    return schedule.Alpha();
}

template <class Words>
inline Words DistanceTo(const uint16_t (*colours)[kPaletteSize + PaletteIndex::kPadding], int at,
                        const Words (&pixel)[3])
{
    return Words::AbsDiff(Words::Load(colours[0] + at), pixel[0]) +
           Words::AbsDiff(Words::Load(colours[1] + at), pixel[1]) +
           Words::AbsDiff(Words::Load(colours[2] + at), pixel[2]);
}

/// Compares one register of entries per step in each direction. The low bits of a key are the order in which a search
/// by single entries would meet them, so the lowest key is the entry that such a search would return.
template <class Words>
inline int Nearest(const PaletteIndex& index, const uint8_t* bytes)
{
    constexpr int kRankMask = 2 * Words::kCount - 1;
    const Words pixel[3] = {Words::Splat(bytes[0]), Words::Splat(bytes[1]), Words::Splat(bytes[2])};
    const Words even = Words::Numbers() + Words::Numbers(), odd = even + Words::Splat(1);
    const int second = bytes[1];
    int up = index.start[second], down = kPaletteSize - up;
    int best = 1000, place = 0;
    for (;;) {
        const Words above = DistanceTo(index.up, up, pixel).template ShiftLeft<Words::kRankBits>() + even;
        const Words below = DistanceTo(index.down, down, pixel).template ShiftLeft<Words::kRankBits>() + odd;
        const int key = Words::Min(above, below).Lowest(), rank = key & kRankMask;
        if (key >> Words::kRankBits < best) {
            best = key >> Words::kRankBits;
            place = rank & 1 ? kPaletteSize - 1 - (down + rank / 2) : up + rank / 2;
        }
        up = up + Words::kCount < kPaletteSize ? up + Words::kCount : kPaletteSize;
        down = down + Words::kCount < kPaletteSize ? down + Words::kCount : kPaletteSize;
        const int aboveNext = index.up[1][up] - second, belowNext = second - index.down[1][down];
        if (aboveNext >= best && (belowNext >= best || down == kPaletteSize)) {
            return index.entry[place];
        }
    }
}

template <class Words>
inline void Map(const PaletteIndex& index, const uint8_t* pixels, uint8_t* res, int count)
{
    for (int i = 0; i < count; ++i) {
        res[i] = uint8_t(Nearest<Words>(index, pixels + size_t(i) * 3));
    }
}

}  // namespace
}  // namespace zm
