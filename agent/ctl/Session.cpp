#include "agent/ctl/Session.h"

#include "agent/base/ControlInterface.h"
#include "agent/base/Log.h"
#include "agent/ctl/Invocation.h"
#include "agent/ctl/Rendering.h"
#include "agent/ctl/Version.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace korvale::agent {
namespace {

constexpr int kMostMissing = 2;

/// The scan of that number in a list of scans; empty: it is not there.
QJsonObject scanNumbered(const QJsonValue& list, qint64 number) {
    for (const QJsonValue value : list.toArray()) {
        QJsonObject scan = value.toObject();
        if (scan.value(QStringLiteral("number")).toInteger() == number) {
            return scan;
        }
    }
    return {};
}

} // namespace

Session::Session(Call call, Pause pause, std::FILE* input, std::FILE* output, std::FILE* errors)
    : m_call(std::move(call)),
      m_pause(std::move(pause)),
      m_input(input),
      m_output(output),
      m_errors(errors) {}

void Session::say(std::FILE* to, const std::string& text) const {
    std::fwrite(text.data(), 1, text.size(), to);
    std::fflush(to);
}

int Session::run(const std::vector<std::string>& words) {
    std::string error;
    const auto invocation = readCommandLine(words, error);
    if (!invocation) {
        say(m_errors,
            "korvale-agentctl: " + printable(error) + "\nTry \"korvale-agentctl --help\".\n");
        return Misused;
    }
    switch (invocation->kind) {
    case Invocation::Kind::Help:
        say(m_output, commandHelp());
        return Done;
    case Invocation::Kind::Version:
        say(m_output, std::string("korvale-agentctl ") + kVersion + '\n');
        return Done;
    case Invocation::Kind::Call:
        break;
    }
    if (invocation->confirm && !confirmed()) {
        say(m_errors, "Nothing was deleted.\n");
        return NotDone;
    }
    const CallResult result = m_call(invocation->method, invocation->arguments);
    const bool begun = result.kind == CallResult::Kind::Answered &&
                       result.answer.value(QStringLiteral("ok")).toBool();
    if (invocation->wait && begun) {
        return waitForScan(result.answer, invocation->json);
    }
    return report(invocation->method, result, invocation->json);
}

bool Session::confirmed() const {
    say(m_errors, "Delete for ever? [y/N] ");
    const int answer = std::fgetc(m_input);
    return answer == 'y' || answer == 'Y';
}

int Session::report(const QString& method, const CallResult& result, bool json) {
    if (result.kind != CallResult::Kind::Answered) {
        say(m_errors, "korvale-agentctl: " + printable(result.trouble.toStdString()) + '\n');
        return result.kind == CallResult::Kind::NoAgent ? NoAgent : NotDone;
    }
    if (json) {
        say(m_output, QJsonDocument(result.answer).toJson(QJsonDocument::Indented).toStdString());
    } else {
        say(m_output, renderAnswer(method, result.answer));
    }
    if (result.answer.value(QStringLiteral("ok")).toBool()) {
        return Done;
    }
    if (!json) {
        const QString error = result.answer.value(QStringLiteral("error")).toString();
        say(m_errors, "korvale-agentctl: " + printable(error.toStdString()) + '\n');
    }
    const QString refused = QString::fromLatin1(control::kRefused.data(),
                                                static_cast<qsizetype>(control::kRefused.size()));
    return result.answer.value(QStringLiteral("code")).toString() == refused ? Refused : NotDone;
}

int Session::waitForScan(const QJsonObject& answer, bool json) {
    const qint64 number = answer.value(QStringLiteral("scan")).toInteger();
    int missing = 0;
    for (;;) {
        m_pause();
        const CallResult result = m_call(QStringLiteral("Status"), {});
        if (result.kind != CallResult::Kind::Answered ||
            !result.answer.value(QStringLiteral("ok")).toBool()) {
            return report(QStringLiteral("Status"), result, json);
        }
        const QJsonObject ended =
            scanNumbered(result.answer.value(QStringLiteral("ended_scans")), number);
        const bool goesOn =
            !scanNumbered(result.answer.value(QStringLiteral("scans")), number).isEmpty();
        // One that waited and was stopped is in neither list for a moment.
        missing = goesOn ? 0 : missing + 1;
        if (ended.isEmpty() && missing < kMostMissing) {
            continue;
        }
        QJsonObject told{{QStringLiteral("ok"), !ended.isEmpty()},
                         {QStringLiteral("last_scan"), ended}};
        if (ended.isEmpty()) {
            told.insert(QStringLiteral("error"), QStringLiteral("The scan is gone."));
            told.insert(QStringLiteral("code"), QStringLiteral("failed"));
        }
        const int status =
            report(QStringLiteral("LastScan"), {CallResult::Kind::Answered, told, {}}, json);
        const bool bad = ended.value(QStringLiteral("found")).toInteger() > 0;
        return status == Done && bad ? ThreatsFound : status;
    }
}

} // namespace korvale::agent
