#include "platform/StartEnvironment.h"

#include <QSet>
#include <QString>

#include <unistd.h>

namespace korvale {

StartEnvironment::StartEnvironment() {
    for (char** assignment = environ; assignment && *assignment; ++assignment) {
        m_assignments.emplace_back(*assignment);
    }
}

QProcessEnvironment StartEnvironment::variables() const {
    QProcessEnvironment result = QProcessEnvironment::systemEnvironment();
    const QStringList present = result.keys();
    QSet<QString> added(present.begin(), present.end());
    for (const QByteArray& assignment : m_assignments) {
        const qsizetype equals = assignment.indexOf('=');
        const QByteArray name = assignment.left(equals);
        const QByteArray value = assignment.mid(equals + 1);
        const QString key = QString::fromLocal8Bit(name);
        added.remove(key);
        if (equals > 0 && qgetenv(name.constData()) != value) {
            result.insert(key, QString::fromLocal8Bit(value));
        }
    }
    for (const QString& name : added) {
        result.remove(name);
    }
    return result;
}

} // namespace korvale
