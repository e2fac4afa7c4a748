#include "updates/PartialFile.h"

#include "support/TemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnvale {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class PartialFileTest : public testing::Test {
protected:
    [[nodiscard]] auto create(const char *name = "app.deb", std::int64_t length = 3) const {
        return PartialFile::create(QString::fromStdString(m_folder.path("downloads")), QLatin1String(name),
                                   length);
    }
    [[nodiscard]] std::set<std::string> files() const {
        std::set<std::string> names;
        std::error_code error;
        for (const auto &entry : std::filesystem::directory_iterator(m_folder.path("downloads"), error))
            names.insert(entry.path().filename());
        return names;
    }

    TemporaryFolder m_folder;
};

TEST_F(PartialFileTest, getsItsNameAtTheEnd) {
    const auto part = create();
    ASSERT_TRUE(part);
    EXPECT_THAT(files(), ElementsAre("app.deb.part"));
    struct stat status {};
    ASSERT_EQ(stat((*part)->path().toUtf8().constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u) << "for its user alone";
    ASSERT_TRUE((*part)->write("ab"));
    ASSERT_TRUE((*part)->write("c"));
    EXPECT_EQ((*part)->size(), 3);
    const auto path = (*part)->finish();
    ASSERT_TRUE(path);
    EXPECT_EQ(path->toStdString(), m_folder.path("downloads/app.deb"));
    EXPECT_EQ(readFile(path->toStdString()), "abc");
    EXPECT_THAT(files(), ElementsAre("app.deb"));
}

TEST_F(PartialFileTest, whatIsFinishedStays) {
    {
        const auto part = create();
        ASSERT_TRUE(part);
        ASSERT_TRUE((*part)->finish());
        (*part)->discard();
    }
    EXPECT_THAT(files(), ElementsAre("app.deb"));
}

TEST_F(PartialFileTest, whatIsNotFinishedGoes) {
    {
        const auto part = create();
        ASSERT_TRUE(part && (*part)->write("ab"));
    }
    EXPECT_THAT(files(), IsEmpty());
    const auto part = create();
    ASSERT_TRUE(part);
    (*part)->discard();
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(PartialFileTest, nothingThatIsThereIsTouched) {
    m_folder.write("downloads/app.deb", "mine");
    m_folder.write("downloads/app.deb.part", "mine, too");
    std::filesystem::create_symlink("/nonexistent/target", m_folder.path("downloads/app (1).deb.part"));
    {
        const auto part = create();
        ASSERT_TRUE(part);
        EXPECT_EQ((*part)->path().toStdString(), m_folder.path("downloads/app (2).deb.part"));
        ASSERT_TRUE((*part)->write("new"));
        const auto path = (*part)->finish();
        ASSERT_TRUE(path);
        EXPECT_EQ(path->toStdString(), m_folder.path("downloads/app (1).deb"));
    }
    EXPECT_EQ(readFile(m_folder.path("downloads/app.deb")), "mine");
    EXPECT_EQ(readFile(m_folder.path("downloads/app.deb.part")), "mine, too");
    EXPECT_THAT(files(), ElementsAre("app (1).deb", "app (1).deb.part", "app.deb", "app.deb.part"));
}

TEST_F(PartialFileTest, givesUpWhereEveryNameIsTaken) {
    m_folder.write("downloads/app.deb.part", "0");
    for (int i = 1; i < 100; ++i)
        m_folder.write("downloads/app (" + std::to_string(i) + ").deb.part", "x");
    const auto before = files();
    const auto part = create();
    ASSERT_FALSE(part);
    EXPECT_EQ(part.error().kind, UpdateFailure::Kind::cannotSave);
    EXPECT_EQ(files(), before);
}

TEST_F(PartialFileTest, aFolderThatCantBeUsedIsToldOf) {
    const std::string file = m_folder.write("downloads", "a file");
    const auto part = create();
    ASSERT_FALSE(part);
    EXPECT_EQ(part.error().kind, UpdateFailure::Kind::cannotSave);
    EXPECT_THAT(part.error().detail.toStdString(), HasSubstr(file + ": "));
    EXPECT_EQ(readFile(file), "a file");
}

TEST_F(PartialFileTest, aFolderWithoutRightsIsToldOf) {
    if (geteuid() == 0)
        GTEST_SKIP() << "root may write anywhere";
    std::filesystem::create_directory(m_folder.path("downloads"));
    std::filesystem::permissions(m_folder.path("downloads"), std::filesystem::perms::owner_read);
    const auto part = create();
    std::filesystem::permissions(m_folder.path("downloads"), std::filesystem::perms::owner_all);
    ASSERT_FALSE(part);
    EXPECT_EQ(part.error().kind, UpdateFailure::Kind::cannotSave);
}

TEST_F(PartialFileTest, roomIsLookedForBeforehand) {
    const auto part = create("app.deb", INT64_MAX);
    ASSERT_FALSE(part);
    EXPECT_EQ(part.error().kind, UpdateFailure::Kind::noRoom);
    EXPECT_THAT(files(), IsEmpty());
}

} // namespace
} // namespace tarnvale
