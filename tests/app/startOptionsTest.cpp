#include "app/startOptions.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(StartOptions, sayWhatIsToHappen) {
    struct Row {
        QStringList words;
        StartOptions options;
    };
    const QString service = QStringLiteral("--gapplication-service");
    const QString toggle = QStringLiteral("--toggle-panel");
    const QString list = QStringLiteral("--list");
    const std::vector<Row> rows{
        {{}, {}},
        {{service}, {.isService = true, .action = {}}},
        {{toggle}, {.isService = false, .action = QStringLiteral("toggle-panel")}},
        {{list}, {.isService = false, .action = QStringLiteral("list")}},
        {{toggle, list}, {.isService = false, .action = QStringLiteral("list")}},
        {{service, toggle}, {.isService = true, .action = QStringLiteral("toggle-panel")}},
    };
    for (const auto &[words, options] : rows)
        EXPECT_EQ(parseStartOptions(words), options) << words.join(QLatin1Char(' ')).toStdString();
}

TEST(StartOptions, areRefusedWithAWordThatIsNone) {
    for (const char *word :
         {"", "-", "--", "list", "--List", "--list=1", "toggle-panel", "--gapplication-services"}) {
        const auto options = parseStartOptions({QStringLiteral("--list"), QLatin1String(word)});
        ASSERT_FALSE(options.has_value()) << word;
        EXPECT_TRUE(options.error().contains(QLatin1Char('\'') + QLatin1String(word) + QLatin1Char('\'')));
        EXPECT_TRUE(options.error().contains(QStringLiteral("tarnctl help")));
    }
}

} // namespace
} // namespace tarnvale
