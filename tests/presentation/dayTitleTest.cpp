#include "presentation/dayTitle.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnvale {
namespace {

using testing::HasSubstr;
using testing::Not;

const QDate saturday(2025, 3, 1);

std::string titleIn(const char *locale) {
    return dayTitle(saturday, saturday.addDays(7), QLocale(QString::fromLatin1(locale))).toStdString();
}

TEST(DayTitleTest, theLastTwoDaysHaveNames) {
    EXPECT_EQ(dayTitle(saturday, saturday), "Today");
    EXPECT_EQ(dayTitle(saturday, saturday.addDays(1)), "Yesterday");
    EXPECT_EQ(dayTitle({2024, 12, 31}, {2025, 1, 1}), "Yesterday");
    EXPECT_EQ(dayTitle({2024, 2, 29}, {2024, 3, 1}), "Yesterday");
}

TEST(DayTitleTest, otherDaysAreDates) {
    const QLocale english("en_US");
    EXPECT_EQ(dayTitle(saturday, saturday.addDays(2), english), "Saturday, Mar 1");
    EXPECT_EQ(dayTitle(saturday, saturday.addYears(1), english), "Saturday, Mar 1");
    EXPECT_EQ(dayTitle(saturday, saturday.addDays(-1), english), "Saturday, Mar 1");
}

TEST(DayTitleTest, aPatternLosesTheYearAndWhatBelongsToIt) {
    const std::vector<std::pair<const char *, const char *>> rows{
        {"dddd, MMMM d, yyyy", "dddd, MMM d"},
        {"dddd, d MMMM yyyy", "dddd, d MMM"},
        {"dddd d MMMM yyyy", "dddd d MMM"},
        {"dddd, d. MMMM yyyy.", "dddd, d. MMM"},
        {"dddd, d 'de' MMMM 'de' yyyy", "dddd, d 'de' MMM"},
        {"dddd, d MMMM yyyy 'г'.", "dddd, d MMM"},
        {"dddd, d'mh' MMMM yyyy", "dddd, d'mh' MMM"},
        {"yyyy年M月d日dddd", "M月d日dddd"},
        {"yyyy년 M월 d일 dddd", "M월 d일 dddd"},
        {"yyyy 'm'. MMMM d 'd'., dddd", "MMM d 'd'., dddd"},
        {"yyyy('e')'ko' MMMM'ren' d('a'), dddd", "MMM'ren' d('a'), dddd"},
    };
    for (const auto &[pattern, shorter] : rows)
        EXPECT_EQ(dayPattern(QString::fromUtf8(pattern)).toStdString(), shorter);
}

TEST(DayTitleTest, aYearBesideTheWeekdayLeavesThemApart) {
    const std::vector<std::pair<const char *, const char *>> rows{
        {"d MMMM yyyy dddd", "d MMM dddd"},
        {"d MMMM yyyy, dddd", "d MMM, dddd"},
        {"d 'de' MMMM 'de' 'su' yyyy, 'de' dddd", "d 'de' MMM, 'de' dddd"},
        {"dddd, yyyy MMMM dd", "dddd, MMM dd"},
        {"dddd, yyyy. 'gada' d. MMMM", "dddd, d. MMM"},
    };
    for (const auto &[pattern, shorter] : rows)
        EXPECT_EQ(dayPattern(QString::fromUtf8(pattern)).toStdString(), shorter);
}

TEST(DayTitleTest, anUnusualPatternIsStillOne) {
    const std::vector<std::pair<const char *, const char *>> rows{
        {"dd MMMM yyyy", "dddd, dd MMM"},
        {"dddd, d MMM yy", "dddd, d MMM"},
        {"dddd d MMMM", "dddd d MMM"},
        {"ddddyyyyMMMMd", "ddddMMMd"},
        {"ddddMMMMyyyy", "ddddMMM"},
        {"yyyy", "dddd, "},
        {"", "dddd, "},
        {"dddd 'open", "dddd 'open"},
    };
    for (const auto &[pattern, shorter] : rows)
        EXPECT_EQ(dayPattern(QString::fromUtf8(pattern)).toStdString(), shorter);
}

TEST(DayTitleTest, everyLocaleHasItsOwnOrder) {
    EXPECT_EQ(titleIn("en_GB"), "Saturday, 1 Mar");
    EXPECT_EQ(titleIn("de_DE"), "Samstag, 1. März");
    EXPECT_EQ(titleIn("fr_FR"), "samedi 1 mars");
    EXPECT_EQ(titleIn("ja_JP"), "3月1日土曜日");
}

TEST(DayTitleTest, noLocaleLosesItsWeekdayOrKeepsItsYear) {
    for (const QLocale &locale :
         QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory)) {
        const std::string text = dayTitle(saturday, saturday.addDays(7), locale).toStdString();
        EXPECT_THAT(text, Not(HasSubstr(locale.toString(saturday, u"yyyy").toStdString())))
            << locale.name().toStdString();
        EXPECT_THAT(text, HasSubstr(locale.toString(saturday, u"dddd").toStdString()));
        EXPECT_THAT(text, HasSubstr(locale.toString(saturday, u"d").toStdString()));
    }
}

TEST(DayTitleTest, aDayThatIsNoneHasNoTitle) {
    EXPECT_EQ(dayTitle({}, saturday), "");
}

} // namespace
} // namespace tarnvale
