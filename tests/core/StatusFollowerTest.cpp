#include "core/StatusFollower.h"

#include "core/StatusProperties.h"
#include "fakes/PrivateSessionBus.h"
#include "fakes/WaitUntil.h"

#include <QDBusVirtualObject>

#include <gtest/gtest.h>
#include <vector>

namespace korvale {
namespace {

/// A program that is asked on the connection that it serves: QtDBus has the reply at once.
class QuickProgram final : public QDBusVirtualObject {
public:
    explicit QuickProgram(QDBusConnection bus) : m_bus(std::move(bus)) {
        EXPECT_TRUE(m_bus.registerVirtualObject(QString::fromLatin1(statusPath), this));
        EXPECT_TRUE(m_bus.registerService(QString::fromLatin1(statusService)));
    }
    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& call, const QDBusConnection& connection) override {
        return connection.send(call.createReply(QVariantMap{{QStringLiteral("State"), QString()}}));
    }

private:
    QDBusConnection m_bus;
};

TEST(StatusFollower, AnAnswerThatIsThereAtOnceCounts) {
    fakes::PrivateSessionBus daemon;
    const QDBusConnection bus = daemon.connect();
    const QuickProgram program(bus);
    std::vector<StatusAnswer> told;
    const StatusFollower follower(
        bus, [&told](StatusAnswer answer, const QVariantMap&) { told.push_back(answer); });
    EXPECT_TRUE(waitUntil([&told] { return !told.empty(); }));
    EXPECT_EQ(told, std::vector{StatusAnswer::Known});
}

} // namespace
} // namespace korvale
