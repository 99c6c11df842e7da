#pragma once

#include <QDBusArgument>
#include <QMap>
#include <QString>
#include <QVariantMap>

namespace korvale::agent {

/// The D-Bus type (sa{sv}) of who is asked about.
struct PolkitSubject {
    QString kind;
    QVariantMap details;
};

/// The D-Bus type (bba{ss}) of the answer.
struct PolkitResult {
    bool isAuthorized = false;
    bool isChallenge = false;
    QMap<QString, QString> details;
};

inline QDBusArgument& operator<<(QDBusArgument& argument, const PolkitSubject& subject) {
    argument.beginStructure();
    argument << subject.kind << subject.details;
    argument.endStructure();
    return argument;
}

inline const QDBusArgument& operator>>(const QDBusArgument& argument, PolkitSubject& subject) {
    argument.beginStructure();
    argument >> subject.kind >> subject.details;
    argument.endStructure();
    return argument;
}

inline QDBusArgument& operator<<(QDBusArgument& argument, const PolkitResult& result) {
    argument.beginStructure();
    argument << result.isAuthorized << result.isChallenge << result.details;
    argument.endStructure();
    return argument;
}

inline const QDBusArgument& operator>>(const QDBusArgument& argument, PolkitResult& result) {
    argument.beginStructure();
    argument >> result.isAuthorized >> result.isChallenge >> result.details;
    argument.endStructure();
    return argument;
}

} // namespace korvale::agent

Q_DECLARE_METATYPE(korvale::agent::PolkitSubject)
Q_DECLARE_METATYPE(korvale::agent::PolkitResult)
