#include "shell/FolderScanChooser.h"

#include "fakes/FakeAppearance.h"
#include "fakes/RecordingAgentCommands.h"
#include "fakes/RecordingLogSink.h"
#include "shell/Resources.h"
#include "tables/WindowLook.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace korvale {
namespace {

class FolderScanChooserTest : public testing::Test {
protected:
    static QList<QFileDialog*> openDialogs() {
        QList<QFileDialog*> dialogs;
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            auto* dialog = qobject_cast<QFileDialog*>(widget);
            if (dialog != nullptr && dialog->isVisible()) {
                dialogs << dialog;
            }
        }
        return dialogs;
    }
    QFileDialog& open() {
        chooser.scanSpecificFolder();
        EXPECT_EQ(openDialogs().size(), 1);
        return *openDialogs().constFirst();
    }

    fakes::FakeAppearance appearance;
    Resources resources{appearance, IconSet::Standard};
    QStringList forwarded;
    fakes::RecordingAgentCommands commands{forwarded};
    FolderScanChooser chooser{resources, commands};
};

TEST_F(FolderScanChooserTest, LetsOneFolderBeChosenWithoutHoldingUpAnything) {
    const QFileDialog& dialog = open();
    EXPECT_EQ(dialog.fileMode(), QFileDialog::Directory);
    EXPECT_TRUE(dialog.testOption(QFileDialog::ShowDirsOnly));
    EXPECT_FALSE(dialog.isModal());
    EXPECT_EQ(dialog.directory(), QDir::home());
    EXPECT_TRUE(forwarded.isEmpty());
}

TEST_F(FolderScanChooserTest, TheChosenFolderIsForwardedUnchanged) {
    const QTemporaryDir parent;
    const QString folder = parent.filePath(QStringLiteral("m\u00e4 & <b> %@ dir"));
    ASSERT_TRUE(QDir().mkpath(folder));
    QFileDialog& dialog = open();
    dialog.setDirectory(parent.path());
    dialog.selectFile(folder);
    static_cast<QDialog&>(dialog).done(QDialog::Accepted);
    EXPECT_EQ(forwarded, QStringList(QStringLiteral("forwardFolderScan ") + folder));
}

TEST_F(FolderScanChooserTest, OnlyLocalFoldersCanBeChosen) {
    EXPECT_EQ(open().supportedSchemes(), QStringList(QStringLiteral("file")));
    const auto folderOf = [](const char* url) {
        return FolderScanChooser::localFolder({QUrl(QString::fromLatin1(url))});
    };
    EXPECT_EQ(folderOf("file:///home/a%20b"), QStringLiteral("/home/a b"));
    EXPECT_EQ(folderOf("smb://server/share"), QString());
    EXPECT_EQ(folderOf("sftp://server/home"), QString());
    EXPECT_EQ(folderOf("trash:///"), QString());
    EXPECT_EQ(folderOf(""), QString());
    EXPECT_EQ(FolderScanChooser::localFolder({}), QString());
}

TEST_F(FolderScanChooserTest, CancellingForwardsNothing) {
    open().reject();
    EXPECT_TRUE(forwarded.isEmpty());
    EXPECT_TRUE(openDialogs().isEmpty());
    open(); // and again
}

TEST_F(FolderScanChooserTest, AnOpenChooserIsNotOpenedTwice) {
    const QFileDialog* first = &open();
    EXPECT_EQ(&open(), first);
}

TEST_F(FolderScanChooserTest, FollowsTheDesktopsAppearance) {
    resources.initialize();
    appearance.set(QStringLiteral("Dark"));
    const QFileDialog& dialog = open();
    const auto* list = dialog.findChild<QAbstractItemView*>();
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(dialog.palette().color(QPalette::Window),
              windowPalette(true).color(QPalette::Window));
    EXPECT_EQ(list->palette().color(QPalette::Base), windowPalette(true).color(QPalette::Base));
    appearance.set(QVariant());
    EXPECT_EQ(list->palette().color(QPalette::Base), windowPalette(false).color(QPalette::Base));
}

TEST_F(FolderScanChooserTest, SaysSoAtTheDebugLevel) {
    const RecordingLogSink log;
    const LogLevel before = logLevel();
    setLogLevel(LogLevel::Debug);
    open();
    setLogLevel(before);
    EXPECT_EQ(log.lines(), std::vector<std::string>{"DEBUG \"specificFolder.\""});
}

} // namespace
} // namespace korvale
