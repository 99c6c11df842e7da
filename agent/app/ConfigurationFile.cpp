#include "agent/app/ConfigurationFile.h"

#include "agent/base/Log.h"

#include <QDateTime>

namespace korvale::agent {

bool ConfigurationFile::take(ConfigurationResult result) {
    if (const auto* problem = std::get_if<std::string>(&result)) {
        m_problem = QString::fromStdString(printable(m_file + ": " + *problem));
        logError(m_problem.toStdString());
        return false;
    }
    m_current = std::get<Configuration>(std::move(result));
    m_problem.clear();
    m_time = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    return true;
}

} // namespace korvale::agent
