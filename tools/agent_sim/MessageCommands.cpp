#include "agent/publish/NotificationNames.h"
#include "agent_sim/Agent.h"
#include "agent_sim/CommandHandlers.h"
#include "agent_sim/Words.h"

#include <QJsonDocument>

namespace korvale::sim::message_commands {
namespace {

Outcome posted(Agent& agent, const char* notification) {
    return Outcome::of(agent.post(QStringLiteral("com.korvale.") + QLatin1String(notification)));
}

Outcome told(Agent& agent, const char* file, const QJsonObject& content, const char* notification) {
    return Outcome::of(
        agent.writeAndPost(QLatin1String(file), content,
                           QStringLiteral("com.korvale.") + QLatin1String(notification)));
}

Outcome connection(Agent& agent, const QString& word, const char* file, const char* connected,
                   const char* lost) {
    const std::optional<bool> on = onOff(word);
    if (!on) {
        return Outcome::error(onOrOff());
    }
    return told(agent, file, {{QStringLiteral("Connected"), *on}}, *on ? connected : lost);
}

Outcome written(Agent& agent, const QString& text, const QDate& day, const QString& name) {
    const std::optional<QString> file = agent.updaterStatus().write(text, day, name);
    return file ? Outcome::ok(*file) : Outcome::error(agent.updaterStatus().error());
}

} // namespace

Outcome start(Agent& agent, const QStringList& /*arguments*/) {
    return posted(agent, "agent.started");
}

Outcome stop(Agent& agent, const QStringList& /*arguments*/) {
    return posted(agent, "agent.stopped");
}

Outcome running(Agent& agent, const QStringList& /*arguments*/) {
    return posted(agent, "agent.running");
}

Outcome halyx(Agent& agent, const QStringList& arguments) {
    return connection(agent, arguments[0], "halyx_host_status.log", "halyx.connected",
                      "halyx.notconnected");
}

Outcome quillmar(Agent& agent, const QStringList& arguments) {
    return connection(agent, arguments[0], "quillmar_status.log", "quillmar.connected",
                      "quillmar.notconnected");
}

Outcome driver(Agent& agent, const QStringList& arguments) {
    const QString& word = arguments[0];
    if (word == QLatin1String("value") && arguments.size() == 2) {
        agent.settings().driverValue = arguments[1];
        return Outcome::ok();
    }
    const bool connected = word == QLatin1String("connected");
    if ((!connected && word != QLatin1String("lost")) || arguments.size() != 1) {
        return Outcome::error(QStringLiteral("lost, connected or value TEXT is needed"));
    }
    agent.settings().driverValue = connected ? QStringLiteral("1") : QStringLiteral("0");
    return posted(agent, connected ? "driver.connected" : "driver.notconnected");
}

Outcome exeBlocked(Agent& agent, const QStringList& arguments) {
    return told(agent, "exe_blocked.log", {{QStringLiteral("BlockedExePath"), arguments[0]}},
                "exe.blocked");
}

Outcome processTerminated(Agent& agent, const QStringList& arguments) {
    return told(agent, "process_terminated.log",
                {{QStringLiteral("ProcessTerminated"), arguments[0]}}, "process.terminated");
}

Outcome processBlocked(Agent& agent, const QStringList& arguments) {
    const QJsonObject content{{QStringLiteral("ProcessActionBlocked"), arguments[0]}};
    // The file that the mask names, beside the one that belongs to the notification.
    if (!agent.hostCache().write(QStringLiteral("process_action_blocked.log"), content)) {
        return Outcome::error(agent.hostCache().error());
    }
    return told(agent, "process_blocked.log", content, "process.blocked");
}

Outcome consumerNotification(Agent& agent, const QStringList& arguments) {
    QJsonObject content{{QStringLiteral("ConsumerNotificationMessage"), arguments[0]}};
    if (arguments.size() == 2) {
        content.insert(QStringLiteral("ConsumerNotificationUrl"), arguments[1]);
    }
    return told(agent, "consumer_notification.log", content, "consumer_notification");
}

Outcome analyzer(Agent& agent, const QStringList& arguments) {
    return told(agent, "analyzer_status.log", {{QStringLiteral("CurrentFile"), arguments[0]}},
                "analyzerstatus_messages");
}

Outcome sondar(Agent& agent, const QStringList& arguments) {
    const QJsonObject content{{QStringLiteral("CMD_"), QStringLiteral("SondarNotificationMessage")},
                              {QStringLiteral("VALU"), arguments[0]}};
    return message(agent,
                   {QString::fromUtf8(QJsonDocument(content).toJson(QJsonDocument::Compact))});
}

Outcome message(Agent& agent, const QStringList& arguments) {
    return agent.bus().sendMessage(arguments[0].toUtf8())
               ? Outcome::ok()
               : Outcome::error(QStringLiteral("not on the bus, nothing sent"));
}

Outcome post(Agent& agent, const QStringList& arguments) {
    const QString name = fullNotificationName(arguments[0]);
    if (name.isEmpty()) {
        return Outcome::error(QStringLiteral("none of the twenty notifications"));
    }
    return Outcome::of(agent.post(name));
}

Outcome updateStatus(Agent& agent, const QStringList& arguments) {
    return written(agent, arguments[0], QDate::currentDate(), QString());
}

Outcome updateStatusAs(Agent& agent, const QStringList& arguments) {
    const QDate day = QDate::fromString(arguments[1], Qt::ISODate);
    if (!day.isValid()) {
        return Outcome::error(QStringLiteral("no such date (yyyy-mm-dd is needed)"));
    }
    return written(agent, arguments[2], day, arguments[0]);
}

} // namespace korvale::sim::message_commands
