// "--notify": the built program as a file manager starts it, and what it shows on the desktop.
#include "core/TerminalFixture.h"
#include "fakes/FakeBusService.h"
#include "fakes/SilentSocket.h"

#include <gtest/gtest.h>

namespace korvale {
namespace {

/// A notification service without markup.
class Bubbles {
public:
    Bubbles() {
        m_service.answer = [this](const QDBusMessage& call) {
            if (hangs) {
                return QDBusMessage();
            }
            return call.member() == QLatin1String("GetCapabilities")
                       ? call.createReply(QVariant(QStringList{QStringLiteral("body")}))
                       : call.createReply(QVariant(7U));
        };
        m_service.appear();
    }
    [[nodiscard]] const QString& address() const { return m_bus.address(); }
    [[nodiscard]] std::vector<QDBusMessage> shown() const {
        return m_service.callsOf(QStringLiteral("Notify"));
    }

    bool hangs = false;

private:
    static QString name() { return QStringLiteral("org.freedesktop.Notifications"); }

    fakes::PrivateSessionBus m_bus;
    fakes::FakeBusService m_service{m_bus, name(), QStringLiteral("/org/freedesktop/Notifications"),
                                    name()};
};

class TerminalNotification : public TerminalFixture {
protected:
    Ending clicked(const QStringList& arguments, const char* locale = "C.UTF-8") {
        ProgramRun run;
        prepare(run);
        run.set("DBUS_SESSION_BUS_ADDRESS", m_sessionBus);
        run.set("LC_ALL", QString::fromLatin1(locale));
        run.start(arguments);
        return endingOf(run);
    }
    [[nodiscard]] QStringList scan(const QString& folder) const {
        return {QStringLiteral("--scan"), QStringLiteral("--notify"), QStringLiteral("--"), folder};
    }
    [[nodiscard]] QStringList bodies() const {
        QStringList all;
        for (const QDBusMessage& call : m_bubbles.shown()) {
            all << call.arguments().value(4).toString();
        }
        return all;
    }

    const Ending m_noAgent{3, {}, QStringLiteral("korvale-ui: No agent is running.\n")};
    Bubbles m_bubbles;
    QString m_sessionBus = m_bubbles.address();
};

TEST_F(TerminalNotification, WhoeverClickedIsToldThatNoAgentRuns) {
    EXPECT_EQ(clicked(scan(m_toScan)), m_noAgent);
    ASSERT_EQ(m_bubbles.shown().size(), 1U);
    const QVariantList arguments = m_bubbles.shown().front().arguments();
    EXPECT_EQ(arguments.value(0), QStringLiteral("KorvaleUI"));
    EXPECT_EQ(arguments.value(2), QStringLiteral("com.korvale.ui"));
    EXPECT_EQ(bodies(), QStringList(QStringLiteral("Scan for threats\nNo agent is running.")));
    const auto hints = qdbus_cast<QVariantMap>(arguments.value(6));
    EXPECT_FALSE(hints.contains(QStringLiteral("desktop-entry")))
        << "some desktops would take it away with the program";
}

TEST_F(TerminalNotification, IsInTheUsersLanguage) {
    EXPECT_EQ(
        clicked({QStringLiteral("--check-updates"), QStringLiteral("--notify")}, "de_DE.UTF-8")
            .status,
        3);
    EXPECT_EQ(bodies(), QStringList(QStringLiteral("Nach Updates suchen\nEs läuft kein Agent.")));
}

TEST_F(TerminalNotification, ARefusalAndWhatIsNoFolderAreTold) {
    startAgent();
    m_agent.tell(QStringLiteral(R"(set-reply SCAN {"RESP":"not\u001b now"})"));
    EXPECT_EQ(clicked(scan(m_toScan)).status, 2);
    write(m_folder + QStringLiteral("/file"), "x");
    EXPECT_EQ(clicked(scan(m_folder + QStringLiteral("/file"))).status, 2);
    EXPECT_EQ(
        bodies(),
        (QStringList{QStringLiteral("Scan for threats\nThe agent refused: not[U+001B] now"),
                     QStringLiteral("Scan for threats\n%1/file is no folder that can be scanned: "
                                    "Not a directory")
                         .arg(m_folder)}));
}

TEST_F(TerminalNotification, SeveralComplaintsAreOneNotification) {
    startAgent();
    m_agent.tell(QStringLiteral(R"(set-reply SCAN {"RESP":"no"})"));
    EXPECT_EQ(clicked(scan(m_toScan) << m_more).status, 2);
    EXPECT_EQ(bodies(), QStringList(QStringLiteral("Scan for threats\nThe agent refused: no")));
}

TEST_F(TerminalNotification, WhatTheAgentDoesIsNotTold) {
    startAgent();
    EXPECT_EQ(clicked(scan(m_toScan)),
              (Ending{0, QStringLiteral("The agent scans %1\n").arg(m_toScan), {}}));
    EXPECT_EQ(bodies(), QStringList());
}

TEST_F(TerminalNotification, WithoutTheOptionNothingIsShown) {
    EXPECT_EQ(clicked({QStringLiteral("--scan"), m_toScan}), m_noAgent);
    EXPECT_EQ(bodies(), QStringList());
}

TEST_F(TerminalNotification, NeitherAServiceNorABusThatHangsKeepsTheProgram) {
    m_bubbles.hangs = true;
    EXPECT_EQ(clicked(scan(m_toScan)), m_noAgent);
    const QString path = m_folder + QStringLiteral("/hanging");
    const SilentSocket hanging(path.toUtf8());
    m_sessionBus = QStringLiteral("unix:path=") + path;
    EXPECT_EQ(clicked(scan(m_toScan)), m_noAgent);
    m_sessionBus = QStringLiteral("unix:path=/nonexistent/session");
    EXPECT_EQ(clicked(scan(m_toScan)), m_noAgent);
}

} // namespace
} // namespace korvale
