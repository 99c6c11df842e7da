// window_gallery FOLDER: draws the details window and the About panel in every state worth looking
// at and saves one picture of each in FOLDER. Not a test by itself: it is for people who judge
// looks. Set QT_SCALE_FACTOR for other scales and LANGUAGE for other languages.
#include "fakes/FakeAppearance.h"
#include "fakes/RecordingRowBatch.h"
#include "platform/Clock.h"
#include "shell/AboutPanel.h"
#include "shell/MainWindow.h"
#include "shell/MainWindowController.h"
#include "shell/Resources.h"
#include "shell/StatusItem.h"
#include "shell/StatusLine.h"
#include "shell/TabLabels.h"
#include "shell/Translations.h"
#include "tables/EventsTable.h"
#include "tables/ExternalDevicesTable.h"
#include "tables/FileThreatsTable.h"
#include "tables/ProcessThreatsTable.h"
#include "tables/ThreatsTableView.h"

#include <QApplication>
#include <QDir>
#include <QMenu>
#include <QTabWidget>

#include <array>
#include <cstdio>

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
        return path;
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
            if (key == RowKey::Category) {
                return processes ? pick(processStates, row) : pick(categories, row);
            }
            return rowText(row, key);
        });
}

class Gallery {
public:
    explicit Gallery(QDir folder) : m_folder(std::move(folder)) {
        m_resources.initialize();
        m_statusItem.create();
        m_menu.addAction(QStringLiteral("Show Details"));
        m_state.customName = QStringLiteral("ada-workstation");
        m_state.policyName = QStringLiteral("Engineering laptops");
        m_state.policyMode = QStringLiteral("Protect");
        m_state.policyLastUpdateTime = QStringLiteral("2026-11-20 08:15");
        m_state.sondarVersionNumberString = QStringLiteral("3.1.1542");
        m_state.analyzedCount = 128431;
    }

    void drawAll() {
        for (const bool dark : {false, true}) {
            m_appearance.set(dark ? QVariant(QStringLiteral("Dark")) : QVariant());
            const QString look = dark ? QStringLiteral("dark") : QStringLiteral("light");
            drawTabs(look + u"-empty"_qs);
            fill(14);
            drawTabs(look + u"-typical"_qs);
            fill(1000);
            m_statusItem.setTrayAvailable(false);
            drawTabs(look + u"-thousand-notray"_qs);
            m_statusItem.setTrayAvailable(true);
            m_controller.window()->resize(560, 340);
            drawTabs(look + u"-small"_qs);
            m_controller.window()->resize(920, 560);
            drawAbout(look + u"-about"_qs);
            empty();
        }
    }

private:
    void fill(std::size_t count) {
        m_files.loadData(rows(count));
        m_processes.loadData(rows(count, true));
        m_events.removeAll();
        m_events.addData(rows(count));
        m_devices.removeAll();
        m_devices.addData(rows(count));
        m_state.newExploitCount = 3;
        m_state.eventCount = 27;
        m_state.quarantineCount = 12;
        m_state.currentScanItem = pick(paths, 2);
        m_statusItem.setIconDispColor(IconColor::Red);
        m_statusLine.updateStatusMessage(StatusState::Inspecting);
        update();
    }

    void empty() {
        m_files.removeAll();
        m_processes.removeAll();
        m_events.removeAll();
        m_devices.removeAll();
        m_state.newExploitCount = 0;
        m_state.eventCount = 0;
        m_state.quarantineCount = 0;
        m_statusLine.updateStatusMessage(StatusState::NotRunning);
        update();
    }

    void update() {
        m_files.updateView();
        m_processes.updateView();
        m_events.updateView();
        m_devices.updateView();
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

    void drawAbout(const QString& name) {
        m_controller.aboutApp();
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* panel = qobject_cast<AboutPanel*>(widget)) {
                draw(*panel, name);
                panel->close();
            }
        }
    }

    void draw(QWidget& window, const QString& name) {
        QApplication::processEvents();
        window.grab().save(m_folder.filePath(name + u".png"_qs));
    }

    QDir m_folder;
    AppState m_state;
    fakes::FakeAppearance m_appearance;
    Resources m_resources{m_appearance, IconSet::Standard};
    StatusItem m_statusItem{m_state, m_resources};
    SystemClock m_clock;
    StatusLine m_statusLine{m_state, m_clock};
    RememberedSelections m_selections;
    FileThreatsTable m_files{m_selections};
    ProcessThreatsTable m_processes{m_selections};
    EventsTable m_events{m_selections};
    ExternalDevicesTable m_devices{m_selections};
    QMenu m_menu;
    MainWindowController m_controller{
        MainWindowContext{.state = m_state,
                          .resources = m_resources,
                          .statusItem = m_statusItem,
                          .statusLine = m_statusLine,
                          .iconDisplay = m_statusItem,
                          .tables = {m_files, m_processes, m_events, m_devices},
                          .statusMenu = &m_menu,
                          .parseTimerAggregatedMessage = [] {},
                          .visitHome = [] {},
                          .displayName = QStringLiteral("KorvaleUI"),
                          .shortVersion = QStringLiteral("1.0.0"),
                          .placementFile = QStringLiteral("/dev/null")}};
};

} // namespace
} // namespace korvale

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: window_gallery FOLDER\n", stderr);
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    folder.mkpath(QStringLiteral("."));
    const korvale::Translations translations;
    korvale::Gallery(folder).drawAll();
    return 0;
}
