#pragma once
#include <ctime>
#include <string>

namespace rm {

class Clock {
 public:
  virtual ~Clock() = default;
  virtual std::time_t Now() const = 0;
};

// The machine's clock, unless SOURCE_DATE_EPOCH pins it so that outputs are reproducible.
class SystemClock : public Clock {
 public:
  std::time_t Now() const override;
};

class FixedClock : public Clock {
 public:
  explicit FixedClock(std::time_t t) : t_(t) {}
  std::time_t Now() const override { return t_; }

 private:
  std::time_t t_;
};

// "dd/mm/yyyy hh:nn:ss" in UTC, the date and time text of comments and parameter files.
std::string FormatDateTime(std::time_t t);

}  // namespace rm
