#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace korvale::sim {

/// What became of a command.
struct Outcome {
    enum class State { Ok, Error, Waiting, Quit };

    State state = State::Ok;
    QString text;                  ///< the line after "ok" or "error"
    QStringList lines;             ///< printed before it
    std::function<Outcome()> poll; ///< Waiting: asked until it gives something else

    static Outcome ok(const QString& text = QString()) { return {State::Ok, text, {}, {}}; }
    static Outcome error(const QString& text) { return {State::Error, text, {}, {}}; }
    static Outcome waiting(std::function<Outcome()> poll) {
        return {State::Waiting, {}, {}, std::move(poll)};
    }
    /// Ok when there is no problem.
    static Outcome of(const QString& problem) { return problem.isEmpty() ? ok() : error(problem); }
};

} // namespace korvale::sim
