#include "base/IsoDate.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace orvelle {

namespace {

using namespace std::chrono;

constexpr sys_days epoch = year(2001) / January / 1;
constexpr auto firstMoment = static_cast<double>(seconds(sys_days(year(1) / January / 1) - epoch).count());
constexpr auto lastMoment = static_cast<double>(seconds(sys_days(year(10'000) / January / 1) - epoch).count()) - 1;
// The distant past counts the days before 1582 by the old calendar, two more.
static_assert(firstMoment > Timestamp::distantPast().seconds);
static_assert(lastMoment == Timestamp::distantFuture().seconds);

constexpr std::string_view shape = "dddd-dd-ddTdd:dd:dd"; ///< 'd' stands for a digit
constexpr std::size_t dateTimeLength = shape.size();
constexpr std::string_view offsetShape = "dd:dd";

bool hasShape(std::string_view text, std::string_view expected)
{
    return std::equal(text.begin(), text.end(), expected.begin(), expected.end(),
                      [](char c, char wanted) { return wanted == 'd' ? c >= '0' && c <= '9' : c == wanted; });
}

int number(std::string_view text, std::size_t from, std::size_t length)
{
    int value = 0;
    for (const char digit : text.substr(from, length))
        value = 10 * value + (digit - '0');
    return value;
}

template<std::size_t Size>
void put(std::array<char, Size> &text, std::size_t from, std::size_t length, unsigned value)
{
    for (std::size_t i = length; i-- > 0; value /= 10)
        text[from + i] = static_cast<char>('0' + value % 10);
}

/// What "Z" or "+hh:mm" adds to UTC.
std::optional<seconds> parseOffset(std::string_view text)
{
    if (text == "Z")
        return seconds(0);
    if (text.empty() || (text[0] != '+' && text[0] != '-') || !hasShape(text.substr(1), offsetShape))
        return std::nullopt;
    const int hour = number(text, 1, 2);
    const int minute = number(text, 4, 2);
    if (hour > 23 || minute > 59)
        return std::nullopt;
    const seconds offset = hours(hour) + minutes(minute);
    return text[0] == '+' ? offset : -offset;
}

} // namespace

IsoDate::IsoDate(Timestamp moment)
{
    const auto whole = seconds(static_cast<qint64>(std::clamp(std::floor(moment.seconds), firstMoment, lastMoment)));
    const sys_days day = epoch + floor<days>(whole);
    const year_month_day date(day);
    const hh_mm_ss time(epoch + whole - day);
    std::copy(shape.begin(), shape.end(), m_text.begin());
    put(m_text, 0, 4, static_cast<unsigned>(static_cast<int>(date.year())));
    put(m_text, 5, 2, static_cast<unsigned>(date.month()));
    put(m_text, 8, 2, static_cast<unsigned>(date.day()));
    put(m_text, 11, 2, static_cast<unsigned>(time.hours().count()));
    put(m_text, 14, 2, static_cast<unsigned>(time.minutes().count()));
    put(m_text, 17, 2, static_cast<unsigned>(time.seconds().count()));
    m_text.back() = 'Z';
}

std::optional<Timestamp> parseIsoDate(std::string_view text)
{
    if (!hasShape(text.substr(0, dateTimeLength), shape))
        return std::nullopt;
    const auto offset = parseOffset(text.substr(dateTimeLength));
    const year_month_day date(year(number(text, 0, 4)), month(static_cast<unsigned>(number(text, 5, 2))),
                              day(static_cast<unsigned>(number(text, 8, 2))));
    const int hour = number(text, 11, 2);
    const int minute = number(text, 14, 2);
    const int second = number(text, 17, 2);
    if (!offset || !date.ok() || date.year() < year(1) || hour > 23 || minute > 59 || second > 59)
        return std::nullopt;
    const seconds since = seconds(sys_days(date) - epoch) + hours(hour) + minutes(minute) + seconds(second) - *offset;
    const auto moment = static_cast<double>(since.count());
    return moment <= firstMoment ? Timestamp::distantPast() : Timestamp{moment};
}

} // namespace orvelle
