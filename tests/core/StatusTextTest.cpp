#include "core/StatusText.h"

#include "core/StatusProperties.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

// Without translators every key is its own text.

namespace korvale {
namespace {

AppState stateWithThreats() {
    AppState state;
    state.agentIsAway = false;
    state.newThreatCount = 3;
    state.currentScanItem = QStringLiteral("/home/ada/secret");
    state.policyName = QStringLiteral("Office \u202E\"quoted\"");
    return state;
}

QVariantMap propertiesOf(const AppState& state) {
    return statusProperties(statusReport(state));
}

QJsonObject object(const QByteArray& line) {
    EXPECT_EQ(line.count('\n'), 1);
    EXPECT_TRUE(line.endsWith('\n'));
    return QJsonDocument::fromJson(line).object();
}

TEST(StatusText, OneLineSaysWhy) {
    EXPECT_EQ(statusText(StatusForm::Line, StatusAnswer::Known, propertiesOf(stateWithThreats())),
              "HPS_WhyThreats\n");
    EXPECT_EQ(statusText(StatusForm::Line, StatusAnswer::NotRunning, {}), "HPS_StatusNotRunning\n");
    EXPECT_EQ(statusText(StatusForm::Line, StatusAnswer::NoAnswer, {}), "HPS_StatusNoAnswer\n");
}

TEST(StatusText, JsonHasTheDocumentedMembers) {
    const QJsonObject json =
        object(statusText(StatusForm::Json, StatusAnswer::Known, propertiesOf(stateWithThreats())));
    EXPECT_EQ(json.keys(), (QStringList{QStringLiteral("agent"), QStringLiteral("color"),
                                        QStringLiteral("counts"), QStringLiteral("driver"),
                                        QStringLiteral("lastScanEnd"), QStringLiteral("policy"),
                                        QStringLiteral("reason"), QStringLiteral("running"),
                                        QStringLiteral("severity"), QStringLiteral("state"),
                                        QStringLiteral("updater"), QStringLiteral("version")}));
    EXPECT_EQ(json[u"version"].toInt(), 1);
    EXPECT_EQ(json[u"state"].toString(), u"new-threats");
    EXPECT_EQ(json[u"color"].toString(), u"red");
    EXPECT_EQ(json[u"counts"][u"newThreats"].toInt(), 3);
    EXPECT_TRUE(json[u"agent"][u"running"].toBool());
    EXPECT_EQ(json[u"policy"][u"name"].toString(), stateWithThreats().policyName);
    EXPECT_TRUE(json[u"lastScanEnd"].isNull());
}

TEST(StatusText, NamesNoFile) {
    for (const StatusForm form :
         {StatusForm::Line, StatusForm::Json, StatusForm::Waybar, StatusForm::I3StatusRs}) {
        EXPECT_FALSE(statusText(form, StatusAnswer::Known, propertiesOf(stateWithThreats()))
                         .contains("secret"));
    }
}

TEST(StatusText, NotRunningIsAnObjectToo) {
    const QJsonObject json = object(statusText(StatusForm::Json, StatusAnswer::NotRunning, {}));
    EXPECT_FALSE(json[u"running"].toBool(true));
    EXPECT_EQ(json[u"state"].toString(), u"not-running");
    EXPECT_EQ(object(statusText(StatusForm::Json, StatusAnswer::NoAnswer, {}))[u"state"].toString(),
              u"no-answer");
}

TEST(StatusText, BarsGetWhatTheyRead) {
    QVariantMap properties = propertiesOf(stateWithThreats());
    properties[QStringLiteral("Reason")] = QStringLiteral("<b>&\nx");
    const QJsonObject waybar =
        object(statusText(StatusForm::Waybar, StatusAnswer::Known, properties));
    EXPECT_TRUE(waybar[u"text"].toString().startsWith(QStringLiteral("&lt;b&gt;&amp;")));
    EXPECT_FALSE(waybar[u"text"].toString().contains(u'\n'));
    EXPECT_EQ(waybar[u"class"].toString(), u"danger");
    const QJsonObject block =
        object(statusText(StatusForm::I3StatusRs, StatusAnswer::Known, properties));
    EXPECT_EQ(block[u"state"].toString(), u"Critical");
    EXPECT_EQ(block[u"text"].toString(), waybar[u"text"].toString());
    EXPECT_EQ(block[u"short_text"].toString(), u"3");
}

TEST(StatusText, ExitCodesTellTheSeverityExceptToBars) {
    const auto code = [](const char* severity, StatusForm form = StatusForm::Line) {
        return statusExitCode(form, StatusAnswer::Known,
                              {{QStringLiteral("Severity"), QString::fromLatin1(severity)}});
    };
    EXPECT_EQ(code("good"), 0);
    EXPECT_EQ(code("unknown"), 1);
    EXPECT_EQ(code("away"), 1);
    EXPECT_EQ(code("danger"), 2);
    EXPECT_EQ(code("of a later version"), 1);
    EXPECT_EQ(statusExitCode(StatusForm::Json, StatusAnswer::NotRunning, {}), 3);
    EXPECT_EQ(statusExitCode(StatusForm::Line, StatusAnswer::NoAnswer, {}), 4);
    EXPECT_EQ(code("danger", StatusForm::Waybar), 0);
    EXPECT_EQ(statusExitCode(StatusForm::I3StatusRs, StatusAnswer::NotRunning, {}), 0);
}

TEST(StatusText, PropertiesOfAnotherTypeCountAsUnknown) {
    const QVariantMap odd{{QStringLiteral("Severity"), 7},
                          {QStringLiteral("NewThreats"), QStringLiteral("many")}};
    EXPECT_EQ(statusExitCode(StatusForm::Line, StatusAnswer::Known, odd), 1);
    EXPECT_EQ(
        object(statusText(StatusForm::Json, StatusAnswer::Known, odd))[u"counts"][u"newThreats"]
            .toInt(-1),
        0);
}

TEST(StatusOptions, AreReadInAnyOrderAndRefusedWhenTheyDoNotFit) {
    using Form = StatusForm;
    EXPECT_EQ(parseStatusOptions({"--status"}), (StatusOptions{Form::Line, false}));
    EXPECT_EQ(parseStatusOptions({"--watch", "--status", "--json"}),
              (StatusOptions{Form::Json, true}));
    EXPECT_EQ(parseStatusOptions({"--status", "--bar", "waybar"}),
              (StatusOptions{Form::Waybar, false}));
    EXPECT_EQ(parseStatusOptions({"--status", "--bar=i3status-rs", "--watch"}),
              (StatusOptions{Form::I3StatusRs, true}));
    EXPECT_EQ(parseStatusOptions({"--status", "--bar"}), std::nullopt);
    EXPECT_EQ(parseStatusOptions({"--status", "--bar", "polybar"}), std::nullopt);
    EXPECT_EQ(parseStatusOptions({"--status", "--json", "--bar", "waybar"}), std::nullopt);
    EXPECT_EQ(parseStatusOptions({"--status", "--colour"}), std::nullopt);
}

} // namespace
} // namespace korvale
