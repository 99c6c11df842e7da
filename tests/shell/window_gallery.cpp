// window_gallery FOLDER [TEXT_SCALE]: draws the details window, its menu, the notifications and the
// About panel in every state worth looking at and saves one picture of each in FOLDER. Not a test
// by itself: it is for people who judge looks. Set QT_SCALE_FACTOR for other scales and LANG and
// LANGUAGE for other languages; -reverse is from right to left.
#include "core/base/TextFormat.h"
#include "fakes/RecordingRowBatch.h"
#include "platform/NotificationServer.h"
#include "platform/Texts.h"
#include "shell/AboutPanel.h"
#include "shell/AnswerStrip.h"
#include "shell/ExportLine.h"
#include "shell/MainWindow.h"
#include "shell/MarkedAction.h"
#include "shell/NotificationsWindow.h"
#include "shell/Translations.h"
#include "shell/WindowParts.h"

#include <QApplication>
#include <QDir>
#include <QKeyEvent>
#include <QLayout>
#include <QLineEdit>
#include <QTabWidget>
#include <QTemporaryDir>

#include <array>
#include <cstdio>
#include <cstdlib>

namespace korvale {
namespace {

constexpr std::array paths{u"/home/ada/Downloads/quarterly-report-2026.xlsm",
                           u"/home/ada/Téléchargements/facture_août.pdf.exe",
                           u"/srv/shares/engineering/projects/propulsion/firmware/releases/2026-11/"
                           u"unsigned/bootloader-stage2-debug-build-with-symbols.bin",
                           u"/home/ada/العربية/تقرير المبيعات النهائي.docm",
                           u"/tmp/evil\u202Ecod.exe",
                           u"/home/ada/日本語/見積書.xlsx",
                           u"/opt/tools/<b>bold</b> & <img src=x>.sh",
                           u"/var/tmp/two\nlines.bin"};

constexpr std::array categories{u"Unsafe", u"Abnormal", u"Quarantined", u"Waived"};
constexpr std::array processStates{u"Alert", u"Blocked", u"Terminated"};

QString moment(std::size_t row) {
    return QDateTime(QDate(2026, 11, 20), QTime(17, 42, 10))
        .addSecs(-211 * static_cast<qint64>(row))
        .toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

template <std::size_t size>
QString pick(const std::array<const char16_t*, size>& texts, std::size_t row) {
    return QString::fromUtf16(texts.at(row % size));
}

std::optional<QString> rowText(std::size_t row, RowKey key) {
    const QString path = pick(paths, row);
    switch (key) {
    case RowKey::File:
    case RowKey::ProcessName:
        return path.section(u'/', -1);
    case RowKey::FileToolTip:
    case RowKey::ProcessToolTip:
        return path;
    case RowKey::Id:
    case RowKey::IdToolTip:
        return QStringLiteral("8F0C4C1B2E5A93D7").repeated(4);
    case RowKey::Found:
        return QString::number(1 + row % 4);
    case RowKey::When:
        return moment(row);
    case RowKey::Pid:
    case RowKey::PidToolTip:
        return QString::number(1200 + row * 37);
    case RowKey::Event:
        return row % 2 == 0 ? QStringLiteral("Threat: Detected")
                            : QStringLiteral("Exploit attempt");
    case RowKey::Details:
    case RowKey::Path:
        return path;
    case RowKey::Score:
        return QString::number(40 + row * 3);
    case RowKey::DeviceType:
        return row % 3 == 0 ? QStringLiteral("USB Mass Storage") : QStringLiteral("Camera");
    case RowKey::VendorId:
        return QStringLiteral("0x0951");
    case RowKey::ProductId:
        return QStringLiteral("0x1666");
    case RowKey::SerialNumber:
        return QStringLiteral("E0D55EA573CAF3A0B9430%1").arg(row);
    case RowKey::Action:
        return row % 2 == 0 ? QStringLiteral("Blocked") : QStringLiteral("FullAccess");
    default:
        return std::nullopt;
    }
}

RowBatchPtr rows(std::size_t count, bool processes = false) {
    return std::make_shared<RecordingRowBatch>(
        count, [processes](std::size_t row, RowKey key) -> std::optional<QString> {
            if (key == RowKey::Category || key == RowKey::Meaning) {
                return processes ? pick(processStates, row) : pick(categories, row);
            }
            return rowText(row, key);
        });
}

class Gallery : private WindowParts {
public:
    explicit Gallery(QDir folder) : m_folder(std::move(folder)) {
        resources.initialize();
        statusItem.create();
        statusMenu.addAction(QStringLiteral("Show Details"));
        state.lastScanEnd = QDateTime(QDate(2026, 11, 20), QTime(17, 42));
        for (const bool isOn : {true, false}) {
            auto* item = new MarkedAction(&statusMenu);
            item->setText(isOn ? QStringLiteral("Chosen") : QStringLiteral("Not chosen"));
            item->setMark(isOn);
            statusMenu.addAction(item);
        }
        m_controller.dressStatusMenu();
        state.customName = QStringLiteral("ada-workstation");
        state.policyName = QStringLiteral("Engineering laptops");
        state.policyMode = QStringLiteral("Protect");
        state.policyLastUpdateTime = QStringLiteral("2026-11-20 08:15");
        state.sondarVersionNumberString = QStringLiteral("3.1.1542");
        state.analyzedCount = 128431;
    }

    void drawAll() {
        for (const bool dark : {false, true}) {
            appearance.set(dark ? QVariant(QStringLiteral("Dark")) : QVariant());
            const QString look = dark ? QStringLiteral("dark") : QStringLiteral("light");
            drawLook(look);
            resources.setHighContrast(true);
            drawLook(look + u"-contrast"_qs);
            resources.setHighContrast(false);
        }
    }

private:
    void drawLook(const QString& look) {
        drawTabs(look + u"-empty"_qs);
        fill(14);
        drawTabs(look + u"-typical"_qs);
        drawFoundAndExported(look);
        drawDetails(look + u"-details"_qs);
        fill(1000);
        statusItem.setTrayAvailable(false);
        drawTabs(look + u"-thousand-notray"_qs);
        statusItem.setTrayAvailable(true);
        m_controller.window()->resize(560, 340);
        drawTabs(look + u"-small"_qs);
        drawDetails(look + u"-small-details"_qs);
        m_controller.window()->resize(920, 560);
        drawAbout(look + u"-about"_qs);
        drawNotifications(look + u"-notifications"_qs);
        drawMenu(look + u"-menu"_qs);
        empty();
    }

    void fill(std::size_t count) {
        fileThreats.loadData(rows(count));
        processThreats.loadData(rows(count, true));
        events.removeAll();
        events.addData(rows(count));
        externalDevices.removeAll();
        externalDevices.addData(rows(count));
        state.newExploitCount = 3;
        state.eventCount = 27;
        state.quarantineCount = 12;
        state.currentScanItem = pick(paths, 2);
        statusItem.setIconDispColor(IconColor::Red);
        statusLine.updateStatusMessage(StatusState::Inspecting);
        update();
    }

    void empty() {
        fileThreats.removeAll();
        processThreats.removeAll();
        events.removeAll();
        externalDevices.removeAll();
        state.newExploitCount = 0;
        state.eventCount = 0;
        state.quarantineCount = 0;
        statusLine.updateStatusMessage(StatusState::NotRunning);
        update();
    }

    void update() {
        fileThreats.updateView();
        processThreats.updateView();
        events.updateView();
        externalDevices.updateView();
        m_controller.updateDisplay();
    }

    void drawTabs(const QString& name) {
        m_controller.showDetails();
        auto* tabs = m_controller.window()->findChild<QTabWidget*>();
        for (int tab = tabs->count() - 1; tab >= 0; --tab) {
            tabs->setCurrentIndex(tab);
            draw(*m_controller.window(), name + u'-' + QString::number(tab));
        }
    }

    void drawFoundAndExported(const QString& look) {
        MainWindow& window = *m_controller.window();
        auto* field = window.findChild<QLineEdit*>(QStringLiteral("findField"));
        field->setText(QStringLiteral("e o"));
        ExportLine line;
        window.answerStrip().layout()->addWidget(&line);
        line.showRunning(formatText(localizedText("HPS_ExportRuns"), {u"threats.csv"_qs}));
        line.setProgress(40);
        draw(window, look + u"-exporting"_qs);
        line.showResult(formatText(localizedText("HPS_ExportDone"),
                                   {u"/home/ada/Documents/threats.csv"_qs, u"1,034"_qs}));
        draw(window, look + u"-exported"_qs);
        field->clear();
    }

    /// Of the third row, by keyboard.
    void drawDetails(const QString& name) {
        auto* tabs = m_controller.window()->findChild<QTabWidget*>();
        for (int tab = tabs->count() - 1; tab >= 0; --tab) {
            tabs->setCurrentIndex(tab);
            QWidget* table = tabs->currentWidget();
            table->setFocus();
            for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Return}) {
                QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
                QApplication::sendEvent(table, &press);
            }
            draw(*m_controller.window(), name + u'-' + QString::number(tab));
        }
        tabs->setCurrentIndex(1); // which closes the pane
    }

    void drawAbout(const QString& name) {
        m_controller.aboutApp();
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* panel = qobject_cast<AboutPanel*>(widget)) {
                draw(*panel, name);
                panel->close();
            }
        }
    }

    void drawNotifications(const QString& name) {
        notifications.clear();
        for (std::size_t row = 0; row < 9; ++row) {
            notifications.add(
                {.title = QStringLiteral("Korvale Endpoint Protection"),
                 .subtitle = row % 3 == 0 ? QString() : QStringLiteral("Threat found"),
                 .message = pick(paths, row),
                 .picture = {},
                 .link = row % 3 == 0 ? QStringLiteral("https://korvale.example/why?id=8F0C4C1B")
                                      : QString()},
                row % 4 == 1);
        }
        m_controller.showNotifications();
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* window = qobject_cast<NotificationsWindow*>(widget)) {
                draw(*window, name);
                delete window; // and with it some of the others
                return;
            }
        }
    }

    void drawMenu(const QString& name) {
        for (const bool highContrast : {false, true}) {
            resources.setHighContrast(highContrast);
            statusMenu.popup(QPoint());
            draw(statusMenu, highContrast ? name + u"-contrast"_qs : name);
            statusMenu.hide();
        }
        resources.setHighContrast(false);
    }

    void draw(QWidget& window, const QString& name) {
        QApplication::processEvents();
        window.grab().save(m_folder.filePath(name + u".png"_qs));
    }

    QDir m_folder;
    QTemporaryDir m_memory; ///< for what the window remembers
    MainWindowController m_controller{context(m_memory.filePath(QStringLiteral("window.json")))};
};

} // namespace
} // namespace korvale

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    if (argc != 2 && argc != 3) {
        std::fputs("usage: window_gallery FOLDER [TEXT_SCALE]\n", stderr);
        return 2;
    }
    QFont font = QApplication::font();
    font.setPointSizeF(font.pointSizeF() * (argc == 3 ? std::strtod(argv[2], nullptr) : 1));
    QApplication::setFont(font);
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    folder.mkpath(QStringLiteral("."));
    const korvale::Translations translations;
    korvale::Gallery(folder).drawAll();
    return 0;
}
