#include "platform/linux/SettingsFile.h"

#include "support/TemporaryFolder.h"
#include "support/TestProcess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdint>
#include <filesystem>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnvale {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;
using testing::Pair;

class SettingsFileTest : public testing::Test {
protected:
    TemporaryFolder m_folder;
    std::string m_path = m_folder.path("config/tarnvale/tarnvale.conf");
    SettingsFile m_settings{m_path};

    void write(std::string_view content) const { m_folder.write("config/tarnvale/tarnvale.conf", content); }
};

/// No file grows beyond `bytes` while this lives, as on a full disk.
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes) : m_handler(signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &m_before);
        signal(SIGXFSZ, m_handler);
    }

private:
    rlimit m_before{};
    sighandler_t m_handler;
};

TEST_F(SettingsFileTest, everyKindComesBackInANewProgram) {
    std::string allBytes;
    for (int byte = 0; byte < 256; ++byte)
        allBytes += static_cast<char>(byte);
    const std::map<std::string, std::string> paths{{"3000", "/a b=\"\\\n"}, {"8080", "/\u00e4"}};
    ASSERT_TRUE(m_settings.setIntegers("watchedPorts", {3000, -1, INT64_MAX, INT64_MIN}));
    ASSERT_TRUE(m_settings.setTexts("healthPaths", paths));
    ASSERT_TRUE(m_settings.setBytes("events", allBytes));
    ASSERT_TRUE(m_settings.setBytes("stacks", " [{\"id\":\"\\/\"}] "));
    ASSERT_TRUE(m_settings.setFlag("showWebPreviews", false));
    ASSERT_TRUE(m_settings.setFlag("hasSeenWelcome", true));

    const SettingsFile again(m_path);
    EXPECT_THAT(again.integers("watchedPorts"), Optional(ElementsAre(3000, -1, INT64_MAX, INT64_MIN)));
    EXPECT_EQ(again.texts("healthPaths"), paths);
    EXPECT_EQ(again.bytes("events"), allBytes);
    EXPECT_EQ(again.bytes("stacks"), " [{\"id\":\"\\/\"}] ");
    EXPECT_EQ(again.flag("showWebPreviews"), false);
    EXPECT_EQ(again.flag("hasSeenWelcome"), true);
}

TEST_F(SettingsFileTest, emptyValuesAreNotAbsent) {
    ASSERT_TRUE(m_settings.setIntegers("a", {}));
    ASSERT_TRUE(m_settings.setTexts("b", {}));
    ASSERT_TRUE(m_settings.setBytes("c", ""));
    EXPECT_THAT(m_settings.integers("a"), Optional(IsEmpty()));
    EXPECT_THAT(m_settings.texts("b"), Optional(IsEmpty()));
    EXPECT_EQ(m_settings.bytes("c"), "");
}

TEST_F(SettingsFileTest, withoutAFileEverythingIsAbsent) {
    EXPECT_EQ(m_settings.integers("watchedPorts"), std::nullopt);
    EXPECT_EQ(m_settings.texts("healthPaths"), std::nullopt);
    EXPECT_EQ(m_settings.bytes("events"), std::nullopt);
    EXPECT_EQ(m_settings.flag("showWebPreviews"), std::nullopt);
    EXPECT_TRUE(m_settings.remove("events"));
    EXPECT_FALSE(fs::exists(m_path)) << "there was nothing to write";
}

TEST_F(SettingsFileTest, aValueOfAnotherKindIsAbsentAndStays) {
    struct Row {
        const char *value;
        const char *kinds; ///< as which it can be read: i, t, b, f
        const char *reason;
    };
    const Row rows[]{
        {"[1,\"2\",3]", "", "a text among numbers"},
        {"[1,2.5]", "", "a fraction"},
        {"[1,1e40]", "", "no number of 64 bits"},
        {"[1,[2]]", "", "a list in a list"},
        {"[1,null]", "", "null"},
        {"[true]", "", "a Boolean among numbers"},
        {"[1,2", "", "cut short"},
        {"{\"3000\":\"/a\",\"1\":2}", "", "a number among texts"},
        {"{\"3000\":\"/a\"", "", "cut short"},
        {"True", "", "not as it is written"},
        {"1", "", "a number alone"},
        {"", "", "nothing at all"},
        {"null", "", "null alone"},
        {"[1, 2]", "i", "blanks are allowed"},
        {"{ }", "t", "blanks are allowed"},
        {"@[1]", "b", "bytes that hold a list"},
        {" true ", "f", "blanks around"},
        {"\xff\xfe[1]", "", "odd bytes"},
    };
    for (const Row &row : rows) {
        write("x=" + std::string(row.value) + "\n");
        const std::string kinds = row.kinds;
        EXPECT_EQ(m_settings.integers("x").has_value(), kinds == "i") << row.reason;
        EXPECT_EQ(m_settings.texts("x").has_value(), kinds == "t") << row.reason;
        EXPECT_EQ(m_settings.bytes("x").has_value(), kinds == "b") << row.reason;
        EXPECT_EQ(m_settings.flag("x").has_value(), kinds == "f") << row.reason;
        ASSERT_TRUE(m_settings.setFlag("y", true));
        EXPECT_EQ(readFile(m_path), "x=" + std::string(row.value) + "\ny=true\n") << row.reason;
    }
}

TEST_F(SettingsFileTest, whatIsNotUnderstoodIsKept) {
    const std::string garbage("# mine\n[section]\n\n\x01\xff\0=\nlastKey", 30);
    write(garbage);
    ASSERT_TRUE(m_settings.setFlag("showAll", true));
    EXPECT_EQ(readFile(m_path), garbage + "\nshowAll=true\n");
    ASSERT_TRUE(m_settings.remove("showAll"));
    EXPECT_EQ(readFile(m_path), garbage + "\n");
}

TEST_F(SettingsFileTest, aValueIsReplacedWhereItStands) {
    write("a=true\nab=1\nb=true\na=false\r\n");
    EXPECT_EQ(m_settings.flag("a"), true) << "the first counts";
    ASSERT_TRUE(m_settings.setFlag("a", false));
    EXPECT_EQ(readFile(m_path), "a=false\nab=1\nb=true\n");
    ASSERT_TRUE(m_settings.remove("b"));
    EXPECT_EQ(readFile(m_path), "a=false\nab=1\n");
    EXPECT_EQ(m_settings.bytes("ab"), std::nullopt);
}

TEST_F(SettingsFileTest, linesMayEndAsOnWindows) {
    write("a=true\r\nb=@x \r\nc=[1]\r\n");
    EXPECT_EQ(m_settings.flag("a"), true);
    EXPECT_EQ(m_settings.bytes("b"), "x ");
    EXPECT_THAT(m_settings.integers("c"), Optional(ElementsAre(1)));
}

TEST_F(SettingsFileTest, aFileCutAnywhereNeverStopsTheProgram) {
    const std::string whole =
        "watchedPorts=[3000,5173]\nhealthPaths={\"1\":\"/a\"}\nevents=@%00%5B\nf=true\n";
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        write(whole.substr(0, length));
        const auto ports = m_settings.integers("watchedPorts");
        EXPECT_EQ(ports.has_value(), length >= 24) << length;
        EXPECT_EQ(m_settings.flag("f").has_value(), length >= whole.size() - 1) << length;
        static_cast<void>(m_settings.bytes("events"));
        ASSERT_TRUE(m_settings.setFlag("new", true)) << length;
        EXPECT_EQ(m_settings.flag("new"), true) << length;
    }
}

TEST_F(SettingsFileTest, aFullDiskLosesNothing) {
    ASSERT_TRUE(m_settings.setIntegers("watchedPorts", {3000}));
    const std::string before = readFile(m_path);
    {
        const FullDisk full(100);
        EXPECT_FALSE(m_settings.setBytes("events", std::string(5000, 'x')));
        EXPECT_FALSE(m_settings.setBytes("events", std::string(200'000, 'x')));
        EXPECT_EQ(m_settings.bytes("events"), std::nullopt);
        EXPECT_TRUE(m_settings.setFlag("small", true));
    }
    EXPECT_EQ(readFile(m_path), before + "small=true\n");
    EXPECT_EQ(std::distance(fs::directory_iterator(fs::path(m_path).parent_path()), {}), 1)
        << "no part is left behind";
    EXPECT_TRUE(m_settings.setBytes("events", std::string(5000, 'x'))) << "it works again with room";
}

TEST_F(SettingsFileTest, aDiskThatIsReallyFullLosesNothing) {
    const std::string disk = m_folder.path("disk");
    fs::create_directory(disk);
    if (mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=64k") != 0)
        GTEST_SKIP() << "only root can mount a small disk";
    SettingsFile settings(disk + "/tarnvale.conf");
    EXPECT_TRUE(settings.setFlag("a", true));
    EXPECT_FALSE(settings.setBytes("events", std::string(200'000, 'x')));
    EXPECT_EQ(settings.flag("a"), true);
    EXPECT_EQ(readFile(disk + "/tarnvale.conf"), "a=true\n");
    EXPECT_EQ(umount(disk.c_str()), 0);
}

TEST_F(SettingsFileTest, aReadOnlyHomeLosesNothing) {
    ASSERT_TRUE(m_settings.setFlag("a", true));
    const std::string folder = fs::path(m_path).parent_path();
    chmod(folder.c_str(), 0555);
    chmod(m_folder.path().c_str(), 0755);
    // Root may write everywhere, so another user tries.
    const bool isRoot = geteuid() == 0;
    if (isRoot) {
        ASSERT_EQ(seteuid(65534), 0);
    }
    EXPECT_FALSE(m_settings.setFlag("a", false));
    EXPECT_FALSE(m_settings.remove("a"));
    if (isRoot) {
        ASSERT_EQ(seteuid(0), 0);
    }
    chmod(folder.c_str(), 0755);
    EXPECT_EQ(readFile(m_path), "a=true\n");
}

TEST_F(SettingsFileTest, aFileThatCannotBeReadIsNotReplaced) {
    write("a=true\n");
    chmod(m_path.c_str(), 0);
    fs::permissions(fs::path(m_path).parent_path(), fs::perms::all);
    chmod(m_folder.path().c_str(), 0755);
    const bool isRoot = geteuid() == 0;
    if (isRoot) {
        ASSERT_EQ(seteuid(65534), 0);
    }
    EXPECT_EQ(m_settings.flag("a"), std::nullopt);
    EXPECT_FALSE(m_settings.setFlag("b", true));
    if (isRoot) {
        ASSERT_EQ(seteuid(0), 0);
    }
    chmod(m_path.c_str(), 0600);
    EXPECT_EQ(readFile(m_path), "a=true\n");
}

TEST_F(SettingsFileTest, otherThingsInThePlaceOfTheFileStay) {
    fs::create_directories(m_path);
    EXPECT_EQ(m_settings.flag("a"), std::nullopt);
    EXPECT_FALSE(m_settings.setFlag("a", true));
    EXPECT_TRUE(fs::is_directory(m_path));
    fs::remove(m_path);

    ASSERT_EQ(mkfifo(m_path.c_str(), 0600), 0);
    EXPECT_EQ(m_settings.flag("a"), std::nullopt) << "nobody waits for a writer";
    EXPECT_FALSE(m_settings.setFlag("a", true));
    EXPECT_TRUE(fs::is_fifo(m_path));
    fs::remove(m_path);

    write(std::string((16u << 20) + 1, 'x'));
    EXPECT_FALSE(m_settings.setFlag("a", true)) << "too large to be ours";
    EXPECT_EQ(fs::file_size(m_path), (16u << 20) + 1);
}

TEST_F(SettingsFileTest, aFileInThePlaceOfAFolderIsAFailure) {
    m_folder.write("config/tarnvale", "no folder");
    EXPECT_EQ(m_settings.flag("a"), std::nullopt);
    EXPECT_FALSE(m_settings.setFlag("a", true));
    EXPECT_EQ(readFile(m_folder.path("config/tarnvale")), "no folder");
}

TEST_F(SettingsFileTest, aSymbolicLinkStaysOne) {
    const std::string target = m_folder.write("dotfiles/tarnvale.conf", "a=true\n");
    fs::create_directories(fs::path(m_path).parent_path());
    fs::create_symlink("../../dotfiles/tarnvale.conf", m_path);
    ASSERT_TRUE(m_settings.setFlag("b", true));
    EXPECT_TRUE(fs::is_symlink(m_path));
    EXPECT_EQ(readFile(target), "a=true\nb=true\n");
}

TEST_F(SettingsFileTest, aDanglingLinkGetsItsTarget) {
    fs::create_directories(fs::path(m_path).parent_path());
    fs::create_symlink(m_folder.path("later/tarnvale.conf"), m_path);
    EXPECT_EQ(m_settings.flag("a"), std::nullopt);
    ASSERT_TRUE(m_settings.setFlag("a", true));
    EXPECT_TRUE(fs::is_symlink(m_path));
    EXPECT_EQ(readFile(m_folder.path("later/tarnvale.conf")), "a=true\n");
}

TEST_F(SettingsFileTest, aLinkThatLeadsToItselfIsAFailure) {
    fs::create_directories(fs::path(m_path).parent_path());
    fs::create_symlink(m_path, m_path);
    EXPECT_EQ(m_settings.flag("a"), std::nullopt);
    EXPECT_FALSE(m_settings.setFlag("a", true));
    EXPECT_TRUE(fs::is_symlink(m_path));
}

TEST_F(SettingsFileTest, onlyItsOwnerReadsANewFileAndAnOldOneKeepsItsPermissions) {
    ASSERT_TRUE(m_settings.setFlag("a", true));
    struct stat status {};
    ASSERT_EQ(stat(m_path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777u, 0600u);
    chmod(m_path.c_str(), 0640);
    ASSERT_TRUE(m_settings.setFlag("a", false));
    ASSERT_EQ(stat(m_path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777u, 0640u);
}

TEST_F(SettingsFileTest, theStandardPathFollowsTheEnvironment) {
    const char *before = std::getenv("XDG_CONFIG_HOME");
    const std::string kept = before != nullptr ? before : "";
    setenv("XDG_CONFIG_HOME", m_folder.path("config").c_str(), 1);
    EXPECT_EQ(SettingsFile::standardPath(), m_path);
    if (before != nullptr)
        setenv("XDG_CONFIG_HOME", kept.c_str(), 1);
    else
        unsetenv("XDG_CONFIG_HOME");
}

} // namespace
} // namespace tarnvale
