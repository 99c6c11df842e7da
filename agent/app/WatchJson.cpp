#include "agent/app/WatchJson.h"

#include "agent/app/ThreatJson.h"
#include "agent/app/ThreatLists.h"
#include "agent/watch/Watch.h"

namespace korvale::agent {
namespace {

QString modeOf(const WatchedSystem& system) {
    switch (system.mode) {
    case WatchMode::Full:
        return system.starts ? QStringLiteral("execute") : QStringLiteral("notify");
    case WatchMode::ClosedOnly:
        return system.starts ? QStringLiteral("execute, without moves")
                             : QStringLiteral("notify, without moves");
    case WatchMode::Unasked:
        return QStringLiteral("never");
    case WatchMode::None:
        break;
    }
    return QStringLiteral("failed");
}

} // namespace

QJsonArray watchList(const Watch& watch) {
    QJsonArray list;
    for (const WatchedSystem& system : watch.systems()) {
        QJsonObject object{{QStringLiteral("mode"), modeOf(system)},
                           {QStringLiteral("problem"), QString::fromStdString(system.problem)}};
        insertPath(object, system.point);
        list.append(object);
    }
    return list;
}

QJsonObject watchCounts(const Watch& watch) {
    const WrittenFiles::Counts& counts = watch.written().counts();
    const auto number = [](std::uint64_t value) { return static_cast<qint64>(value); };
    QJsonObject object{{QStringLiteral("judged"), number(counts.judged)},
                       {QStringLiteral("not_scanned"), number(counts.notScanned)},
                       {QStringLiteral("overflows"), number(counts.lost)},
                       {QStringLiteral("waiting"), number(watch.written().waiting())},
                       {QStringLiteral("unanswered"), number(watch.written().unanswered())}};
    if (const GuardPage* guard = watch.guardCounts()) {
        object.insert(QStringLiteral("starts_known"), number(guard->known));
        object.insert(QStringLiteral("starts_asked"), number(guard->asked));
        object.insert(QStringLiteral("starts_refused"), number(guard->refused));
        object.insert(QStringLiteral("starts_timed_out"), number(guard->timedOut));
        object.insert(QStringLiteral("starts_unasked"), number(guard->unasked));
    }
    return object;
}

QJsonObject watchRule(const Watch& watch, const std::string& path) {
    const WatchOptions& options = watch.options();
    const auto quoted = [](const char* key, const std::string& value) {
        return QStringLiteral("%1 = \"%2\"").arg(QLatin1String(key), pathText(value));
    };
    const std::string* const excluded = options.excluded.match(path);
    const std::string* const folder = options.folderOf(path);
    QString rule;
    if (options.own.match(path) != nullptr) {
        rule = QStringLiteral("a folder of the agent's own");
    } else if (excluded != nullptr) {
        rule = quoted("scan.exclude", *excluded);
    } else if (folder == nullptr) {
        rule = QStringLiteral("no folder of watch.folders holds it; scans look at it");
    } else {
        rule = quoted("watch.folders", *folder);
    }
    return {{QStringLiteral("watched"), folder != nullptr}, {QStringLiteral("rule"), rule}};
}

} // namespace korvale::agent
