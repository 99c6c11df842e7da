#include "BusEar.h"

#include <gtest/gtest.h>

namespace korvale::sim {

BusEar::BusEar(const QString& address) {
    static int count = 0;
    m_name = QStringLiteral("bus-ear-%1").arg(++count);
    QDBusConnection connection = QDBusConnection::connectToBus(address, m_name);
    for (const char* below : {"", ".agent", ".agent_server", ".devicecontrol", ".driver", ".exe",
                              ".halyx", ".policy", ".process", ".quillmar", ".timer"}) {
        EXPECT_TRUE(connection.connect(QString(), QStringLiteral("/com/korvale/agent_server"),
                                       QStringLiteral("com.korvale") + QLatin1String(below),
                                       QString(), this, SLOT(hear(QDBusMessage))));
    }
}

BusEar::~BusEar() {
    QDBusConnection::disconnectFromBus(m_name);
}

void BusEar::hear(const QDBusMessage& signal) {
    heard.append(signal.interface() + u'.' + signal.member());
    if (signal.member() == QLatin1String("Message")) {
        messages.append(signal);
    }
}

} // namespace korvale::sim
