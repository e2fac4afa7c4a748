#include "updates/verifyFile.h"

#include "discovery/findTool.h"
#include "support/TemporaryFolder.h"
#include "support/runProgram.h"
#include "updates/TestKey.h"
#include "updates/UpdateItem.h"

#include <QByteArray>

#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace tarnvale {
namespace {

class VerifyFileTest : public testing::Test {
protected:
    [[nodiscard]] bool verify(const std::string &path, const std::string &signature,
                              const std::string &publicKey) const {
        return verifyFile(QString::fromStdString(path), signature, publicKey);
    }

    TemporaryFolder m_folder;
    TestKey m_key;
    std::string m_content = std::string("an update\0with bytes", 20) + std::string(100'000, '\xFE');
    std::string m_path = m_folder.write("update.deb", m_content);
    std::string m_signature = m_key.sign(m_content);
};

TEST_F(VerifyFileTest, whatTheMakerSignedIsGood) {
    EXPECT_TRUE(verify(m_path, m_signature, m_key.publicKey()));
    EXPECT_TRUE(verify(m_path, " " + m_signature + "\n", "\t" + m_key.publicKey() + " ")) << "blanks around";
}

TEST_F(VerifyFileTest, aKnownSignatureOfAnotherImplementationIsGood) {
    // RFC 8032, section 7.1, test 2: the one byte 0x72.
    const auto base64 = [](const char *hex) { return QByteArray::fromHex(hex).toBase64().toStdString(); };
    const std::string path = m_folder.write("one", "\x72");
    EXPECT_TRUE(verify(path,
                       base64("92a009a9f0d4cab8720e820b5f642540a2b27b5416503f8fb3762223ebdb69da"
                              "085ac1e43e15996e458f3613d0f11d8c387b2eaeb4302aeeb00d291612bb0c00"),
                       base64("3d4017c3e843895a92b70aa74d1b7ebc9c982ccf2ec4968cc0cd55f12af4660c")));
}

TEST_F(VerifyFileTest, whatOpensslSignsIsGood) {
    const auto tool = findInPath("openssl");
    if (!tool)
        GTEST_SKIP() << "openssl isn't installed";
    const std::string key = m_folder.path("key.pem");
    const auto make = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), *tool);
        return runProgram(arguments);
    };
    ASSERT_EQ(make({"genpkey", "-algorithm", "ed25519", "-out", key}).status, 0);
    const ProgramRun open = make({"pkey", "-in", key, "-pubout", "-outform", "DER"});
    const ProgramRun signature = make({"pkeyutl", "-sign", "-inkey", key, "-rawin", "-in", m_path});
    if (open.status != 0 || signature.status != 0)
        GTEST_SKIP() << "this openssl is too old: " << signature.error;
    const auto base64 = [](const std::string &bytes) {
        return QByteArray::fromStdString(bytes).toBase64().toStdString();
    };
    constexpr std::size_t keySize = 32;
    ASSERT_GT(open.output.size(), keySize);
    const std::string publicKey = base64(open.output.substr(open.output.size() - keySize));
    EXPECT_TRUE(verify(m_path, base64(signature.output), publicKey)) << "as docs/updates.md says";
}

TEST_F(VerifyFileTest, anyOtherContentIsNot) {
    const auto rejects = [this](const std::string &content) {
        return !verify(m_folder.write("other", content), m_signature, m_key.publicKey());
    };
    std::string flipped = m_content;
    flipped.back() = '\xFF';
    EXPECT_TRUE(rejects(flipped));
    EXPECT_TRUE(rejects(m_content + "x"));
    EXPECT_TRUE(rejects(m_content.substr(0, m_content.size() - 1)));
    EXPECT_TRUE(rejects(""));
}

TEST_F(VerifyFileTest, anotherKeysSignatureIsNot) {
    const TestKey other;
    EXPECT_FALSE(verify(m_path, other.sign(m_content), m_key.publicKey()));
    EXPECT_FALSE(verify(m_path, m_signature, other.publicKey()));
}

TEST_F(VerifyFileTest, oddSignaturesAndKeysAreNot) {
    const std::string key = m_key.publicKey();
    const std::vector<std::string> signatures{"",
                                              "A",
                                              "not base64!",
                                              m_signature.substr(0, 84),
                                              m_signature + "AAAA",
                                              std::string(86, 'A') + "==",
                                              std::string(100'000, 'A'),
                                              "*" + m_signature.substr(1),
                                              key};
    for (const std::string &signature : signatures)
        EXPECT_FALSE(verify(m_path, signature, key)) << signature.substr(0, 100);
    for (const std::string &odd : {std::string(), std::string("abc="), key.substr(4), key + "AAAA",
                                   std::string(43, 'A') + "=", std::string(100'000, 'A'), m_signature})
        EXPECT_FALSE(verify(m_path, m_signature, odd)) << odd.substr(0, 100);
}

TEST_F(VerifyFileTest, whatIsNoRegularFileIsNot) {
    const std::string empty = m_folder.write("empty", "");
    const std::string link = m_folder.path("link");
    std::filesystem::create_symlink(m_path, link);
    const std::string pipe = m_folder.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string &path : {m_folder.path("absent"), m_folder.path(), link, pipe,
                                    std::string("/dev/zero"), std::string("relative"), std::string()})
        EXPECT_FALSE(verify(path, m_signature, m_key.publicKey())) << path;
    EXPECT_FALSE(verify(empty, m_key.sign(""), m_key.publicKey())) << "an empty file is no update";
}

TEST_F(VerifyFileTest, aFileThatIsTooLargeIsNotRead) {
    const std::string path = m_folder.write("large", "");
    ASSERT_EQ(truncate(path.c_str(), mostUpdateBytes + 1), 0); // takes no room
    EXPECT_FALSE(verify(path, m_signature, m_key.publicKey()));
}

TEST_F(VerifyFileTest, theFormOfASignatureIsTold) {
    EXPECT_TRUE(isSignature(m_signature));
    EXPECT_FALSE(isSignature(m_key.publicKey()));
    EXPECT_FALSE(isSignature(""));
}

} // namespace
} // namespace tarnvale
