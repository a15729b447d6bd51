#include "text/KalviDspDisplayText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

namespace vlk {
namespace {

TEST(TimeText, BelowOneSecondInMilliseconds)
{
    EXPECT_EQ(getTimeText(0.0), "0.0 ms");
    EXPECT_EQ(getTimeText(99.5), "99.5 ms");
    EXPECT_EQ(getTimeText(99.96), "100.0 ms");
    EXPECT_EQ(getTimeText(100.0), "100 ms");
    EXPECT_EQ(getTimeText(999.0), "999 ms");
    EXPECT_EQ(getTimeText(999.9), "999 ms");
}

TEST(TimeText, UpToThirtySecondsWithTwoDecimals)
{
    EXPECT_EQ(getTimeText(1000.0), "1.00 sec");
    EXPECT_EQ(getTimeText(1234.5), "1.23 sec");
    EXPECT_EQ(getTimeText(30000.0), "30.00 sec");
}

TEST(TimeText, AboveThirtySecondsInParts)
{
    EXPECT_EQ(getTimeText(30001.0), "30 sec");
    EXPECT_EQ(getTimeText(90000.0), "1 min 30 sec");
    EXPECT_EQ(getTimeText(3600000.0), "1 h");
    EXPECT_EQ(getTimeText(3660000.0), "1 h 1 min");
    EXPECT_EQ(getTimeText(7322000.0), "2 h 2 min 2 sec");
}

TEST(TimeText, MinutesStandWhenHoursAndSecondsDo)
{
    EXPECT_EQ(getTimeText(3601000.0), "1 h 0 min 1 sec");
}

TEST(TimeText, RoundedSecondsCarryIntoMinutesAndHours)
{
    EXPECT_EQ(getTimeText(59999.6), "1 min");
    EXPECT_EQ(getTimeText(119500.0), "2 min");
    EXPECT_EQ(getTimeText(3599600.0), "1 h");
    EXPECT_EQ(getTimeText(7199500.0), "2 h");
}

TEST(TimeText, SamplesAtARate)
{
    EXPECT_EQ(getTimeText(std::uint64_t{44100}, 44100.0), "1.00 sec");
    EXPECT_EQ(getTimeText(std::uint64_t{4410}, 44100.0), "100 ms");
    EXPECT_EQ(getTimeText(std::uint64_t{48000} * 3600, 48000.0), "1 h");
}

TEST(TimeText, NoFiniteDurationStaysInMilliseconds)
{
    EXPECT_EQ(getTimeText(std::uint64_t{1}, 0.0), "inf ms");
    EXPECT_EQ(getTimeText(1e300), "1e+300 ms");
}

TEST(FileSizeText, DecimalScaleWithFrenchUnits)
{
    EXPECT_EQ(getFileSizeText(0), "0.00 Ko");
    EXPECT_EQ(getFileSizeText(1234), "1.23 Ko");
    EXPECT_EQ(getFileSizeText(999999), "1000.00 Ko");
    EXPECT_EQ(getFileSizeText(1000000), "1.00 Mo");
    EXPECT_EQ(getFileSizeText(1500000), "1.50 Mo");
    EXPECT_EQ(getFileSizeText(1000000000), "1.00 Go");
    EXPECT_EQ(getFileSizeText(2500000000), "2.50 Go");
}

TEST(SampleRateText, EachBranchWithItsUnit)
{
    EXPECT_EQ(getSampleRateText(true, 44100), "44.1 kHz");
    EXPECT_EQ(getSampleRateText(true, 22050), "22050 Hz");
    EXPECT_EQ(getSampleRateText(true, 44100.5f), "44100 Hz");
    EXPECT_EQ(getSampleRateText(true, 48000), "48 kHz");
    EXPECT_EQ(getSampleRateText(true, 1000), "1 kHz");
    EXPECT_EQ(getSampleRateText(true, 999.9f), "999 Hz");
    EXPECT_EQ(getSampleRateText(true, 100), "100 Hz");
    EXPECT_EQ(getSampleRateText(true, 1e6f), "1.00 MHz");
    EXPECT_EQ(getSampleRateText(true, 2.5e9f), "2.50 GHz");
}

TEST(SampleRateText, WithoutUnitKeepsTheMultiplierLetter)
{
    EXPECT_EQ(getSampleRateText(false, 44100), "44.1k");
    EXPECT_EQ(getSampleRateText(false, 48000), "48k");
    EXPECT_EQ(getSampleRateText(false, 192000), "192k");
    EXPECT_EQ(getSampleRateText(false, 22050), "22050");
    EXPECT_EQ(getSampleRateText(false, 100), "100");
    EXPECT_EQ(getSampleRateText(false, 2.5e6f), "2.50M");
}

// Runs a test under a fixed time zone and puts the machine's setting back afterwards.
class DateTextInZone : public testing::Test
{
protected:
    void SetUp() override
    {
        if (const char* zone = std::getenv("TZ"))
            previousZone = zone;
        useZone("UTC");
    }

    void TearDown() override
    {
        if (previousZone)
            setenv("TZ", previousZone->c_str(), 1);
        else
            unsetenv("TZ");
        tzset();
    }

    static void useZone(const char* zone)
    {
        setenv("TZ", zone, 1);
        tzset();
    }

    static String full(std::int64_t milliseconds)
    {
        return getDateText(milliseconds, true, true, true, true, false);
    }

private:
    std::optional<std::string> previousZone;
};

constexpr std::int64_t november14th2026 = 1794657909000; // Saturday, 12:05:09 UTC

TEST_F(DateTextInZone, EachPartCanBeLeftOut)
{
    EXPECT_EQ(getDateText(november14th2026, true, true, true, false, false), "14/11/2026 - 12h05m09s");
    EXPECT_EQ(getDateText(november14th2026, true, true, false, false, false), "14/11/2026 - 12:05");
    EXPECT_EQ(getDateText(november14th2026, true, false, true, true, false), "Sat - 14/11/2026");
    EXPECT_EQ(getDateText(november14th2026, false, true, true, true, false), "12h05m09s");
    EXPECT_EQ(getDateText(november14th2026, false, true, false, false, true), "12:05");
    EXPECT_EQ(getDateText(november14th2026, false, false, true, true, true), "");
}

TEST_F(DateTextInZone, UnderscoresReplaceEverySeparatorOfTheDate)
{
    EXPECT_EQ(getDateText(november14th2026, true, true, true, true, true), "Sat_14_11_2026_12h05m09s");
    EXPECT_EQ(getDateText(november14th2026, true, true, false, false, true), "14_11_2026_12:05");
}

TEST_F(DateTextInZone, JulianDayRoadMeetsTheLocalClockAtBothEnds)
{
    EXPECT_EQ(full(0), "Thu - 01/01/1970 - 00h00m00s");
    EXPECT_EQ(full(-1), "Wed - 31/12/1969 - 23h59m59s");
    EXPECT_EQ(full(86399999), "Thu - 01/01/1970 - 23h59m59s");
    EXPECT_EQ(full(86400000), "Fri - 02/01/1970 - 00h00m00s");
    EXPECT_EQ(full(2145916799999), "Thu - 31/12/2037 - 23h59m59s");
    EXPECT_EQ(full(2145916800000), "Fri - 01/01/2038 - 00h00m00s");
}

TEST_F(DateTextInZone, JulianDayRoadKnowsTheLeapYearsOfTheCenturies)
{
    EXPECT_EQ(full(4107542399000), "Sun - 28/02/2100 - 23h59m59s");
    EXPECT_EQ(full(4107542400000), "Mon - 01/03/2100 - 00h00m00s");
    EXPECT_EQ(full(-2203891200000), "Thu - 01/03/1900 - 00h00m00s");
    EXPECT_EQ(full(-11670976372000), "Tue - 29/02/1600 - 06h07m08s");
}

TEST_F(DateTextInZone, JulianDayRoadAgreesWithTheSystemCalendarInUtc)
{
    const auto check = [](std::int64_t milliseconds) {
        const std::time_t seconds = static_cast<std::time_t>(std::floor(milliseconds / 1000.0));
        std::tm expected{};
        ASSERT_NE(gmtime_r(&seconds, &expected), nullptr);
        const std::tm actual = localTime(milliseconds);
        EXPECT_EQ(actual.tm_year, expected.tm_year) << milliseconds;
        EXPECT_EQ(actual.tm_mon, expected.tm_mon) << milliseconds;
        EXPECT_EQ(actual.tm_mday, expected.tm_mday) << milliseconds;
        EXPECT_EQ(actual.tm_yday, expected.tm_yday) << milliseconds;
        EXPECT_EQ(actual.tm_wday, expected.tm_wday) << milliseconds;
        EXPECT_EQ(actual.tm_hour, expected.tm_hour) << milliseconds;
        EXPECT_EQ(actual.tm_min, expected.tm_min) << milliseconds;
        EXPECT_EQ(actual.tm_sec, expected.tm_sec) << milliseconds;
    };
    // Steps of a prime number of milliseconds land on every time of day and every day of the year.
    for (std::int64_t milliseconds = -40000000000000; milliseconds < 86400000; milliseconds += 9876543211)
        check(milliseconds);
    for (std::int64_t milliseconds = 2145916800000; milliseconds < 40000000000000; milliseconds += 9876543211)
        check(milliseconds);
}

TEST_F(DateTextInZone, JulianDayRoadAddsTheZoneOffsetAndLeavesDaylightSavingUnknown)
{
    useZone("UTC-2");
    EXPECT_EQ(full(0), "Thu - 01/01/1970 - 02h00m00s");
    EXPECT_EQ(full(86399999), "Fri - 02/01/1970 - 01h59m59s");
    EXPECT_EQ(full(86400000), "Fri - 02/01/1970 - 02h00m00s");
    EXPECT_EQ(localTime(0).tm_isdst, -1);
    useZone("UTC+5");
    EXPECT_EQ(full(0), "Wed - 31/12/1969 - 19h00m00s");
    EXPECT_EQ(full(2145916800000), "Thu - 31/12/2037 - 19h00m00s");
}

} // namespace
} // namespace vlk
