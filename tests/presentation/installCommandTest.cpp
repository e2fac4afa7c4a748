#include "presentation/installCommand.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(InstallCommandTest, thePathIsQuotedForTheShell) {
    EXPECT_EQ(installCommand("/usr/bin/tarnvale"), "sudo ln -sf '/usr/bin/tarnvale' /usr/local/bin/tarnctl");
    EXPECT_EQ(installCommand("/opt/My Tools/$HOME/`x`/tarnvale"),
              "sudo ln -sf '/opt/My Tools/$HOME/`x`/tarnvale' /usr/local/bin/tarnctl");
}

TEST(InstallCommandTest, aQuoteInThePathDoesNotEndTheWord) {
    EXPECT_EQ(installCommand("/opt/it's''/tarnvale"),
              "sudo ln -sf '/opt/it'\\''s'\\'''\\''/tarnvale' /usr/local/bin/tarnctl");
    EXPECT_EQ(installCommand("'"), "sudo ln -sf ''\\''' /usr/local/bin/tarnctl");
}

} // namespace
} // namespace tarnvale
