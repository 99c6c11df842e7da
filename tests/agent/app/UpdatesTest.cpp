#include "agent/app/Updates.h"

#include "agent/bus/SystemdUnits.h"
#include "agent/fakes/FakeSystemd.h"
#include "agent/fakes/ScratchFolder.h"
#include "agent/fakes/UpdaterNote.h"
#include "fakes/PrivateBus.h"
#include "fakes/WaitUntil.h"

#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace korvale::agent {
namespace {

const QString kDaemon = QStringLiteral("updater.service");
const QString kOnce = QStringLiteral("updater-once.service");
const QString kEngine = QStringLiteral("engine.service");
constexpr std::int64_t kNow = 1'800'000'000;

class UpdatesTest : public testing::Test {
protected:
    void SetUp() override {
        m_bus.allowService(FakeSystemd::serviceName());
        m_bus.start();
        m_systemd = std::make_unique<FakeSystemd>(m_bus.address());
        for (const QString& unit : {kDaemon, kOnce, kEngine}) {
            m_systemd->units[unit] = {};
        }
        std::filesystem::create_directory(signatures());
        writeFile(signatures() + "/main.cvd", "old");
        writeFile(signatures() + "/daily.cvd", "old");
        setTime("daily.cvd", 1000);
        setTime("main.cvd", 1000);
        m_systemd->units[kEngine].active = QStringLiteral("active");
        m_units.use(QDBusConnection::connectToBus(m_bus.address(), QStringLiteral("agent side")));
        begin();
    }
    void TearDown() override {
        m_updates.reset();
        m_systemd.reset();
        QDBusConnection::disconnectFromBus(QStringLiteral("agent side"));
    }

    /// As a process that begins does.
    void begin() {
        const QString folder = QString::fromStdString(m_folder.path());
        UpdateSettings settings;
        settings.daemonUnit = kDaemon;
        settings.onceUnit = kOnce;
        settings.engineUnits = {kEngine};
        settings.signatures = QString::fromStdString(signatures());
        settings.memory = folder + QStringLiteral("/last-update");
        settings.statusFolder = folder + QStringLiteral("/status");
        m_updates = std::make_unique<Updates>(m_units, settings, [this] { return m_now; });
        QObject::connect(m_updates.get(), &Updates::told, m_updates.get(),
                         [this](const QString& sentence) { m_told += sentence; });
    }

    [[nodiscard]] std::string signatures() const { return m_folder / "signatures"; }
    void setTime(const std::string& name, std::int64_t seconds) const {
        const timespec times[2] = {{seconds, 0}, {seconds, 0}};
        ASSERT_EQ(::utimensat(AT_FDCWD, (signatures() + '/' + name).c_str(), times, 0), 0);
    }
    void check() {
        m_answered = false;
        m_updates->check([this](const QString& refusal) {
            m_answered = true;
            m_refusal = refusal;
        });
    }
    [[nodiscard]] bool waitUntilTold(const QString& part) {
        return waitUntil([this, part] {
            return !m_told.isEmpty() && m_told.constLast().contains(part) && m_answered;
        });
    }
    [[nodiscard]] qsizetype statusFiles() const {
        return QDir(QString::fromStdString(m_folder / "status"))
            .entryList({QStringLiteral("*.kvupupdate")})
            .size();
    }

    PrivateBus m_bus;
    ScratchFolder m_folder;
    std::unique_ptr<FakeSystemd> m_systemd;
    SystemdUnits m_units;
    std::unique_ptr<Updates> m_updates;
    std::int64_t m_now = kNow;
    QStringList m_told;
    bool m_answered = false;
    QString m_refusal;
};

TEST_F(UpdatesTest, RunsTheUpdaterOnceAndTellsInStatusFiles) {
    check();
    ASSERT_TRUE(waitUntilTold(QStringLiteral("up to date"))) << m_told.join(u'|').toStdString();
    EXPECT_EQ(m_refusal, QString());
    EXPECT_EQ(m_systemd->started, QStringList{kOnce});
    EXPECT_EQ(m_told.size(), 2);
    EXPECT_EQ(statusFiles(), 2);
    EXPECT_EQ(m_updates->facts().asked, kNow);
    EXPECT_EQ(m_updates->facts().outcome, m_told.constLast());
}

TEST_F(UpdatesTest, TellsOfNewSignaturesAndStartsTheEngineThatWaitedForThem) {
    std::filesystem::remove(signatures() + "/daily.cvd");
    m_systemd->units[kEngine].active = QStringLiteral("inactive");
    bool changed = false;
    QObject::connect(m_updates.get(), &Updates::signaturesChanged, m_updates.get(),
                     [&] { changed = true; });
    m_updates->startEngine(); // without daily signatures: not yet
    m_systemd->onStart = [this](const QString& unit) {
        if (unit == kOnce) {
            writeFile(signatures() + "/daily.cvd", "new");
        } else {
            m_systemd->units[unit].active = QStringLiteral("active");
        }
        return QStringLiteral("done");
    };
    check();
    ASSERT_TRUE(waitUntilTold(QStringLiteral("New signatures")));
    ASSERT_TRUE(waitUntil([this] { return m_systemd->started.contains(kEngine); }));
    EXPECT_EQ(m_systemd->started, QStringList({kOnce, kEngine}));
    EXPECT_TRUE(changed);
}

TEST_F(UpdatesTest, WakesAnUpdaterThatRuns) {
    m_systemd->units[kDaemon].active = QStringLiteral("active");
    m_systemd->onKill = [this] { writeFile(signatures() + "/daily.cld", "new"); };
    check();
    ASSERT_TRUE(waitUntilTold(QStringLiteral("New signatures")));
    EXPECT_EQ(m_systemd->killed,
              QStringList{QStringLiteral("%1 main %2").arg(kDaemon).arg(SIGUSR1)});
    EXPECT_EQ(m_systemd->started, QStringList());
}

TEST_F(UpdatesTest, SaysThatAWokenUpdaterBroughtNothing) {
    m_systemd->units[kDaemon].active = QStringLiteral("active");
    m_updates->setWatchTime(std::chrono::milliseconds(1));
    check();
    ASSERT_TRUE(waitUntilTold(QStringLiteral("nothing newer")));
}

TEST_F(UpdatesTest, AsksAtMostOnceAnHourEvenAfterARestart) {
    check();
    ASSERT_TRUE(waitUntilTold(QStringLiteral("up to date")));
    check();
    ASSERT_TRUE(waitUntilTold(QStringLiteral("wait until")));
    EXPECT_FALSE(m_refusal.isEmpty());
    begin();
    m_now = kNow + 3599;
    m_told.clear();
    check();
    ASSERT_TRUE(waitUntilTold(QStringLiteral("wait until")));
    EXPECT_EQ(m_updates->facts().waitUntil, kNow + 3600);
    EXPECT_EQ(m_systemd->started.size(), 1);
    m_now = kNow + 3600;
    check();
    ASSERT_TRUE(waitUntilTold(QStringLiteral("up to date")));
    EXPECT_EQ(m_systemd->started.size(), 2);
}

TEST_F(UpdatesTest, IsNotFooledByAClockThatJumps) {
    check();
    ASSERT_TRUE(waitUntilTold(QStringLiteral("up to date")));
    for (const std::int64_t now : {kNow + 100'000, kNow - 100'000}) {
        m_now = now;
        m_told.clear();
        check();
        ASSERT_TRUE(waitUntilTold(QStringLiteral("wait until")));
    }
    EXPECT_EQ(m_systemd->started.size(), 1);
}

TEST_F(UpdatesTest, TellsHowLongTheDownloadServiceWantsToWait) {
    m_systemd->onStart = [this](const QString&) {
        writeFile(signatures() + "/freshclam.dat", updaterNote(kNow + 86'400));
        return QStringLiteral("done"); // and the updater's status is success
    };
    check();
    const QString until =
        QDateTime::fromSecsSinceEpoch(kNow + 86'400).toString(QStringLiteral("yyyy-MM-dd HH:mm"));
    ASSERT_TRUE(waitUntilTold(until));
    EXPECT_EQ(m_updates->facts().waitUntil, kNow + 86'400);
    begin();
    m_now = kNow + 7200;
    m_told.clear();
    check();
    ASSERT_TRUE(waitUntilTold(until));
    EXPECT_TRUE(m_refusal.contains(until));
    EXPECT_EQ(m_systemd->started.size(), 1);
}

TEST_F(UpdatesTest, TellsThatTheUpdaterFailed) {
    m_systemd->onStart = [this](const QString&) {
        m_systemd->units[kOnce].active = QStringLiteral("failed");
        m_systemd->units[kOnce].result = QStringLiteral("exit-code");
        m_systemd->units[kOnce].exitStatus = 11;
        return QStringLiteral("failed");
    };
    check();
    ASSERT_TRUE(waitUntilTold(QStringLiteral("status 11")));
}

TEST_F(UpdatesTest, TellsThatThereIsNoServiceManagerOrUpdater) {
    m_systemd->units.remove(kOnce);
    check();
    ASSERT_TRUE(waitUntilTold(QStringLiteral("cannot be asked for")));
    m_systemd.reset();
    std::filesystem::remove(m_folder / "last-update");
    begin();
    m_told.clear();
    check();
    ASSERT_TRUE(waitUntilTold(QStringLiteral("no service manager")));
}

TEST_F(UpdatesTest, AsksOnceForAllWhoAskMeanwhile) {
    m_systemd->onStart = [](const QString&) { return QString(); };
    check();
    ASSERT_TRUE(waitUntil([this] { return m_systemd->started.size() == 1; }));
    check();
    EXPECT_TRUE(m_answered);
    EXPECT_EQ(m_refusal, QString());
    m_systemd->endJob(kOnce, QStringLiteral("done"));
    ASSERT_TRUE(waitUntilTold(QStringLiteral("up to date")));
    EXPECT_EQ(m_systemd->started.size(), 1);
}

} // namespace
} // namespace korvale::agent
