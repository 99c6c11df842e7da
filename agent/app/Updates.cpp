#include "agent/app/Updates.h"

#include "agent/base/Log.h"
#include "agent/base/SmallFile.h"
#include "agent/bus/SystemdUnits.h"
#include "agent/publish/UpdaterStatusWriter.h"

#include <QDateTime>
#include <QSaveFile>

#include <algorithm>
#include <csignal>
#include <cstdlib>

namespace korvale::agent {
namespace {

constexpr std::size_t kLongestMemory = 64;
constexpr std::chrono::milliseconds kBetweenLooks{2000};

QString shownMoment(std::int64_t seconds) {
    return QDateTime::fromSecsSinceEpoch(seconds).toString(QStringLiteral("yyyy-MM-dd HH:mm"));
}

std::int64_t rememberedMoment(const std::string& file) {
    std::string error;
    const auto text = readSmallFile(file, kLongestMemory, error);
    return text ? std::strtoll(text->c_str(), nullptr, 10) : 0;
}

void rememberMoment(const QString& file, std::int64_t moment) {
    QSaveFile memory(file);
    const bool written = memory.open(QIODevice::WriteOnly) &&
                         memory.write(QByteArray::number(static_cast<qint64>(moment))) > 0 &&
                         memory.commit();
    if (!written) {
        logWarning("updates: " + file.toStdString() + " cannot be written");
    }
}

} // namespace

Updates::Updates(SystemdUnits& units, UpdateSettings settings, Clock clock, QObject* parent)
    : QObject(parent),
      m_units(units),
      m_settings(std::move(settings)),
      m_clock(std::move(clock)),
      m_writer(std::make_shared<UpdaterStatusWriter>(m_settings.statusFolder)) {
    m_disk.setMaxThreadCount(1);
    m_limit.setSingleShot(true);
    m_lookAgain.setSingleShot(true);
    m_lookAgain.setInterval(kBetweenLooks);
    connect(&m_lookAgain, &QTimer::timeout, this, &Updates::watchAgain);
    connect(&m_limit, &QTimer::timeout, this, [this] {
        finish(m_watching ? QStringLiteral("The signature updater was asked and has nothing newer.")
                          : QStringLiteral("The signature updater has not ended yet."));
    });
}

Updates::~Updates() {
    m_disk.waitForDone();
}

void Updates::setSettings(const UpdateSettings& settings) {
    if (settings.statusFolder != m_settings.statusFolder) {
        m_writer = std::make_shared<UpdaterStatusWriter>(settings.statusFolder);
    }
    m_settings = settings;
}

void Updates::onDisk(const std::function<void()>& work, const std::function<void()>& then) {
    m_disk.start([this, work, then] {
        work();
        // The destructor waits for this thread: the object is there.
        QMetaObject::invokeMethod(this, then, Qt::QueuedConnection);
    });
}

void Updates::look(const std::function<void(const Look&)>& then) {
    const auto seen = std::make_shared<Look>();
    const std::string folder = m_settings.signatures.toStdString();
    const std::string memory = m_settings.memory.toStdString();
    onDisk(
        [seen, folder, memory] {
            seen->folder = readUpdaterFolder(folder);
            seen->asked = rememberedMoment(memory);
        },
        [seen, then] { then(*seen); });
}

void Updates::check(const Done& done) {
    if (m_busy) {
        done({});
        return;
    }
    m_busy = true;
    look([this, done](const Look& seen) { decide(seen, done); });
}

std::int64_t Updates::nextAllowed(const Look& look) const {
    const std::int64_t now = m_clock();
    const std::int64_t hour = kBetweenChecks.count();
    std::int64_t allowed = 0;
    if (m_sinceAsked.isValid() && m_sinceAsked.elapsed() / 1000 < hour) {
        allowed = now + hour - m_sinceAsked.elapsed() / 1000; // whatever was done to the clock
    } else if (look.asked <= now) {
        allowed = look.asked + hour;
    }
    return std::max(allowed, look.folder.waitUntil);
}

void Updates::decide(const Look& look, const Done& done) {
    const std::int64_t allowed = nextAllowed(look);
    m_facts.asked = look.asked;
    m_facts.waitUntil = allowed > m_clock() ? allowed : 0;
    if (m_facts.waitUntil != 0) {
        m_busy = false;
        const QString sentence = QStringLiteral("Signatures: wait until %1 before asking again.")
                                     .arg(shownMoment(allowed));
        tell(sentence);
        done(sentence);
        return;
    }
    m_before = look.folder;
    m_facts.asked = m_clock();
    m_facts.waitUntil = m_facts.asked + kBetweenChecks.count();
    m_sinceAsked.start();
    tell(QStringLiteral("Asking for new signatures."));
    done({});
    const QString memory = m_settings.memory;
    const std::int64_t asked = m_facts.asked;
    // Kept before anything is asked: not even a restart in between asks twice.
    onDisk([memory, asked] { rememberMoment(memory, asked); }, [this] { wake(); });
}

void Updates::wake() {
    m_units.signalMain(m_settings.daemonUnit, SIGUSR1, [this](const auto& state, const auto& why) {
        if (!state) {
            finish(QStringLiteral("Signatures cannot be asked for. %1").arg(why));
        } else if (state->isActive()) {
            watch();
        } else {
            runOnce();
        }
    });
}

void Updates::runOnce() {
    m_limit.start(kLongestRun);
    m_units.start(m_settings.onceUnit, [this](const auto& state, const auto& why) {
        if (!m_busy) {
            return; // it took too long, and that was told
        }
        if (!state) {
            finish(QStringLiteral("Signatures cannot be asked for. %1").arg(why));
        } else if (state->isActive()) {
            watch();
        } else {
            ended(*state);
        }
    });
}

void Updates::ended(const UnitState& state) {
    const int status = state.result == QLatin1String("success") ? 0 : std::max(1, state.exitStatus);
    look([this, status](const Look& seen) {
        if (status != 0 && seen.folder.waitUntil <= m_clock()) {
            finish(
                QStringLiteral("Signatures could not be fetched (updater status %1).").arg(status));
            return;
        }
        compare(seen.folder, false);
    });
}

void Updates::watch() {
    m_watching = true;
    m_limit.start(m_watchTime);
    m_lookAgain.start();
}

void Updates::watchAgain() {
    look([this](const Look& seen) {
        if (!m_busy) {
            return;
        }
        if (seen.folder == m_before) {
            m_lookAgain.start();
        } else {
            compare(seen.folder, true);
        }
    });
}

void Updates::compare(const UpdaterFolder& now, bool wasWoken) {
    if (now.waitUntil > m_clock()) {
        m_facts.waitUntil = std::max(m_facts.waitUntil, now.waitUntil);
        finish(QStringLiteral("The download service asks to wait until %1.")
                   .arg(shownMoment(now.waitUntil)));
    } else if (now.newest != m_before.newest) {
        finish(QStringLiteral("New signatures have been installed."));
        Q_EMIT signaturesChanged();
    } else if (wasWoken) {
        m_lookAgain.start(); // something else in the folder changed
    } else {
        finish(QStringLiteral("Signatures are up to date."));
    }
}

void Updates::finish(const QString& sentence) {
    m_limit.stop();
    m_lookAgain.stop();
    m_watching = false;
    m_busy = false;
    tell(sentence);
    startEngine();
}

void Updates::tell(const QString& sentence) {
    m_facts.outcome = sentence;
    logInfo("updates: " + sentence.toStdString());
    onDisk(
        [writer = m_writer, sentence] {
            if (!writer->write(sentence, QDate::currentDate())) {
                logWarning("updates: no status file: " + writer->error().toStdString());
            }
        },
        [this, sentence] { Q_EMIT told(sentence); });
}

void Updates::startEngine() {
    look([this](const Look& seen) {
        if (!seen.folder.complete) {
            return;
        }
        for (const QString& unit : m_settings.engineUnits) {
            m_units.ask(unit, [this, unit](const auto& state, const auto&) {
                if (!state || !state->installed || state->isActive()) {
                    return;
                }
                logInfo("updates: signatures are there, starting " + unit.toStdString());
                m_units.start(unit, [unit](const auto& begun, const QString& why) {
                    if (!begun || !begun->isActive()) {
                        logWarning("updates: " + unit.toStdString() + " did not start. " +
                                   why.toStdString());
                    }
                });
            });
        }
    });
}

} // namespace korvale::agent
