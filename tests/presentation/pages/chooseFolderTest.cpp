#include "presentation/pages/chooseFolder.h"

#include "support/ManualClock.h"
#include "support/TemporaryFolder.h"

#include <QApplication>
#include <QFileDialog>

#include <gtest/gtest.h>

#include <filesystem>

namespace tarnvale {
namespace {

class FolderDialog : public testing::Test {
protected:
    ~FolderDialog() override {
        if (QFileDialog *open = dialog())
            open->reject();
        settle();
    }

    void ask() {
        chooseProjectFolder([this](std::optional<std::string> answer) {
            ++answers;
            chosen = std::move(answer);
        });
    }

    [[nodiscard]] static QFileDialog *dialog() {
        for (QWidget *widget : QApplication::topLevelWidgets())
            if (auto *found = qobject_cast<QFileDialog *>(widget); found != nullptr && found->isVisible())
                return found;
        return nullptr;
    }

    int answers = 0;
    std::optional<std::string> chosen;
    TemporaryFolder folder;
};

TEST_F(FolderDialog, itAsksForAFolderAndDoesNotWait) {
    ask();
    EXPECT_EQ(answers, 0);
    QFileDialog *asked = dialog();
    ASSERT_NE(asked, nullptr);
    EXPECT_EQ(asked->fileMode(), QFileDialog::Directory);
    EXPECT_TRUE(asked->testOption(QFileDialog::ShowDirsOnly));
    EXPECT_EQ(asked->labelText(QFileDialog::Accept), QStringLiteral("Choose"));
    EXPECT_EQ(asked->windowTitle(),
              QStringLiteral(
                  "Choose a project folder. Tarnvale looks for package.json, artisan, Procfile and more."));
}

TEST_F(FolderDialog, theChosenFolderIsHandedOn) {
    std::filesystem::create_directory(folder.path("my shop"));
    ask();
    ASSERT_NE(dialog(), nullptr);
    dialog()->setDirectory(QString::fromStdString(folder.path()));
    dialog()->selectFile(QString::fromStdString(folder.path("my shop")));
    static_cast<QDialog *>(dialog())->done(QDialog::Accepted);
    settle();
    EXPECT_EQ(answers, 1);
    EXPECT_EQ(chosen, folder.path("my shop"));
    EXPECT_EQ(dialog(), nullptr);
}

TEST_F(FolderDialog, theNextOneBeginsBesideTheLast) {
    std::filesystem::create_directory(folder.path("my shop"));
    ask();
    ASSERT_NE(dialog(), nullptr);
    dialog()->setDirectory(QString::fromStdString(folder.path()));
    dialog()->selectFile(QString::fromStdString(folder.path("my shop")));
    static_cast<QDialog *>(dialog())->done(QDialog::Accepted);
    settle();
    ask();
    ASSERT_NE(dialog(), nullptr);
    EXPECT_EQ(dialog()->directory().absolutePath().toStdString(), folder.path());
}

TEST_F(FolderDialog, whoThinksBetterOfItChoosesNothing) {
    ask();
    ASSERT_NE(dialog(), nullptr);
    dialog()->reject();
    settle();
    EXPECT_EQ(answers, 1);
    EXPECT_EQ(chosen, std::nullopt);
}

} // namespace
} // namespace tarnvale
