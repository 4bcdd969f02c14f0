// Dates to text and text to dates.
#include <gtest/gtest.h>

#include "tests/platform/automation/values.h"

namespace Orvix::testing {
namespace {

HRESULT DateOf(TextView text, double* date) {
  Value to;
  const Value from = String(text);
  const HRESULT result = VariantChangeType(&to, &from, 0, VT_DATE);
  *date = to.dblVal;
  return result;
}

std::string TextOfDate(double date) {
  Value to;
  const Value from = Double(date, VT_DATE);
  const HRESULT result = VariantChangeType(&to, &from, 0, VT_BSTR);
  return result == S_OK ? Utf8(ViewOf(to.bstrVal)) : "failed";
}

TEST(DateToText, ShowsDateTimeOrBoth) {
  struct {
    double date;
    const char* text;
  } const cases[] = {
      {0, "12:00:00 AM"},
      {0.25, "6:00:00 AM"},
      {-0.25, "6:00:00 AM"},
      {365, "12/30/1900"},
      {-657434, "1/1/100"},
      {2958465, "12/31/9999"},
      {2958465.99999999, "12/31/9999 11:59:59 PM"},
      {3.34, "1/2/1900 8:09:36 AM"},
      {1461.5, "12/31/1903 12:00:00 PM"},
      {-5.25, "12/25/1899 6:00:00 AM"},
      {-49192.24, "4/24/1765 5:45:36 AM"},
      {29221.9888884444, "1/1/1980 11:44:00 PM"},
      {-1.9999999, "12/30/1899 12:00:00 AM"},
      {36584, "2/28/2000"},
      {36585, "2/29/2000"},
      {36586, "3/1/2000"},
  };
  for (const auto& c : cases) EXPECT_EQ(TextOfDate(c.date), c.text) << c.date;
}

TEST(DateToText, RefusesDaysOutOfRange) {
  Value to;
  for (const double date : {-657435.0, 2958466.0, 1e300}) {
    const Value from = Double(date, VT_DATE);
    EXPECT_EQ(VariantChangeType(&to, &from, 0, VT_BSTR), E_INVALIDARG);
  }
}

TEST(TextToDate, ReadsDatesAndTimes) {
  struct {
    TextView text;
    double date;
  } const cases[] = {
      {u"6/30/2011 01:20:34", 40724.0559490741},
      {u"01:20:34 6/30/2011", 40724.0559490741},
      {u"1/2/1970", 25570},
      {u"13-1-1970", 25581},
      {u"1970-1-13", 25581},
      {u"14 2 3", 41673},
      {u"2 14 3", 37666},
      {u"2013-05-14 02:04:12", 41408.08625},
      {u"2 January, 1970", 25570},
      {u"2 Jan 1970", 25570},
      {u"2-Jan-1970", 25570},
      {u"2/JAN/1970", 25570},
      {u"January 2, 1970", 25570},
      {u"1970 jan 2", 25570},
      {u"  1 / 2 / 1970  ", 25570},
      {u"1 1 100", -657434},
      {u"12/31/9999", 2958465},
      {u"1/1/29", 47119},
      {u"1/1/30", 10959},
      {u"1/1/99", 36161},
      {u"2/29/2000", 36585},
      {u"2/1970", 25600},
      {u"30 2", 10990},
      {u"Jan 35", 12785},
      {u"Feb 30", 10990},
      {u"12/25/1899 6:00", -5.25},
      {u"0:00", 0},
      {u"0.1", 1 / 1440.0},
      {u"2.5", 125 / 1440.0},
      {u"1.5.2", 3902 / 86400.0},
      {u"1 2 3 4.5", 37623 + 245 / 1440.0},
      {u"3 am", 0.125},
      {u"3am", 0.125},
      {u"3:30p", 0.645833333333333},
      {u"12 AM", 0},
      {u"12:30 a", 30 / 1440.0},
      {u"12 pm", 0.5},
      {u"00:00 pm", 0.5},
      {u"13:00 AM", 0.541666666666667},
      {u"23:59:59", 86399 / 86400.0},
  };
  for (const auto& c : cases) {
    double date = -1;
    EXPECT_EQ(DateOf(c.text, &date), S_OK) << Utf8(c.text);
    EXPECT_NEAR(date, c.date, 1e-10) << Utf8(c.text);
  }
}

TEST(TextToDate, DayAndMonthBelongToTheCurrentYear) {
  for (const auto& [text, start] : {std::pair<TextView, const char*>{u"1 2", "1/2/"},
                                    {u"2 1", "2/1/"},
                                    {u"14 1", "1/14/"},
                                    {u"Mar 14", "3/14/"},
                                    {u"14 march", "3/14/"}}) {
    double date = 0;
    EXPECT_EQ(DateOf(text, &date), S_OK) << Utf8(text);
    EXPECT_TRUE(TextOfDate(date).starts_with(start)) << Utf8(text) << " is " << TextOfDate(date);
    EXPECT_GT(date, 43831) << Utf8(text);  // a year after 2019
  }
  double time_first = 0;
  double date = 0;
  EXPECT_EQ(DateOf(u"3 am 1 2", &time_first), S_OK);
  EXPECT_EQ(DateOf(u"1 2", &date), S_OK);
  EXPECT_EQ(time_first, date + 0.125);
}

TEST(TextToDate, RefusesEverythingElse) {
  const TextView cases[] = {
      u"",           u" ",
      u"0",          u"1",
      u"0:60",       u"24:00",
      u"24.00",      u"0.60",
      u"1 2 am",     u"32 49",
      u".0",         u"-1.1",
      u"1;2;3",      u"(1:2)",
      u"02.01.1970", u"True",
      u"13/32/2014", u"2/29/1900",
      u"1/1/99999",  u"1/2/",
      u"1//2",       u"1,2,1970",
      u"1 2 3 4",    u"1:2 3:4",
      u"1:2:3:4",    u"1:",
      u"01:02:03.5", u"Jan",
      u"Jan Feb 1",  u"Jan 1 2 3",
      u"am",         u"1/2/1970-3:04",
      u"1 3:00 2",   u"1/2/1970 3:04x",
      u"25 am",      u"1/0/1970",
      u"0/1/1970",   u"Monday",
      u"January 2,", u"2013-05-14T02:04:12",
  };
  for (const TextView text : cases) {
    double date = 0;
    EXPECT_EQ(DateOf(text, &date), DISP_E_TYPEMISMATCH) << Utf8(text);
  }
}

// Every day of the calendar reads back as itself, midnight and one second before.
TEST(TextToDate, ReadsBackWhatIsShown) {
  for (int day = -657434; day <= 2958465; day += 97) {
    if (day == 0) continue;
    double date = 0;
    ASSERT_EQ(DateOf(FromUtf8(TextOfDate(day)), &date), S_OK) << day;
    ASSERT_EQ(date, day);
    const double late = day < 0 ? day - 86399 / 86400.0 : day + 86399 / 86400.0;
    ASSERT_EQ(DateOf(FromUtf8(TextOfDate(late)), &date), S_OK) << day;
    ASSERT_EQ(date, late);
  }
}

}  // namespace
}  // namespace Orvix::testing
