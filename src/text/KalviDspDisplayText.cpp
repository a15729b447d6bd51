#include "text/KalviDspDisplayText.h"

#include "text/KalviDspStringHelper.h"
#include "text/KalviDspStringList.h"

#include <cmath>

namespace vlk {

namespace {

// The integer part in decimal; values that no 64-bit integer holds, NaN included, take the stream's form.
String integerPartText(double value)
{
    if (!(std::abs(value) < 0x1p63))
        return doubleToString(value, 0);
    return toString(static_cast<long long>(value));
}

String longTimeText(double milliseconds)
{
    const double seconds = milliseconds / 1000;
    double h = std::floor(milliseconds / 3600000);
    double m = std::floor((seconds - 3600 * h) / 60);
    double c = std::round(seconds) - 3600 * h - 60 * m;
    if (c == 60) {
        c = 0;
        ++m;
    }
    if (m == 60) {
        m = 0;
        ++h;
    }
    Vector<String> parts;
    if (h != 0)
        parts.push_back(integerPartText(h) + " h");
    if (m != 0 || (c != 0 && h != 0))
        parts.push_back(integerPartText(m) + " min");
    if (c != 0)
        parts.push_back(integerPartText(c) + " sec");
    return join(parts, " ");
}

} // namespace

String getTimeText(double milliseconds)
{
    const double seconds = milliseconds / 1000;
    // Not a finite duration, or one that no 64-bit count of hours holds: the stream's form in milliseconds.
    if (!(std::abs(milliseconds) < 0x1p62))
        return doubleToString(milliseconds, 1) + " ms";
    if (seconds < 1)
        return (milliseconds >= 100 ? integerPartText(milliseconds) : doubleToString(milliseconds, 1)) +
               " ms";
    if (seconds <= 30)
        return doubleToString(seconds, 2) + " sec";
    return longTimeText(milliseconds);
}

String getTimeText(std::uint64_t numSamples, double sampleRate)
{
    return getTimeText(static_cast<double>(numSamples) * 1000 / sampleRate);
}

String getFileSizeText(std::int64_t bytes)
{
    const double size = static_cast<double>(bytes);
    if (size < 1e6)
        return formatNumber("%.2f", size * 0.001) + " Ko";
    if (size < 1e9)
        return formatNumber("%.2f", size * 1e-6) + " Mo";
    return formatNumber("%.2f", size * 1e-9) + " Go";
}

String getSampleRateText(bool withUnit, float rate)
{
    const double hz = rate;
    String text;
    if (rate == 44100)
        text = "44.1 kHz";
    else if (hz < 1000)
        text = integerPartText(hz) + " Hz";
    else if (hz >= 1e9)
        text = formatNumber("%.2f", hz / 1e9) + " GHz";
    else if (hz >= 1e6)
        text = formatNumber("%.2f", hz / 1e6) + " MHz";
    else if (hz / 1000 == std::floor(hz / 1000))
        text = integerPartText(hz / 1000) + " kHz";
    else
        text = integerPartText(hz) + " Hz";
    if (withUnit)
        return text;
    text.removeLast("Hz");
    text.removeAll(' ');
    return text;
}

namespace {

constexpr std::int64_t millisecondsPerDay = 86400000;
// localtime_r is used from the second day of 1970 up to the start of 2038; times outside take the Julian-day
// road, which no width of time_t limits.
constexpr std::int64_t firstLocalTime = millisecondsPerDay;
constexpr std::int64_t endOfLocalTime = 2145916800000;

std::int64_t floorDivide(std::int64_t value, std::int64_t divisor)
{
    const std::int64_t quotient = value / divisor;
    return quotient * divisor > value ? quotient - 1 : quotient;
}

// Seconds east of UTC, as mktime sees them on 1 January 1971.
std::int64_t timeZoneOffset()
{
    std::tm newYear{};
    newYear.tm_year = 71;
    newYear.tm_mday = 1;
    newYear.tm_isdst = -1;
    const std::time_t local = std::mktime(&newYear);
    constexpr std::int64_t newYearInUtc = 365 * 86400;
    return local == static_cast<std::time_t>(-1) ? 0 : newYearInUtc - static_cast<std::int64_t>(local);
}

bool isLeapYear(std::int64_t year)
{
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

// Days since 1 January 1970 to the proleptic Gregorian date, counting years from 1 March so that the leap
// day falls last; good for negative days too.
void setDate(std::tm& time, std::int64_t days)
{
    const std::int64_t shifted = days + 719468;
    const std::int64_t era = floorDivide(shifted, 146097);
    const std::int64_t dayOfEra = shifted - era * 146097;
    const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayFromMarch = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t monthFromMarch = (5 * dayFromMarch + 2) / 153;
    const std::int64_t month = monthFromMarch < 10 ? monthFromMarch + 2 : monthFromMarch - 10;
    const std::int64_t year = yearOfEra + era * 400 + (month < 2 ? 1 : 0);
    time.tm_year = static_cast<int>(year - 1900);
    time.tm_mon = static_cast<int>(month);
    time.tm_mday = static_cast<int>(dayFromMarch - (153 * monthFromMarch + 2) / 5 + 1);
    time.tm_yday =
        static_cast<int>(month >= 2 ? dayFromMarch + 59 + (isLeapYear(year) ? 1 : 0) : dayFromMarch - 306);
    // 1 January 1970 was a Thursday.
    time.tm_wday = static_cast<int>(days + 4 - 7 * floorDivide(days + 4, 7));
}

std::tm julianDayTime(std::int64_t milliseconds)
{
    // Truncation then a fix-up, so that the lowest 64-bit times do not overflow.
    std::int64_t days = milliseconds / millisecondsPerDay;
    std::int64_t remainder = milliseconds % millisecondsPerDay;
    if (remainder < 0) {
        remainder += millisecondsPerDay;
        --days;
    }
    std::int64_t seconds = remainder / 1000 + timeZoneOffset();
    if (seconds < 0) {
        seconds += 86400;
        --days;
    } else if (seconds >= 86400) {
        seconds -= 86400;
        ++days;
    }
    std::tm time{};
    setDate(time, days);
    time.tm_hour = static_cast<int>(seconds / 3600);
    time.tm_min = static_cast<int>(seconds / 60 % 60);
    time.tm_sec = static_cast<int>(seconds % 60);
    // The offset is that of one winter day: whether daylight saving applied is not known.
    time.tm_isdst = -1;
    return time;
}

String twoDigits(int value)
{
    return formatNumber("%02d", value);
}

} // namespace

std::tm localTime(std::int64_t milliseconds)
{
    if (milliseconds < firstLocalTime || milliseconds >= endOfLocalTime)
        return julianDayTime(milliseconds);
    const std::time_t seconds = static_cast<std::time_t>(milliseconds / 1000);
    std::tm time{};
    localtime_r(&seconds, &time);
    return time;
}

String getDateText(std::int64_t milliseconds, bool includeDate, bool includeTime, bool letters, bool weekday,
                   bool underscores)
{
    static const char* const dayNames[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
    const std::tm time = localTime(milliseconds);
    const char* const partSeparator = underscores ? "_" : " - ";
    const char* const dateSeparator = underscores ? "_" : "/";
    String text;
    if (includeDate) {
        if (weekday)
            text += String(dayNames[time.tm_wday]) + partSeparator;
        text += twoDigits(time.tm_mday) + dateSeparator + twoDigits(time.tm_mon + 1) + dateSeparator +
                toString(time.tm_year + 1900);
    }
    if (!includeTime)
        return text;
    if (includeDate)
        text += partSeparator;
    text += twoDigits(time.tm_hour) + (letters ? "h" : ":") + twoDigits(time.tm_min);
    if (letters)
        text += "m" + twoDigits(time.tm_sec) + "s";
    return text;
}

} // namespace vlk
