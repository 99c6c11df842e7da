#include "platform/BusSignals.h"

#include "platform/BusCalls.h"

#include <QStringList>

namespace korvale {
namespace {

QString matchRule(const SignalRule& rule) {
    QStringList parts{QStringLiteral("type='signal'")};
    const auto add = [&parts](const char* key, const QString& value) {
        if (!value.isEmpty()) {
            parts << QLatin1String(key) + QLatin1String("='") + value + u'\'';
        }
    };
    add("sender", rule.sender);
    add("path", rule.path);
    add("interface", rule.interface);
    add("member", rule.member);
    add("arg0", rule.firstArgument);
    return parts.join(u',');
}

} // namespace

bool hearSignals(QDBusConnection bus, const SignalRule& rule, QObject* receiver, const char* slot) {
    const QStringList firstArgument =
        rule.firstArgument.isEmpty() ? QStringList() : QStringList(rule.firstArgument);
    const bool connected = bus.connect(QString(), rule.path, rule.interface, rule.member,
                                       firstArgument, QString(), receiver, slot);
    if (bus.baseService().isEmpty()) {
        // Not Qt's own greeting: it takes the other side for a single peer, which sends everything.
        QDBusMessage addMatch = busCall("AddMatch");
        addMatch << matchRule(rule);
        bus.send(addMatch);
    }
    return connected;
}

} // namespace korvale
