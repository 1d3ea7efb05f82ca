#include "Platform/ProcessorIdentification.h"

#include <gtest/gtest.h>

#include <string.h>

#include <string>

namespace {

constexpr uint32_t kSse = 1u << 25, k3DNow = 1u << 31;

zm::CpuidRegisters Vendor(const char* twelve)
{
    zm::CpuidRegisters r = {1, 0, 0, 0};
    memcpy(&r.ebx, twelve, 4);
    memcpy(&r.edx, twelve + 4, 4);
    memcpy(&r.ecx, twelve + 8, 4);
    return r;
}

zm::CpuidLeaves Leaves(const char* vendor, uint32_t family, uint32_t model, uint32_t features)
{
    zm::CpuidLeaves leaves = {};
    leaves.vendor = Vendor(vendor);
    leaves.signature = {family << 8 | model << 4 | 9, 0, 0, features};
    return leaves;
}

// --- Type and name ----------------------------------------------------------------------

const struct {
    const char* name;
    bool has3DNow;
    uint32_t family, model, features;
    int type;
} kProcessors[] = {
    {"Unknown Processor", false, 4, 8, kSse, -1},
    {"Pentium", false, 5, 2, 0, 0},
    {"Pentium", false, 5, 8, 0, 0},
    {"Pentium MMX", false, 5, 4, 0, 1},
    {"Unknown Processor", false, 6, 0, kSse, -1},
    {"Pentium Pro", false, 6, 1, 0, 2},
    {"Unknown Processor", false, 6, 2, kSse, -1},
    {"Pentium II (Model 3)", false, 6, 3, 0, 4},
    {"Unknown Processor", false, 6, 4, kSse, -1},
    {"Pentium II (Xeon or Celeron Model 5)", false, 6, 5, 0, 5},
    {"Pentium II (Celeron Model 6)", false, 6, 6, 0, 6},
    {"Unknown Processor", false, 6, 7, 0, -1},
    {"Pentium III", false, 6, 7, kSse, 7},
    {"Unknown Processor", false, 6, 8, ~kSse, -1},
    {"Pentium III", false, 6, 15, kSse, 7},
    {"Unknown Processor", false, 7, 7, kSse, -1},
    {"Unknown Processor", false, 14, 7, kSse, -1},
    {"Pentium IV", false, 15, 0, 0, 10},
    {"Unknown Processor", true, 4, 8, 0, -1},
    {"AMD K6 3DNow", true, 5, 4, 0, 3},
    {"AMD Athlon", true, 6, 1, 0, 9},
    {"AMD Athlon", true, 15, 1, kSse, 9},
};

TEST(ProcessorIdentificationTest, TheSignatureChoosesTypeAndName)
{
    for (const auto& row : kProcessors) {
        SCOPED_TRACE(testing::Message() << "family " << row.family << " model " << row.model << " 3DNow "
                                        << row.has3DNow);
        zm::CpuidLeaves leaves =
            Leaves(row.has3DNow ? "AuthenticAMD" : "GenuineIntel", row.family, row.model, row.features);
        leaves.extended0.eax = 0x80000001u;
        leaves.extended1.edx = k3DNow;  // must be ignored for other vendors
        const zm::ProcessorIdentity id = zm::IdentifyProcessor(leaves);
        EXPECT_EQ(id.type, row.type);
        EXPECT_STREQ(id.name, row.name);
        EXPECT_EQ(id.features, row.features);
    }
}

TEST(ProcessorIdentificationTest, TheSignatureFallsApartIntoItsFields)
{
    zm::CpuidLeaves leaves = {};
    leaves.vendor = Vendor("GenuineIntel");
    leaves.signature.eax = 0xFFFF2683u;
    const zm::ProcessorIdentity id = zm::IdentifyProcessor(leaves);
    EXPECT_EQ(id.stepping, 3u);
    EXPECT_EQ(id.model, 8u);
    EXPECT_EQ(id.family, 6u);
    EXPECT_EQ(id.cpuType, 2u);
}

const struct {
    const char* name;
    const char* vendor;
    uint32_t extended0, extended1;
    int type;
    bool branded;
} kExtended[] = {
    {"3DNow without a brand", "AuthenticAMD", 0x80000003u, k3DNow, 9, false},
    {"3DNow and a brand", "AuthenticAMD", 0x80000004u, k3DNow, 9, true},
    {"a brand without 3DNow", "AuthenticAMD", 0x80000028u, ~k3DNow, -1, true},
    {"low bits of the highest leaf below 4", "AuthenticAMD", 0x80000011u, 0, -1, false},
    {"no extended leaves", "AuthenticAMD", 0, k3DNow, -1, false},
    {"another vendor", "GenuineIntel", 0x80000008u, k3DNow, -1, false},
    {"nearly the vendor", "AuthenticAMd", 0x80000008u, k3DNow, -1, false},
};

TEST(ProcessorIdentificationTest, OneVendorsExtendedLeavesGive3DNowAndTheBrand)
{
    constexpr char brand[49] = "Forty-eight characters without a zero at the end";
    for (const auto& row : kExtended) {
        SCOPED_TRACE(row.name);
        zm::CpuidLeaves leaves = Leaves(row.vendor, 6, 8, 0);
        leaves.extended0.eax = row.extended0;
        leaves.extended1.edx = row.extended1;
        memcpy(leaves.brand, brand, 48);
        const zm::ProcessorIdentity id = zm::IdentifyProcessor(leaves);
        EXPECT_EQ(id.type, row.type);
        EXPECT_STREQ(id.name, row.branded ? brand : row.type == 9 ? "AMD Athlon" : "Unknown Processor");
    }
}

TEST(ProcessorIdentificationTest, AnyVendorsBrandIsTrimmed)
{
    const std::string full = "Forty-eight characters without a zero at the end";
    const struct {
        const char* name;
        uint32_t extended0;
        std::string brand, expected;
    } kRows[] = {
        {"blanks at both ends", 0x80000008u, "     Cpu  (R) 5 @ 2 GHz  ", "Cpu  (R) 5 @ 2 GHz"},
        {"a brand is the highest leaf", 0x80000004u, full, full},
        {"low bits below 4", 0x80000020u, "Cpu", "Cpu"},
        {"no such leaf", 0x80000003u, "Cpu", ""},
        {"no extended leaves", 0x0000000Du, "Cpu", ""},
        {"blanks alone", 0x80000008u, std::string(48, ' '), ""},
        {"empty", 0x80000008u, "", ""},
    };
    for (const auto& row : kRows) {
        for (const char* vendor : {"GenuineIntel", "AuthenticAMD", "HygonGenuine"}) {
            SCOPED_TRACE(std::string(row.name) + " of " + vendor);
            zm::CpuidLeaves leaves = Leaves(vendor, 6, 8, 0);
            leaves.extended0.eax = row.extended0;
            memcpy(leaves.brand, row.brand.data(), row.brand.size());
            EXPECT_EQ(zm::IdentifyProcessor(leaves).brand, row.expected);
        }
    }
}

TEST(ProcessorIdentificationTest, WithoutCpuidNothingIsKnown)
{
    const zm::ProcessorIdentity id = zm::UnknownProcessor();
    EXPECT_EQ(id.type, -1);
    EXPECT_STREQ(id.name, "Unknown Processor");
    EXPECT_STREQ(id.brand, "");
    EXPECT_EQ(id.family | id.model | id.features, 0u);
}

// --- Clock ------------------------------------------------------------------------------------

constexpr int kSnapping[][2] = {
    {68, 66},   {77, 75},   {92, 90},     {102, 100},   {123, 120},   {136, 133},   {153, 150},   {169, 166},
    {183, 180}, {203, 200}, {227, 225},   {236, 233},   {255, 250},   {270, 266},   {280, 275},   {286, 285},
    {303, 300}, {328, 325}, {336, 333},   {351, 350},   {367, 366},   {376, 375},   {405, 400},   {430, 425},
    {455, 450}, {480, 475}, {505, 500},   {555, 550},   {605, 600},   {655, 650},   {705, 700},   {736, 733},
    {755, 750}, {770, 766}, {805, 800},   {836, 833},   {855, 850},   {870, 866},   {905, 900},   {936, 933},
    {955, 950}, {970, 966}, {1008, 1000}, {1115, 1100}, {1215, 1200}, {1315, 1300}, {1415, 1400}, {1515, 1500},
};

TEST(ProcessorIdentificationTest, ClocksSnapToTheirNominalValue)
{
    int first = 64;
    for (const auto& row : kSnapping) {
        EXPECT_EQ(zm::SnapFrequency(first), row[1]) << first;
        EXPECT_EQ(zm::SnapFrequency(row[0]), row[1]) << row[0];
        first = row[0] + 1;
    }
    for (const int unchanged : {0, 1, 60, 63, 1516, 1600, 3400}) {
        EXPECT_EQ(zm::SnapFrequency(unchanged), unchanged);
    }
}

const struct {
    const char* name;
    zm::ClockReadings readings;
    int mhz;
    double millisecondsPerCycle;
} kClocks[] = {
    {"2.5 GHz", {1000, 1001000, 1000000000, 500, 2500500}, 2500, 1.0 / 2500000},
    {"the fraction is cut", {0, 1000000, 1000000000, 0, 1999999}, 1999, 1.0 / 1999999},
    {"another counter", {0, 3580, 3579545, 0, 133000}, 132, 3580.0 / 3579.545 / 133000},
    {"the low word wraps", {0, 1000000, 1000000000, 0x1FFFFFFFFu, 0x2000F423Fu}, 1000, 1.0 / 1000000},
    {"only the low words count", {0, 1000000, 1000000000, 0, 0x3000F4240u}, 1000, 1.0 / 1000000},
    {"the cycles stand still", {0, 1000000, 1000000000, 7, 7}, 0, 0},
    {"the counter stands still", {5, 5, 1000000000, 0, 1000000}, 0, 0},
    {"nothing was read", {}, 0, 0},
    {"a counter without a rate", {0, 1000000, 0, 0, 1000000}, 0, 0},
    {"faster than any", {0, 1, 1000000000, 0, 1000000}, 0, 1e-12},
};

TEST(ProcessorIdentificationTest, TheClockIsCyclesBySeconds)
{
    for (const auto& row : kClocks) {
        const zm::ClockMeasurement clock = zm::MeasureClock(row.readings);
        EXPECT_EQ(clock.mhz, row.mhz) << row.name;
        EXPECT_NEAR(clock.millisecondsPerCycle, row.millisecondsPerCycle, row.millisecondsPerCycle * 1e-6) << row.name;
    }
}

TEST(ProcessorIdentificationTest, MillisecondsPerTickComeFromTheLowWordOfTheFrequency)
{
    EXPECT_EQ(zm::MillisecondsPerTick(1000), 1.0f);
    EXPECT_EQ(zm::MillisecondsPerTick(1000000000), 1e-6f);
    EXPECT_EQ(zm::MillisecondsPerTick(0), 0.0f);
    EXPECT_EQ(zm::MillisecondsPerTick((int64_t(1) << 32) + 500), 2.0f);
}

const struct {
    const char* name;
    int frequency, estimate;
    const char* text;
} kDescriptions[] = {
    {"Pentium MMX", 166, 166, "Pentium MMX 166 Mhz"},
    {"Pentium MMX", 166, 168, "Pentium MMX 166 Mhz (Estimated:168 Mhz)"},
    {"Pentium III", 1000, 1000, "Pentium III 1 Ghz"},
    {"Pentium III", 1000, 1003, "Pentium III 1 Ghz (Estimated:1.003 Ghz)"},
    {"Pentium III", 1000, 990, "Pentium III 1 Ghz (Estimated:0.99 Ghz)"},
    {"Pentium III", 966, 970, "Pentium III 966 Mhz (Estimated:970 Mhz)"},
    {"Pentium IV", 2533, 2533, "Pentium IV 2.533 Ghz"},
    {"Unknown Processor", 0, 0, "Unknown Processor 0 Mhz"},
    {"Forty-eight characters without a zero at the end", 1000, 1003,
     "Forty-eight characters without a zero at the end 1 Ghz (Estimat"},
};

TEST(ProcessorIdentificationTest, DescriptionsShowTheEstimateWhereItDiffersAndEndAtSixtyThreeCharacters)
{
    for (const auto& row : kDescriptions) {
        char text[64];
        zm::DescribeProcessor(text, row.name, row.frequency, row.estimate);
        EXPECT_STREQ(text, row.text);
    }
}

}  // namespace
