#include "platform/date_time.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>

#include "platform/error.h"

namespace kestrova {
namespace {

constexpr std::chrono::sys_days kDayZero =
    std::chrono::year{1899} / std::chrono::December / std::chrono::day{30};
constexpr std::int64_t kMillisecondsPerDay = 86'400'000;
constexpr int kFirstDay = -693'593;         // 0001-01-01
constexpr int kFirstDayBeyond = 2'958'466;  // 10000-01-01

[[noreturn]] void reject_day_count() {
  throw Overflow("The day count lies outside the years 1 to 9999.");
}

}  // namespace

bool is_valid_date(int year, int month, int day) {
  if (year < 1 || year > 9999 || month < 1 || month > 12 || day < 1 || day > 31) return false;
  return std::chrono::year_month_day{std::chrono::year{year},
                                     std::chrono::month{static_cast<unsigned>(month)},
                                     std::chrono::day{static_cast<unsigned>(day)}}
      .ok();
}

int full_year(int year) {
  if (year < 0 || year > 99) return year;
  return year < 30 ? 2000 + year : 1900 + year;
}

std::string format_dmy(const DateTime& date) {
  char text[40];
  std::snprintf(text, sizeof text, "%02d.%02d.%04d", date.day, date.month, date.year);
  return text;
}

std::string format_iso(const DateTime& date) {
  char text[96];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", date.year, date.month, date.day,
                date.hour, date.minute, date.second);
  std::string result = text;
  if (date.nanosecond != 0) {
    std::snprintf(text, sizeof text, ".%09d", static_cast<int>(date.nanosecond));
    result += text;
    result.erase(result.find_last_not_of('0') + 1);
  }
  return result;
}

double to_day_count(const DateTime& date) {
  const std::chrono::sys_days day = std::chrono::year{date.year} /
                                    std::chrono::month{static_cast<unsigned>(date.month)} /
                                    std::chrono::day{static_cast<unsigned>(date.day)};
  const double seconds =
      date.hour * 3600.0 + date.minute * 60.0 + date.second + date.nanosecond / 1e9;
  return static_cast<double>((day - kDayZero).count()) + seconds / 86'400.0;
}

DateTime from_day_count(double days) {
  // Checked before and after rounding: rounding needs a number of sensible size and may reach the
  // first moment of the year 10000.
  if (!(days >= kFirstDay && days < kFirstDayBeyond)) reject_day_count();
  const auto milliseconds = static_cast<std::int64_t>(std::llround(days * kMillisecondsPerDay));
  std::int64_t whole_days = milliseconds / kMillisecondsPerDay;
  std::int64_t rest = milliseconds % kMillisecondsPerDay;
  if (rest < 0) {
    rest += kMillisecondsPerDay;
    --whole_days;
  }
  if (whole_days == kFirstDayBeyond) reject_day_count();
  const std::chrono::year_month_day ymd{kDayZero + std::chrono::days{whole_days}};
  DateTime result;
  result.year = static_cast<int>(ymd.year());
  result.month = static_cast<int>(static_cast<unsigned>(ymd.month()));
  result.day = static_cast<int>(static_cast<unsigned>(ymd.day()));
  result.hour = static_cast<int>(rest / 3'600'000);
  result.minute = static_cast<int>(rest / 60'000 % 60);
  result.second = static_cast<int>(rest / 1'000 % 60);
  result.nanosecond = static_cast<std::int32_t>(rest % 1'000 * 1'000'000);
  return result;
}

DateTime local_now() {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
#ifdef _WIN32
  localtime_s(&parts, &now);
#else
  localtime_r(&now, &parts);
#endif
  return {parts.tm_year + 1900,
          parts.tm_mon + 1,
          parts.tm_mday,
          parts.tm_hour,
          parts.tm_min,
          parts.tm_sec,
          0};
}

}  // namespace kestrova
