#include "platform/PortalSaveDialog.h"

#include "fakes/FakeBusService.h"
#include "fakes/WaitUntil.h"

#include <QDBusObjectPath>

#include <gtest/gtest.h>

namespace korvale {
namespace {

using namespace Qt::StringLiterals;
using fakes::FakeBusService;
using fakes::PrivateSessionBus;

class PortalSaveDialogTest : public testing::Test {
protected:
    PortalSaveDialogTest() {
        portal.answer = [this](const QDBusMessage& call) {
            if (call.member() != "SaveFile"_L1) {
                return call.createReply();
            }
            const QString token =
                qdbus_cast<QVariantMap>(call.arguments().at(2))[u"handle_token"_s].toString();
            request = u"/org/freedesktop/portal/desktop/request/"_s +
                      call.service().mid(1).replace(u'.', u'_') + u'/' + token;
            return call.createReply(QVariant::fromValue(QDBusObjectPath(request)));
        };
    }
    /// Asks, and keeps what comes of it.
    void ask() {
        dialog = std::make_unique<PortalSaveDialog>(bus.connect());
        QObject::connect(dialog.get(), &PortalSaveDialog::decided,
                         [this](const QUrl& place) { places << place; });
        QObject::connect(dialog.get(), &PortalSaveDialog::missing, [this] { ++missing; });
        dialog->ask(u"x11:2a"_s, u"Title"_s, u"threats.csv"_s);
    }
    void open() {
        portal.appear();
        ask();
        ASSERT_TRUE(waitUntil([this] { return !request.isEmpty(); }));
    }
    QDBusMessage response(uint code, const QString& place) const {
        auto signal =
            QDBusMessage::createSignal(request, u"org.freedesktop.portal.Request"_s, u"Response"_s);
        QVariantMap results;
        if (!place.isEmpty()) {
            results[u"uris"_s] = QStringList(place);
        }
        signal << code << results;
        return signal;
    }
    bool isDecided() {
        return waitUntil([this] { return !places.isEmpty(); });
    }

    PrivateSessionBus bus;
    FakeBusService portal{bus, u"org.freedesktop.portal.Desktop"_s,
                          u"/org/freedesktop/portal/desktop"_s,
                          u"org.freedesktop.portal.FileChooser"_s};
    std::unique_ptr<PortalSaveDialog> dialog;
    QString request;
    QList<QUrl> places;
    int missing = 0;
};

TEST_F(PortalSaveDialogTest, GivesThePlaceThatThePersonChose) {
    open();
    const QVariantList asked = portal.callsOf(u"SaveFile"_s).at(0).arguments();
    EXPECT_EQ(asked.at(0), u"x11:2a"_s);
    EXPECT_EQ(asked.at(1), u"Title"_s);
    EXPECT_EQ(qdbus_cast<QVariantMap>(asked.at(2))[u"current_name"_s], u"threats.csv"_s);
    portal.reply(response(0, u"file:///home/ada/b%20%C3%A4.csv"_s));
    ASSERT_TRUE(isDecided());
    EXPECT_EQ(places, QList<QUrl>{QUrl::fromLocalFile(u"/home/ada/b ä.csv"_s)});
    EXPECT_EQ(missing, 0);
}

TEST_F(PortalSaveDialogTest, GivesNoPlaceWhenThePersonChoseNone) {
    open();
    portal.reply(response(1, {}));
    ASSERT_TRUE(isDecided());
    EXPECT_EQ(places, QList<QUrl>{QUrl()});
}

TEST_F(PortalSaveDialogTest, AnAnswerWithoutAPlaceIsNone) {
    open();
    portal.reply(response(0, {}));
    ASSERT_TRUE(isDecided());
    EXPECT_EQ(places, QList<QUrl>{QUrl()});
}

TEST_F(PortalSaveDialogTest, WithoutAPortalNobodyWasAsked) {
    ask();
    EXPECT_TRUE(waitUntil([this] { return missing == 1; }));
    EXPECT_TRUE(places.isEmpty());
}

TEST_F(PortalSaveDialogTest, APortalThatHasNoFileDialogsIsNone) {
    portal.answer = [](const QDBusMessage& call) {
        return call.createErrorReply(QDBusError::UnknownInterface, u"no FileChooser here"_s);
    };
    portal.appear();
    ask();
    EXPECT_TRUE(waitUntil([this] { return missing == 1; }));
}

TEST_F(PortalSaveDialogTest, APortalThatSaysNothingIsNoneAndIsToldToCloseItsDialog) {
    portal.answer = [](const QDBusMessage& call) {
        return call.member() == "SaveFile"_L1 ? QDBusMessage() : call.createReply();
    };
    portal.appear();
    ask();
    EXPECT_TRUE(waitUntil([this] { return missing == 1; }));
    EXPECT_TRUE(waitUntil([this] { return !portal.callsOf(u"Close"_s).empty(); }));
}

TEST_F(PortalSaveDialogTest, WhatOthersAnswerIsNotHeard) {
    open();
    FakeBusService other{bus, u"com.example.Other"_s, u"/other"_s, u"com.example.Other"_s};
    other.reply(response(0, u"file:///home/ada/.bashrc"_s));
    other.appear(); // the bus has it before what follows
    portal.reply(response(0, u"file:///home/ada/mine.csv"_s));
    ASSERT_TRUE(isDecided());
    EXPECT_EQ(places, QList<QUrl>{QUrl(u"file:///home/ada/mine.csv"_s)});
}

TEST_F(PortalSaveDialogTest, TheAnswerMayComeBeforeTheReplyButFromThePortalAlone) {
    FakeBusService other{bus, u"com.example.Other"_s, u"/other"_s, u"com.example.Other"_s};
    portal.answer = [&, answer = portal.answer](const QDBusMessage& call) {
        const QDBusMessage reply = answer(call);
        other.reply(response(0, u"file:///home/ada/.bashrc"_s));
        other.appear(); // the bus has it before what follows
        portal.reply(response(0, u"file:///home/ada/mine.csv"_s));
        return reply;
    };
    open();
    ASSERT_TRUE(isDecided());
    EXPECT_EQ(places, QList<QUrl>{QUrl(u"file:///home/ada/mine.csv"_s)});
}

TEST_F(PortalSaveDialogTest, APortalThatGoesTakesTheQuestionAlong) {
    open();
    // Answered on the same connection: the reply to the question is here before.
    portal.reply(QDBusMessage::createSignal(u"/none"_s, u"com.example.None"_s, u"None"_s));
    portal.vanish();
    ASSERT_TRUE(isDecided());
    EXPECT_EQ(places, QList<QUrl>{QUrl()});
}

TEST_F(PortalSaveDialogTest, ADialogThatIsNotWantedAnyMoreIsClosed) {
    open();
    dialog.reset();
    ASSERT_TRUE(waitUntil([this] { return !portal.callsOf(u"Close"_s).empty(); }));
    EXPECT_EQ(portal.callsOf(u"Close"_s).at(0).path(), request);
}

} // namespace
} // namespace korvale
