#include "agent_sim/Scenario.h"

#include <QFile>

#include <optional>

namespace korvale::sim {
namespace {

std::optional<QString> expanded(const QString& text, const QProcessEnvironment& environment,
                                QString& missing) {
    QString result;
    qsizetype from = 0;
    for (qsizetype open = text.indexOf(u"${"); open >= 0; open = text.indexOf(u"${", from)) {
        const qsizetype close = text.indexOf(u'}', open);
        if (close < 0) {
            break;
        }
        const QString name = text.mid(open + 2, close - open - 2);
        if (!environment.contains(name)) {
            missing = name;
            return std::nullopt;
        }
        result += text.mid(from, open - from) + environment.value(name);
        from = close + 1;
    }
    return result + text.mid(from);
}

} // namespace

Scenario readScenario(const QString& text, const QProcessEnvironment& environment) {
    Scenario scenario;
    int number = 0;
    for (const QString& line : text.split(u'\n')) {
        ++number;
        ParsedLine parsed = parseLine(line);
        for (QString& argument : parsed.arguments) {
            QString missing;
            const std::optional<QString> value = expanded(argument, environment, missing);
            if (!value) {
                parsed.problem =
                    QStringLiteral("the environment variable %1 is not set").arg(missing);
                break;
            }
            argument = *value;
        }
        if (!parsed.problem.isEmpty()) {
            scenario.problem = QStringLiteral("line %1: %2").arg(number).arg(parsed.problem);
            return scenario;
        }
        if (!parsed.isEmpty()) {
            scenario.lines.push_back(std::move(parsed));
        }
    }
    return scenario;
}

Scenario loadScenario(const QString& file) {
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly)) {
        return {{}, source.errorString()};
    }
    return readScenario(QString::fromUtf8(source.readAll()),
                        QProcessEnvironment::systemEnvironment());
}

} // namespace korvale::sim
