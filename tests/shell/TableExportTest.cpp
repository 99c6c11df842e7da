#include "shell/TableExport.h"

#include "fakes/FakeTexts.h"
#include "fakes/RecordingRowBatch.h"
#include "fakes/TestFolder.h"
#include "fakes/WaitUntil.h"
#include "shell/LinkButton.h"
#include "shell/WindowFixture.h"
#include "tables/ThreatsTableView.h"

#include <QFileDialog>
#include <QLabel>
#include <QProgressBar>

#include <semaphore>

namespace korvale {
namespace {

using namespace Qt::StringLiterals;

class TableExportTest : public WindowFixture {
protected:
    void load(RowBatchPtr rows) {
        fileThreats.loadData(std::move(rows));
        fileThreats.updateView();
    }
    /// After a dialog, as a window manager does it.
    void activate() {
        controller().window()->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(controller().window()));
    }
    /// The menu that Control+S opens.
    QMenu& menu() {
        activate();
        QTest::keyClick(controller().window(), Qt::Key_S, Qt::ControlModifier);
        auto* found = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (found == nullptr) {
            throw std::runtime_error("no menu");
        }
        return *found;
    }
    QFileDialog* dialog() {
        for (auto* found : controller().window()->findChildren<QFileDialog*>()) {
            if (found->isVisible()) {
                return found;
            }
        }
        return nullptr;
    }
    /// Chooses the menu's entry at `position`, and that file.
    void exportTo(const QString& name, int position = 0) {
        QMenu& offered = menu();
        QAction* action = offered.actions().at(position);
        ASSERT_TRUE(action->isEnabled());
        offered.setActiveAction(action);
        QTest::keyClick(&offered, Qt::Key_Return);
        ASSERT_NE(dialog(), nullptr);
        dialog()->setDirectory(folder.path());
        dialog()->selectFile(folder.path(name));
        static_cast<QDialog*>(dialog())->done(QDialog::Accepted);
    }
    bool waitForLine(const QString& text) {
        return waitUntil([&] {
            auto* label = controller().window()->findChild<QLabel*>(u"exportLbl"_s);
            return label != nullptr && label->isVisible() && label->text() == text;
        });
    }
    LinkButton& endButton() { return part<LinkButton>("exportEndButton"); }

    TestFolder folder;
    const FakeTexts texts{{"HPS_ExportShown", u"shown %@ %@"_s},
                          {"HPS_ExportSelected", u"selected %@ %@"_s},
                          {"HPS_ExportDone", u"%@ has %@"_s}};
};

TEST_F(TableExportTest, NothingOfItIsThereBeforeItIsAskedFor) {
    shownWindow();
    EXPECT_EQ(controller().window()->findChild<QLabel*>(u"exportLbl"_s), nullptr);
    EXPECT_TRUE(controller().window()->findChildren<QFileDialog*>().isEmpty());
}

TEST_F(TableExportTest, ControlSOffersTheShownAndTheSelectedRowsInTwoForms) {
    load(numberedRows(1'034));
    shownWindow();
    QMenu& offered = menu();
    QStringList labels;
    QList<bool> enabled;
    for (const QAction* action : offered.actions()) {
        labels << action->text();
        enabled << action->isEnabled();
    }
    EXPECT_EQ(labels, (QStringList{u"shown 1,034 CSV"_s, u"shown 1,034 JSON"_s, u"selected 0 CSV"_s,
                                   u"selected 0 JSON"_s}));
    EXPECT_EQ(enabled, (QList<bool>{true, true, false, false}));
    EXPECT_EQ(offered.activeAction(), offered.actions().constFirst());
    QTest::keyClick(&offered, Qt::Key_Escape);
    EXPECT_FALSE(offered.isVisible());
    EXPECT_TRUE(controller().window()->isVisible());
}

TEST_F(TableExportTest, WritesWhatIsShownAndSaysSo) {
    load(numberedRows(12, u"f"_s));
    shownWindow();
    fileThreats.setFind(u"f1"_s);
    exportTo(u"a.csv"_s);
    EXPECT_TRUE(waitForLine(folder.path(u"a.csv"_s) + u" has 3"_s));
    EXPECT_EQ(folder.read(u"a.csv"_s).split('\n').size(), 5) << "a header and three lines";
    EXPECT_FALSE(part<QProgressBar>("exportProgress").isVisible());
    endButton().setFocus();
    QTest::keyClick(&endButton(), Qt::Key_Space);
    EXPECT_FALSE(part<QLabel>("exportLbl").isVisible());
}

TEST_F(TableExportTest, WritesTheSelectionAsJson) {
    load(numberedRows(12, u"f"_s));
    shownWindow();
    auto& view = part<ThreatsTableView>("fileThreatsTable");
    view.selectRow(4);
    exportTo(u"a.json"_s, 3);
    ASSERT_TRUE(waitForLine(folder.path(u"a.json"_s) + u" has 1"_s));
    EXPECT_EQ(folder.read(u"a.json"_s).count('{'), 1);
    EXPECT_TRUE(folder.read(u"a.json"_s).contains(R"("file":"f4")"));
}

TEST_F(TableExportTest, ABatchThatComesWhileThePlaceIsChosenIsNotInIt) {
    load(numberedRows(3, u"old"_s));
    shownWindow();
    QMenu& offered = menu();
    QTest::keyClick(&offered, Qt::Key_Return);
    load(numberedRows(9, u"new"_s));
    dialog()->selectFile(folder.path(u"a.csv"_s));
    static_cast<QDialog*>(dialog())->done(QDialog::Accepted);
    ASSERT_TRUE(waitForLine(folder.path(u"a.csv"_s) + u" has 3"_s));
    EXPECT_FALSE(folder.read(u"a.csv"_s).contains("new"));
}

TEST_F(TableExportTest, WithoutAPlaceNothingIsWritten) {
    shownWindow();
    QTest::keyClick(&menu(), Qt::Key_Return);
    static_cast<QDialog*>(dialog())->done(QDialog::Rejected);
    EXPECT_EQ(controller().window()->findChild<QLabel*>(u"exportLbl"_s), nullptr);
}

TEST_F(TableExportTest, WhatGoesWrongIsOneSentence) {
    load(numberedRows(3));
    shownWindow();
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"a.csv"_s));
    exportTo(u"a.csv"_s);
    EXPECT_TRUE(waitForLine(u"HPS_ExportNoFile"_s));
    exportTo(u"none/b.csv"_s);
    EXPECT_TRUE(waitForLine(u"HPS_ExportFailed"_s));
}

TEST_F(TableExportTest, ASlowOneTellsHowFarItIsAndCanBeCancelled) {
    std::counting_semaphore<> gate(0);
    load(std::make_shared<RecordingRowBatch>(2'000, [&gate](std::size_t row, RowKey key) {
        if (key == RowKey::ExactPaths) {
            gate.acquire(); // the table asks for no such text
        }
        return std::optional(QString::number(row));
    }));
    shownWindow();
    exportTo(u"a.csv"_s);
    EXPECT_TRUE(waitForLine(u"HPS_ExportRuns"_s));
    EXPECT_EQ(endButton().text(), u"HPS_Cancel");
    gate.release(1'000);
    EXPECT_TRUE(waitUntil([this] { return part<QProgressBar>("exportProgress").value() > 0; }));
    activate();
    QTest::keyClick(controller().window(), Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr) << "one at a time";
    EXPECT_TRUE(endButton().hasFocus());
    QTest::keyClick(&endButton(), Qt::Key_Return);
    EXPECT_FALSE(endButton().isEnabled());
    gate.release(1'000);
    EXPECT_TRUE(waitForLine(u"HPS_ExportCancelled"_s));
    EXPECT_EQ(folder.names(), QStringList());
    EXPECT_EQ(endButton().text(), u"HPS_Close");
}

TEST_F(TableExportTest, TheEndOfTheProgramEndsIt) {
    std::counting_semaphore<> gate(0);
    load(std::make_shared<RecordingRowBatch>(2'000, [&gate](std::size_t row, RowKey key) {
        if (key == RowKey::ExactPaths && row == 300) {
            gate.acquire();
        }
        return std::optional(QString::number(row));
    }));
    shownWindow();
    exportTo(u"a.csv"_s);
    EXPECT_TRUE(waitForLine(u"HPS_ExportRuns"_s));
    QTimer::singleShot(0, [&gate] { gate.release(); });
    QApplication::processEvents();
    makeController();
    EXPECT_EQ(folder.names().filter(u".csv."_s), QStringList()) << "nothing is left beside";
}

TEST(ExportFormat, IsWhatTheFilesNameSaysOrElseWhatWasChosen) {
    EXPECT_EQ(TableExport::formatOf(u"/a/b.CSV"_s, ExportFormat::Json), ExportFormat::Csv);
    EXPECT_EQ(TableExport::formatOf(u"/a/b.json"_s, ExportFormat::Csv), ExportFormat::Json);
    EXPECT_EQ(TableExport::formatOf(u"/a.csv/b"_s, ExportFormat::Json), ExportFormat::Json);
    EXPECT_EQ(TableExport::formatOf(u"/a/b.txt"_s, ExportFormat::Csv), ExportFormat::Csv);
}

} // namespace
} // namespace korvale
