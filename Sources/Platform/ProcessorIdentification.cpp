#include "Platform/ProcessorIdentification.h"

#include <stdio.h>
#include <string.h>

namespace zm {
namespace {

constexpr uint32_t k3DNow = 1u << 31;  // in EDX of leaf 0x80000001

const char* DisplayName(ProcessorsType type)
{
    switch (type) {
    case ZMPROCESSOR_UNKNOWN: return "Unknown Processor";
    case ZMPROCESSOR_PENTIUM: return "Pentium";
    case ZMPROCESSOR_PENTIUM_MMX: return "Pentium MMX";
    case ZMPROCESSOR_PENTIUM_PRO: return "Pentium Pro";
    case ZMPROCESSOR_K6_3DNOW: return "AMD K6 3DNow";
    case ZMPROCESSOR_PENTIUM_II_MODEL_3: return "Pentium II (Model 3)";
    case ZMPROCESSOR_PENTIUM_II_MODEL_5: return "Pentium II (Xeon or Celeron Model 5)";
    case ZMPROCESSOR_PENTIUM_II_MODEL_6: return "Pentium II (Celeron Model 6)";
    case ZMPROCESSOR_PENTIUM_III: return "Pentium III";
    case ZMPROCESSOR_ATHLON: return "AMD Athlon";
    case ZMPROCESSOR_PENTIUM_IV: return "Pentium IV";
    }
    return "";
}

ProcessorsType SixthFamilyType(uint32_t model, bool hasSse)
{
    switch (model) {
    case 1: return ZMPROCESSOR_PENTIUM_PRO;
    case 3: return ZMPROCESSOR_PENTIUM_II_MODEL_3;
    case 5: return ZMPROCESSOR_PENTIUM_II_MODEL_5;
    case 6: return ZMPROCESSOR_PENTIUM_II_MODEL_6;
    default: return model >= 7 && hasSse ? ZMPROCESSOR_PENTIUM_III : ZMPROCESSOR_UNKNOWN;
    }
}

ProcessorsType TypeOf(const ProcessorIdentity& id, bool has3DNow)
{
    if (has3DNow) {
        return id.family >= 6 ? ZMPROCESSOR_ATHLON : id.family == 5 ? ZMPROCESSOR_K6_3DNOW : ZMPROCESSOR_UNKNOWN;
    }
    if (id.family >= 15) {
        return ZMPROCESSOR_PENTIUM_IV;
    }
    if (id.family == 6) {
        return SixthFamilyType(id.model, (id.features & ZMPROCESSOR_FEATURE_SSE) != 0);
    }
    if (id.family == 5) {
        return id.model == 4 ? ZMPROCESSOR_PENTIUM_MMX : ZMPROCESSOR_PENTIUM;
    }
    return ZMPROCESSOR_UNKNOWN;
}

void SetName(ProcessorIdentity& id, const char* name)
{
    snprintf(id.name, sizeof(id.name), "%s", name);
}

// Some processors right-align the brand string with leading blanks.
void SetBrand(ProcessorIdentity& id, const CpuidLeaves& leaves)
{
    if (!HasBrand(leaves.extended0)) {
        return;
    }
    char text[sizeof(leaves.brand) + 1] = {};
    memcpy(text, leaves.brand, sizeof(leaves.brand));
    const char* begin = text + strspn(text, " ");
    size_t length = strlen(begin);
    while (length != 0 && begin[length - 1] == ' ') {
        --length;
    }
    memcpy(id.brand, begin, length);
}

struct ClockRow {
    int bound, nominal;
};

constexpr ClockRow kNominalClocks[] = {
    {68, 66},   {77, 75},   {92, 90},     {102, 100},   {123, 120},   {136, 133},   {153, 150},   {169, 166},
    {183, 180}, {203, 200}, {227, 225},   {236, 233},   {255, 250},   {270, 266},   {280, 275},   {286, 285},
    {303, 300}, {328, 325}, {336, 333},   {351, 350},   {367, 366},   {376, 375},   {405, 400},   {430, 425},
    {455, 450}, {480, 475}, {505, 500},   {555, 550},   {605, 600},   {655, 650},   {705, 700},   {736, 733},
    {755, 750}, {770, 766}, {805, 800},   {836, 833},   {855, 850},   {870, 866},   {905, 900},   {936, 933},
    {955, 950}, {970, 966}, {1008, 1000}, {1115, 1100}, {1215, 1200}, {1315, 1300}, {1415, 1400}, {1515, 1500},
};

}  // namespace

bool HasAmdVendor(const CpuidRegisters& vendor)
{
    const uint32_t words[3] = {vendor.ebx, vendor.edx, vendor.ecx};
    return memcmp(words, "AuthenticAMD", sizeof(words)) == 0;
}

bool HasBrand(const CpuidRegisters& extended0)
{
    return extended0.eax >= 0x80000004u;
}

bool NamesByBrand(const CpuidRegisters& extended0)
{
    return (extended0.eax & 0xF) >= 4;
}

ProcessorIdentity UnknownProcessor()
{
    ProcessorIdentity id = {};
    id.type = ZMPROCESSOR_UNKNOWN;
    SetName(id, DisplayName(id.type));
    return id;
}

ProcessorIdentity IdentifyProcessor(const CpuidLeaves& leaves)
{
    ProcessorIdentity id = {};
    const uint32_t signature = leaves.signature.eax;
    id.stepping = signature & 0xF;
    id.model = signature >> 4 & 0xF;
    id.family = signature >> 8 & 0xF;
    id.cpuType = signature >> 12 & 0x3;
    id.features = leaves.signature.edx;

    const bool amd = HasAmdVendor(leaves.vendor);
    id.type = TypeOf(id, amd && leaves.extended0.eax != 0 && (leaves.extended1.edx & k3DNow) != 0);

    SetBrand(id, leaves);
    if (amd && NamesByBrand(leaves.extended0)) {
        memcpy(id.name, leaves.brand, sizeof(leaves.brand));
    } else {
        SetName(id, DisplayName(id.type));
    }
    return id;
}

int SnapFrequency(int measured)
{
    if (measured < 64) {
        return measured;
    }
    for (const ClockRow& row : kNominalClocks) {
        if (measured <= row.bound) {
            return row.nominal;
        }
    }
    return measured;
}

void DescribeProcessor(char (&text)[64], const char* name, int frequency, int estimate)
{
    const bool inGhz = frequency >= 1000;
    if (frequency == estimate && !inGhz) {
        snprintf(text, sizeof(text), "%s %d Mhz", name, frequency);
    } else if (frequency == estimate) {
        snprintf(text, sizeof(text), "%s %g Ghz", name, frequency / 1000.0);
    } else if (!inGhz) {
        snprintf(text, sizeof(text), "%s %d Mhz (Estimated:%d Mhz)", name, frequency, estimate);
    } else {
        snprintf(text, sizeof(text), "%s %g Ghz (Estimated:%g Ghz)", name, frequency / 1000.0, estimate / 1000.0);
    }
}

ClockMeasurement MeasureClock(const ClockReadings& readings)
{
    // Only the differences of the low words count, so a wrap at 2^32 does no harm.
    const uint32_t cycles = uint32_t(readings.cyclesEnd) - uint32_t(readings.cyclesStart);
    const double ticks = double(readings.counterEnd - readings.counterStart);
    if (cycles == 0 || ticks <= 0 || readings.counterFrequency <= 0) {
        return {0, 0.0f};
    }
    const double seconds = ticks / double(readings.counterFrequency);
    const double mhz = cycles / seconds / 1000000;
    const bool plausible = mhz < 1000000;
    return {plausible ? int(mhz) : 0, float(1000 * seconds / cycles)};
}

float MillisecondsPerTick(int64_t counterFrequency)
{
    const uint32_t low = uint32_t(counterFrequency);
    return low != 0 ? float(1000.0 / low) : 0.0f;
}

}  // namespace zm
