#include "presentation/applicationFileName.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(ApplicationFileNameTest, theExtensionAndTheFoldersGo) {
    EXPECT_EQ(applicationFileName("/Applications/Some Editor.app"), "Some Editor");
    EXPECT_EQ(applicationFileName("/Applications/Some Editor.app/"), "Some Editor");
    EXPECT_EQ(applicationFileName("/usr/share/applications/org.example.Editor.desktop"),
              "org.example.Editor");
    EXPECT_EQ(applicationFileName("editor.desktop"), "editor");
}

TEST(ApplicationFileNameTest, aNameWithoutExtensionStays) {
    EXPECT_EQ(applicationFileName("/opt/v1.2/editor"), "editor");
    EXPECT_EQ(applicationFileName("/home/me/.desktop"), ".desktop");
    EXPECT_EQ(applicationFileName("/"), "/");
    EXPECT_EQ(applicationFileName(""), "");
}

} // namespace
} // namespace tarnvale
