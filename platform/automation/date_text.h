// Dates: a DATE is days since 1899-12-30 with the time of day as a fraction,
// which counts away from zero: -5.25 is 06:00 on day -5.
#ifndef ORVIX_PLATFORM_AUTOMATION_DATE_TEXT_H
#define ORVIX_PLATFORM_AUTOMATION_DATE_TEXT_H

#include <string>

#include "orvix/text.h"

namespace Orvix {

struct DateParts {
  int year;   // 100 to 9999
  int month;  // 1 to 12
  int day;    // 1 to 31
  int hour;
  int minute;
  int second;
};

// Whether a number of days lies on a day from 1/1/100 to 12/31/9999.
bool IsDateInRange(double date) noexcept;

// Rounded to the nearest second. E_INVALIDARG out of range.
HRESULT DecodeDate(double date, DateParts* parts) noexcept;
// The day as a date; E_INVALIDARG when the calendar has no such day.
HRESULT EncodeDay(int year, int month, int day, double* date) noexcept;
// A day at `seconds` after its midnight, which count away from zero.
double WithTime(double day, int seconds) noexcept;

// "M/D/YYYY H:MM:SS AM": the date alone when there is no fraction, the time
// alone on day 0. E_INVALIDARG out of range.
HRESULT DateText(double date, std::string* text);

// Reads a date (month-day-year, year-month-day or day-month-year, names of
// months, two-digit years 1930 to 2029), a time, or both. DISP_E_TYPEMISMATCH
// when the text is neither.
HRESULT ParseDate(TextView text, double* date) noexcept;

}  // namespace Orvix

#endif
