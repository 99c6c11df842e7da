#include "agent/ctl/Rendering.h"

#include "agent/base/FileUri.h"
#include "agent/base/Log.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>

namespace korvale::agent {
namespace {

std::string shown(const QJsonValue& value) {
    return printable(value.toVariant().toString().toStdString());
}

std::string moment(const QJsonValue& value) {
    return QDateTime::fromSecsSinceEpoch(value.toInteger())
        .toString(QStringLiteral("yyyy-MM-dd HH:mm"))
        .toStdString();
}

/// The exact path, made harmless.
std::string pathOf(const QJsonObject& object) {
    const auto exact = pathOfUri(object.value(QStringLiteral("uri")).toString().toStdString());
    return exact ? printable(*exact) : shown(object.value(QStringLiteral("path")));
}

std::string line(const std::string& title, const std::string& text) {
    std::string padded = title + ':';
    padded.resize(std::max<std::size_t>(padded.size() + 1, 14), ' ');
    return padded + text + '\n';
}

std::string engineText(const QJsonObject& engine) {
    if (!engine.value(QStringLiteral("reachable")).toBool()) {
        return "not reachable. " + shown(engine.value(QStringLiteral("problem")));
    }
    const QJsonValue time = engine.value(QStringLiteral("signatures"));
    return shown(engine.value(QStringLiteral("version"))) +
           (time.toInteger() == 0 ? "" : ", signatures of " + moment(time)) +
           (engine.value(QStringLiteral("fresh")).toBool() ? "" : " (too old)");
}

std::string scanText(const QJsonObject& scan) {
    std::string text = "number " + shown(scan.value(QStringLiteral("number"))) + ", " +
                       shown(scan.value(QStringLiteral("kind")));
    const std::string path = pathOf(scan);
    text += path.empty() ? "" : " " + path;
    text += ", " + shown(scan.value(QStringLiteral("analysed"))) + " files";
    if (scan.contains(QStringLiteral("found"))) {
        text += ", " + shown(scan.value(QStringLiteral("found"))) + " bad";
    }
    if (scan.contains(QStringLiteral("not_scanned"))) {
        text += ", " + shown(scan.value(QStringLiteral("not_scanned"))) + " not scanned";
    }
    if (scan.contains(QStringLiteral("ended"))) {
        text += scan.value(QStringLiteral("stopped")).toBool() ? ", stopped " : ", ended ";
        text += moment(scan.value(QStringLiteral("ended")));
    }
    return text;
}

std::string exploitsText(const QJsonObject& exploits) {
    const std::string problem = shown(exploits.value(QStringLiteral("problem")));
    const bool heard = exploits.value(QStringLiteral("heard")).toBool();
    std::string text = shown(exploits.value(QStringLiteral("terminated"))) + " terminated, " +
                       shown(exploits.value(QStringLiteral("blocked"))) + " blocked";
    if (!heard) {
        text += ", not heard of now";
    }
    return problem.empty() ? text : text + " (" + problem + ")";
}

std::string statusText(const QJsonObject& answer) {
    const QJsonObject threats = answer.value(QStringLiteral("threats")).toObject();
    std::string text =
        line("Agent", shown(answer.value(QStringLiteral("version")))) +
        line("Engine", engineText(answer.value(QStringLiteral("engine")).toObject())) +
        line("Threats", shown(threats.value(QStringLiteral("detected"))) + " detected, " +
                            shown(threats.value(QStringLiteral("quarantined"))) +
                            " in quarantine, " + shown(threats.value(QStringLiteral("waived"))) +
                            " waived");
    for (const auto& [key, title] :
         {std::pair("scan", "Scan"), std::pair("last_scan", "Last scan")}) {
        const QJsonValue scan = answer.value(QLatin1String(key));
        text += scan.isObject() ? line(title, scanText(scan.toObject())) : "";
    }
    for (const QJsonValue value : answer.value(QStringLiteral("watch")).toArray()) {
        const QJsonObject watch = value.toObject();
        const std::string problem = shown(watch.value(QStringLiteral("problem")));
        text += line("Watch", shown(watch.value(QStringLiteral("path"))) + ": " +
                                  shown(watch.value(QStringLiteral("mode"))) +
                                  (problem.empty() ? "" : " (" + problem + ")"));
    }
    const QJsonObject exploits = answer.value(QStringLiteral("exploits")).toObject();
    text += exploits.isEmpty() ? "" : line("Exploits", exploitsText(exploits));
    const QJsonObject update = answer.value(QStringLiteral("update")).toObject();
    const std::string outcome = shown(update.value(QStringLiteral("outcome")));
    text += outcome.empty() ? "" : line("Update", outcome);
    for (const QJsonValue problem : answer.value(QStringLiteral("problems")).toArray()) {
        text += line("Problem", shown(problem));
    }
    return text;
}

std::string threatText(const QJsonObject& threat) {
    return shown(threat.value(QStringLiteral("number"))) + "  " +
           shown(threat.value(QStringLiteral("id"))).substr(0, 16) + "  " +
           shown(threat.value(QStringLiteral("state"))) + "  " +
           shown(threat.value(QStringLiteral("kind"))) + "  " +
           moment(threat.value(QStringLiteral("last_seen"))) + "  " +
           shown(threat.value(QStringLiteral("name"))) + "  " + pathOf(threat) + '\n';
}

std::string threatsText(const QJsonObject& answer) {
    std::string text;
    for (const QJsonValue threat : answer.value(QStringLiteral("threats")).toArray()) {
        text += threatText(threat.toObject());
    }
    return text.empty() ? "There are no threats.\n" : text;
}

std::string resultsText(const QJsonObject& answer) {
    std::string text;
    for (const QJsonValue value : answer.value(QStringLiteral("results")).toArray()) {
        const QJsonObject result = value.toObject();
        const std::string reason = shown(result.value(QStringLiteral("reason")));
        text += shown(result.value(QStringLiteral("outcome"))) + ": " + pathOf(result) +
                (reason.empty() ? "" : " (" + reason + ")") + '\n';
    }
    return text;
}

std::string devicesText(const QJsonObject& answer) {
    std::string text;
    for (const QJsonValue value : answer.value(QStringLiteral("devices")).toArray()) {
        const QJsonObject device = value.toObject();
        std::string words;
        for (auto member = device.begin(); member != device.end(); ++member) {
            words += (words.empty() ? "" : ", ") + printable(member.key().toStdString()) + " " +
                     shown(member.value());
        }
        text += words + '\n';
    }
    return text.empty() ? "No devices were seen.\n" : text;
}

std::string policyText(const QJsonObject& answer) {
    const QJsonObject policy = answer.value(QStringLiteral("policy")).toObject();
    std::string text;
    for (auto member = policy.begin(); member != policy.end(); ++member) {
        const QJsonValue value = member.value();
        const std::string shownValue =
            value.isArray()
                ? printable(
                      QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact).toStdString())
                : shown(value);
        text += printable(member.key().toStdString()) + " = " + shownValue + '\n';
    }
    const std::string problem = shown(answer.value(QStringLiteral("problem")));
    return text + (problem.empty() ? "" : line("Problem", problem));
}

std::string whyText(const QJsonObject& answer) {
    return line("Path", pathOf(answer)) +
           line("Watched",
                std::string(answer.value(QStringLiteral("watched")).toBool() ? "yes" : "no") +
                    " (" + shown(answer.value(QStringLiteral("rule"))) + ")") +
           line("Verdict", shown(answer.value(QStringLiteral("verdict"))));
}

} // namespace

std::string renderAnswer(const QString& method, const QJsonObject& answer) {
    if (answer.contains(QStringLiteral("results"))) {
        return resultsText(answer);
    }
    struct Renderer {
        QLatin1String method;
        std::string (*render)(const QJsonObject&);
    };
    static constexpr Renderer kRenderers[] = {
        {QLatin1String("Status"), statusText},   {QLatin1String("Threats"), threatsText},
        {QLatin1String("Devices"), devicesText}, {QLatin1String("Policy"), policyText},
        {QLatin1String("Why"), whyText},
    };
    for (const Renderer& renderer : kRenderers) {
        if (renderer.method == method) {
            return renderer.render(answer);
        }
    }
    const QJsonValue scan = answer.value(QStringLiteral("scan"));
    if (method == QLatin1String("LastScan")) {
        return scanText(answer.value(QStringLiteral("last_scan")).toObject()) + "\n";
    }
    return scan.isUndefined() ? "" : "Scan " + shown(scan) + " has been asked for.\n";
}

} // namespace korvale::agent
