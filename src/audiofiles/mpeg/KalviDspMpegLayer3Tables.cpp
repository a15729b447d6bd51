// The Layer III part of the decoder's tables.
#include "audiofiles/mpeg/KalviDspMpegDecoderTables.h"

#include "audiofiles/mpeg/KalviDspMpegStandardTables.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace vlk {

namespace {

constexpr double pi = std::numbers::pi;

// Angles of the windows in units of pi/72.
double sinOf(double units)
{
    return std::sin(units * pi / 72.0);
}

double cosOf(double units)
{
    return std::cos(units * pi / 72.0);
}

void fillLookup(const std::int16_t* tree, MpegHuffmanLookup (&lookup)[1 << MpegDecoderTables::huffmanLookupBits])
{
    constexpr int numBits = MpegDecoderTables::huffmanLookupBits;
    for (int prefix = 0; prefix < (1 << numBits); ++prefix) {
        int node = 0;
        int used = 0;
        while (tree[node] < 0 && used < numBits) {
            node += ((prefix >> (numBits - 1 - used)) & 1) != 0 ? -tree[node] : 1;
            ++used;
        }
        lookup[prefix] = tree[node] < 0 ? MpegHuffmanLookup{static_cast<std::int16_t>(node), -numBits}
                                        : MpegHuffmanLookup{tree[node], static_cast<std::int16_t>(used)};
    }
}

std::uint16_t packLengths(int first, int second, int third, int fourth, int row, int preflag)
{
    return static_cast<std::uint16_t>(first | second << 3 | third << 6 | fourth << 9 | row << 12 | preflag << 15);
}

} // namespace

void MpegDecoderTables::buildLayer3Tables()
{
    for (int entry = 0; entry < static_cast<int>(std::size(gainPow2)); ++entry)
        gainPow2[entry] = static_cast<float>(std::pow(2.0, -(entry - 46) / 4.0));
    for (int value = 0; value < static_cast<int>(std::size(ispow)); ++value)
        ispow[value] = static_cast<float>(std::pow(static_cast<double>(value), 4.0 / 3.0));
    for (int i = 0; i < 8; ++i) {
        const double c = mpeg::layer3AliasCoefficients[i];
        aliasCs[i] = static_cast<float>(1.0 / std::sqrt(1.0 + c * c));
        aliasCa[i] = static_cast<float>(c / std::sqrt(1.0 + c * c));
    }
    buildImdctTables();
    buildIntensityTables();
    buildBandTables();
    buildHuffmanLookups();
    buildScalefacLengths();
}

void MpegDecoderTables::buildHuffmanLookups()
{
    for (int table = 0; table < 32; ++table)
        fillLookup(mpeg::layer3HuffmanTables[table].tree, huffmanLookup[table]);
    for (int table = 0; table < 2; ++table)
        fillLookup(mpeg::layer3Count1Trees[table], count1Lookup[table]);
}

void MpegDecoderTables::buildImdctTables()
{
    double window[4][36] = {};
    for (int i = 0; i < 18; ++i) {
        window[0][i] = window[1][i] = 0.5 * sinOf(2 * i + 1) / cosOf(2 * i + 19);
        window[0][i + 18] = window[3][i + 18] = 0.5 * sinOf(2 * i + 37) / cosOf(2 * i + 55);
    }
    for (int i = 0; i < 6; ++i) {
        window[1][i + 18] = 0.5 / cosOf(2 * i + 55);
        window[3][i + 12] = 0.5 / cosOf(2 * i + 43);
        window[1][i + 24] = 0.5 * std::sin((2 * i + 13) * pi / 24.0) / cosOf(2 * i + 67);
        window[3][i + 6] = 0.5 * std::sin((2 * i + 1) * pi / 24.0) / cosOf(2 * i + 31);
        window[1][i + 30] = window[3][i] = 0.0;
    }
    for (int i = 0; i < 12; ++i)
        window[2][i] = 0.5 * std::sin((2 * i + 1) * pi / 24.0) / std::cos((2 * i + 7) * pi / 24.0);
    for (int type = 0; type < 4; ++type)
        for (int i = 0; i < 36; ++i) {
            imdctWindow[type][i] = static_cast<float>(window[type][i]);
            imdctWindowOdd[type][i] = static_cast<float>(i % 2 == 0 ? window[type][i] : -window[type][i]);
        }

    // Output i of an n-point IMDCT, times 2 cos((2i + 1 + n/2) pi / 2n); the window makes up for the factor.
    for (int input = 0; input < 18; ++input)
        for (int output = 0; output < 18; ++output) {
            const int i = output < 9 ? output : output + 9;
            imdct36[input][output] = static_cast<float>(2.0 * cosOf(2 * i + 19) * cosOf((2 * i + 19) * (2 * input + 1)));
        }
    for (int input = 0; input < 6; ++input)
        for (int output = 0; output < 6; ++output) {
            const int i = output < 3 ? output : output + 3;
            imdct12[input][output] = static_cast<float>(2.0 * std::cos((2 * i + 7) * pi / 24.0) *
                                                        std::cos((2 * i + 7) * (2 * input + 1) * pi / 24.0));
        }
}

void MpegDecoderTables::buildIntensityTables()
{
    for (int i = 0; i < 16; ++i) {
        // At i = 6 the tangent is huge and finite, at i = 9 the denominator tiny and not 0: no position divides
        // by zero.
        const double t = std::tan(i * pi / 12.0);
        tan1[i] = static_cast<float>(t / (1.0 + t));
        tan2[i] = static_cast<float>(1.0 / (1.0 + t));
        tanRoot1[i] = static_cast<float>(std::numbers::sqrt2 * t / (1.0 + t));
        tanRoot2[i] = static_cast<float>(std::numbers::sqrt2 / (1.0 + t));
    }
    for (int j = 0; j < 2; ++j) {
        const double base = std::pow(2.0, j == 0 ? -0.25 : -0.5);
        for (int i = 0; i < 32; ++i) {
            double first = 1.0;
            double second = 1.0;
            if (i % 2 == 1)
                first = std::pow(base, (i + 1) / 2);
            else if (i > 0)
                second = std::pow(base, i / 2);
            pow1[j][i] = static_cast<float>(first);
            pow2[j][i] = static_cast<float>(second);
            powRoot1[j][i] = static_cast<float>(first * std::numbers::sqrt2);
            powRoot2[j][i] = static_cast<float>(second * std::numbers::sqrt2);
        }
    }
}

void MpegDecoderTables::buildBandTables()
{
    for (int rate = 0; rate < 9; ++rate) {
        const std::int16_t* longStarts = mpeg::layer3LongBandStarts[rate];
        const std::int16_t* shortStarts = mpeg::layer3ShortBandStarts[rate];
        for (int band = 0; band < 23; ++band)
            longLimit[rate][band] = std::min((longStarts[band] + 7) / 18 + 1, 32);
        for (int band = 0; band < 14; ++band)
            shortLimit[rate][band] = std::min((3 * shortStarts[band] - 1) / 18 + 1, 32);

        auto addLong = [&](MpegBandMap& map, int band) {
            map.entries[map.size++] = {static_cast<std::uint16_t>((longStarts[band + 1] - longStarts[band]) / 2),
                                       static_cast<std::uint16_t>(longStarts[band]), 3,
                                       static_cast<std::uint8_t>(band)};
        };
        auto addShort = [&](MpegBandMap& map, int band) {
            for (int window = 0; window < 3; ++window)
                map.entries[map.size++] = {
                    static_cast<std::uint16_t>((shortStarts[band + 1] - shortStarts[band]) / 2),
                    static_cast<std::uint16_t>(3 * shortStarts[band] + window), static_cast<std::uint8_t>(window),
                    static_cast<std::uint8_t>(band)};
        };
        MpegBandMap& mixed = bandMap[rate][0];
        MpegBandMap& shortMap = bandMap[rate][1];
        MpegBandMap& longMap = bandMap[rate][2];
        for (int band = 0; band < 8; ++band)
            addLong(mixed, band);
        for (int band = 3; band < 13; ++band)
            addShort(mixed, band);
        for (int band = 0; band < 13; ++band)
            addShort(shortMap, band);
        for (int band = 0; band < 22; ++band)
            addLong(longMap, band);
    }
}

void MpegDecoderTables::buildScalefacLengths()
{
    for (int i = 0; i < 5; ++i)
        for (int j = 0; j < 5; ++j)
            for (int k = 0; k < 4; ++k)
                for (int l = 0; l < 4; ++l)
                    normalScalefacLengths[l + 4 * k + 16 * j + 80 * i] = packLengths(i, j, k, l, 0, 0);
    for (int i = 0; i < 5; ++i)
        for (int j = 0; j < 5; ++j)
            for (int k = 0; k < 4; ++k)
                normalScalefacLengths[400 + k + 4 * j + 20 * i] = packLengths(i, j, k, 0, 1, 0);
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 3; ++j)
            normalScalefacLengths[500 + j + 3 * i] = packLengths(i, j, 0, 0, 2, 1);

    for (int i = 0; i < 5; ++i)
        for (int j = 0; j < 6; ++j)
            for (int k = 0; k < 6; ++k)
                intensityScalefacLengths[k + 6 * j + 36 * i] = packLengths(i, j, k, 0, 3, 0);
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 4; ++j)
            for (int k = 0; k < 4; ++k)
                intensityScalefacLengths[180 + k + 4 * j + 16 * i] = packLengths(i, j, k, 0, 4, 0);
    for (int i = 0; i < 4; ++i)
        for (int j = 0; j < 3; ++j)
            intensityScalefacLengths[244 + j + 3 * i] = packLengths(i, j, 0, 0, 5, 0);
}

} // namespace vlk
