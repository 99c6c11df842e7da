#include "agent_link/BusMessages.h"

#include "platform/BusCalls.h"

#include <QDBusError>

#include <gtest/gtest.h>

namespace korvale {
namespace {

TEST(BusMessages, ACallThatIsAnsweredAlreadyHasNotFailed) {
    const QDBusMessage request = requestMessage({});
    EXPECT_FALSE(hasFailedAtOnce(QDBusPendingCall::fromCompletedCall(request.createReply())));
}

TEST(BusMessages, ACallOnABusThatHasGoneHasFailed) {
    const QDBusError error(QDBusError::Disconnected, QStringLiteral("gone"));
    EXPECT_TRUE(hasFailedAtOnce(QDBusPendingCall::fromError(error)));
}

} // namespace
} // namespace korvale
