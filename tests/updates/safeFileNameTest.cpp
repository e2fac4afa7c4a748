#include "updates/safeFileName.h"

#include <gtest/gtest.h>

#include <vector>

namespace tarnvale {
namespace {

TEST(SafeFileNameTest, isTheLastPartOfThePath) {
    const std::vector<std::pair<std::string, std::string>> rows{
        {"https://a.example/dl/Tarnvale-2.0_amd64.deb", "Tarnvale-2.0_amd64.deb"},
        {"https://a.example/Tarnvale%202.0.AppImage?token=x#y", "Tarnvale 2.0.AppImage"},
        {"https://a.example/", "Tarnvale-update"},
        {"https://a.example", "Tarnvale-update"},
        {"https://a.example/dl/", "Tarnvale-update"},
        {"https://a.example/..", "Tarnvale-update"},
        {"https://a.example/.", "Tarnvale-update"},
        {"https://a.example/%2e%2e%2f%2e%2e%2fetc%2fpasswd", "passwd"},
        {"https://a.example/a%2Fb.deb", "b.deb"},
        {"https://a.example/..%5C..%5Cx.deb", "_.._x.deb"},
        {"https://a.example/.bashrc", "bashrc"},
        {"https://a.example/--help.deb", "help.deb"},
        {"https://a.example/.-.x", "x"},
        {"https://a.example/a%00b.deb", "a_b.deb"},
        {"https://a.example/a%0Ab.deb", "a_b.deb"},
        {"https://a.example/%E2%80%AEdeb.x", "_deb.x"},
        {"https://a.example/%C3%A4.deb", "_.deb"},
        {"https://a.example/a:b*c?.deb", "a_b_c"},
        {"https://a.example/%20%20", "Tarnvale-update"},
        {"https://a.example/%FF%FE", "__"},
        {"", "Tarnvale-update"},
    };
    for (const auto &[url, name] : rows)
        EXPECT_EQ(safeFileName(url).toStdString(), name) << url;
}

TEST(SafeFileNameTest, longNamesKeepTheirEndings) {
    const QString name = safeFileName("https://a.example/" + std::string(1000, 'x') + ".tar.gz");
    EXPECT_EQ(name.size(), 120);
    EXPECT_TRUE(name.endsWith(QStringLiteral("x.tar.gz")));
    EXPECT_EQ(safeFileName("https://a.example/x." + std::string(1000, 'y')).size(), 120);
}

TEST(SafeFileNameTest, numbersStandBeforeTheEndings) {
    const auto numbered = [](const char *name, int number) {
        return numberedName(QLatin1String(name), number).toStdString();
    };
    EXPECT_EQ(numbered("a.deb", 0), "a.deb");
    EXPECT_EQ(numbered("a.deb", 1), "a (1).deb");
    EXPECT_EQ(numbered("a.tar.gz", 2), "a (2).tar.gz");
    EXPECT_EQ(numbered("Tarnvale-2.0_amd64.deb", 12), "Tarnvale-2.0_amd64 (12).deb");
    EXPECT_EQ(numbered("update", 1), "update (1)");
    EXPECT_EQ(numbered("a.b-c-d-e-f-g-h-i", 1), "a.b-c-d-e-f-g-h-i (1)");
}

} // namespace
} // namespace tarnvale
