#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>

namespace korvale::sim {

/// Lines of a file descriptor, read as they come without blocking the event loop.
class LineInput : public QObject {
    Q_OBJECT
public:
    /// A longer line ends the input.
    static constexpr qsizetype kLongestLine = qsizetype{16} << 20;

    /// Does not own `descriptor`.
    explicit LineInput(int descriptor, QObject* parent = nullptr);

Q_SIGNALS:
    void line(const QString& text);
    void ended();

private:
    void readSome();

    int m_descriptor;
    QByteArray m_partial;
    QSocketNotifier m_notifier;
};

} // namespace korvale::sim
