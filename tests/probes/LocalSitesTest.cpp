#include "probes/LocalSites.h"

#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>

namespace tarnvale::LocalSites {

static void PrintTo(const Site &site, std::ostream *stream) {
    *stream << site.domain << " at " << site.url;
}

} // namespace tarnvale::LocalSites

namespace tarnvale {
namespace {

using LocalSites::Site;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

const std::string herd = "Library/Application Support/Herd/config/valet";
const std::string valet = ".config/valet";
const std::string linuxValet = ".valet";

class LocalSitesTest : public testing::Test {
protected:
    TemporaryFolder home;

    void makeFolder(const std::string &name) const { std::filesystem::create_directories(home.path(name)); }

    /// Writes a "config.json" that parks the folder "Sites".
    void configure(const std::string &folder, const std::string &key = "tld",
                   const std::string &tld = "test") const {
        home.write(folder + "/config.json",
                   R"({"paths": [")" + home.path("Sites") + R"("], ")" + key + R"(": ")" + tld + R"("})");
    }

    [[nodiscard]] std::vector<Site> all() const { return LocalSites::all(home.path()); }
    [[nodiscard]] std::vector<Site> parked(const std::string &tld = "test") const {
        return LocalSites::sites({home.path("Sites")}, tld, home.path("Nginx"));
    }
};

TEST_F(LocalSitesTest, withoutAnEnvironmentThereAreNone) {
    EXPECT_THAT(all(), IsEmpty());
}

TEST_F(LocalSitesTest, aParkedFolderIsASite) {
    makeFolder("Sites/Shop");
    for (const std::string &folder : {herd, valet, linuxValet}) {
        configure(folder);
        EXPECT_THAT(all(), ElementsAre(Site{"shop.test", "http://shop.test"})) << folder;
        std::filesystem::remove(home.path(folder + "/config.json"));
    }
}

TEST_F(LocalSitesTest, anItemOfTheDomainsOrTheFoldersNameSecuresIt) {
    makeFolder("Sites/Shop");
    configure(valet);
    home.write(valet + "/Nginx/shop.test", "");
    EXPECT_THAT(all(), ElementsAre(Site{"shop.test", "https://shop.test"}));
    std::filesystem::remove(home.path(valet + "/Nginx/shop.test"));
    makeFolder(valet + "/Nginx/Shop");
    EXPECT_THAT(all(), ElementsAre(Site{"shop.test", "https://shop.test"}));
    std::filesystem::remove(home.path(valet + "/Nginx/Shop"));
    home.write(valet + "/Nginx/shop", "");
    EXPECT_THAT(all(), ElementsAre(Site{"shop.test", "http://shop.test"})) << "neither name";
}

TEST_F(LocalSitesTest, aSiteOfTwoEnvironmentsIsListedOnce) {
    makeFolder("Sites/shop");
    configure(herd);
    configure(valet);
    configure(linuxValet, "domain");
    EXPECT_THAT(all(), ElementsAre(Site{"shop.test", "http://shop.test"}));
}

TEST_F(LocalSitesTest, twoSchemesOfOneDomainAreTwoSites) {
    makeFolder("Sites/shop");
    configure(herd);
    configure(valet);
    home.write(valet + "/Nginx/shop.test", "");
    EXPECT_THAT(all(),
                ElementsAre(Site{"shop.test", "http://shop.test"}, Site{"shop.test", "https://shop.test"}));
}

TEST_F(LocalSitesTest, theyAreSortedByDomain) {
    for (const char *name : {"b", "a", "c-1", "a.b", "1"})
        makeFolder(std::string("Sites/") + name);
    configure(herd);
    configure(valet, "tld", "dev");
    std::vector<std::string> domains;
    for (const Site &site : all())
        domains.push_back(site.domain);
    EXPECT_THAT(domains, SizeIs(10));
    EXPECT_TRUE(std::ranges::is_sorted(domains));
}

TEST_F(LocalSitesTest, onlyFoldersOfPlainNamesAreSites) {
    for (const char *name : {"my-app.v2", "my_app", "my app", ".git", "café", "UPPER"})
        makeFolder(std::string("Sites/") + name);
    home.write("Sites/file", "");
    std::filesystem::create_directory_symlink(home.path("Sites/UPPER"), home.path("Sites/link"));
    std::filesystem::create_symlink(home.path("nowhere"), home.path("Sites/dangling"));
    EXPECT_THAT(parked(), UnorderedElementsAre(Site{"my-app.v2.test", "http://my-app.v2.test"},
                                               Site{"upper.test", "http://upper.test"},
                                               Site{"link.test", "http://link.test"}));
}

TEST_F(LocalSitesTest, aDomainThatMakesNoUrlIsSkipped) {
    makeFolder("Sites/shop");
    for (const char *tld :
         {"te st", "test/x", "test:80", "te\nst", "x@y", "test?", "test#", "te\x7Fst", "%00"})
        EXPECT_THAT(parked(tld), IsEmpty()) << tld;
    EXPECT_THAT(parked("dev.local"), ElementsAre(Site{"shop.dev.local", "http://shop.dev.local"}));
}

TEST_F(LocalSitesTest, foldersThatCannotBeListedCountAsEmpty) {
    makeFolder("Sites/shop");
    EXPECT_THAT(LocalSites::sites({home.path("missing"), home.write("file", ""), "", home.path("Sites")},
                                  "test", home.path("Nginx")),
                ElementsAre(Site{"shop.test", "http://shop.test"}));
    EXPECT_THAT(LocalSites::sites({}, "test", ""), IsEmpty());
}

TEST_F(LocalSitesTest, aBadConfigurationDoesNotHideTheNext) {
    makeFolder("Sites/shop");
    home.write(herd + "/config.json", R"({"paths": ["/x"]})");
    configure(linuxValet, "domain");
    EXPECT_THAT(all(), ElementsAre(Site{"shop.test", "http://shop.test"}));
}

TEST_F(LocalSitesTest, onlyLinuxFilesSayDomain) {
    makeFolder("Sites/shop");
    configure(herd, "domain");
    configure(valet, "domain");
    EXPECT_THAT(all(), IsEmpty());
}

TEST_F(LocalSitesTest, noPathsGiveNoSites) {
    home.write(valet + "/config.json", R"({"paths": [], "tld": "test"})");
    EXPECT_THAT(all(), IsEmpty());
}

TEST_F(LocalSitesTest, aConfigurationThatIsNoPlainFileIsNotWaitedFor) {
    makeFolder(valet);
    ASSERT_EQ(mkfifo(home.path(valet + "/config.json").c_str(), 0600), 0);
    makeFolder(herd + "/config.json");
    home.write(linuxValet + "/config.json", std::string(1'000'001, ' '));
    EXPECT_THAT(all(), IsEmpty());
}

TEST_F(LocalSitesTest, onlyAWebServerOnItsPortsHasThem) {
    makeFolder("Sites/shop");
    configure(valet);
    const auto count = [this](const std::string &command, std::int64_t port) {
        return LocalSites::sites(ListeningPort{.command = command, .port = port}, home.path()).size();
    };
    EXPECT_EQ(count("nginx", 80), 1u);
    EXPECT_EQ(count("nginx", 443), 1u);
    EXPECT_EQ(count("my-Nginx-worker", 80), 1u);
    EXPECT_EQ(count("nginx", 8080), 0u);
    EXPECT_EQ(count("httpd", 80), 0u);
    EXPECT_EQ(count("", 443), 0u);
}

} // namespace
} // namespace tarnvale
