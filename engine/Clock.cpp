#include "engine/Clock.h"

#include <cstdio>
#include <cstdlib>

namespace rm {

std::time_t SystemClock::Now() const {
  if (const char* epoch = std::getenv("SOURCE_DATE_EPOCH"); epoch && *epoch) {
    char* end = nullptr;
    long long v = std::strtoll(epoch, &end, 10);
    if (end && *end == '\0' && v >= 0) return static_cast<std::time_t>(v);
  }
  return std::time(nullptr);
}

std::string FormatDateTime(std::time_t t) {
  std::tm tm{};
  gmtime_r(&t, &tm);
  char buf[64];
  std::snprintf(buf, sizeof buf, "%02d/%02d/%04d %02d:%02d:%02d", tm.tm_mday, tm.tm_mon + 1, tm.tm_year + 1900,
                tm.tm_hour, tm.tm_min, tm.tm_sec);
  return buf;
}

}  // namespace rm
