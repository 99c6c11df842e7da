#pragma once

#include "agent/app/Configuration.h"

#include <QObject>
#include <QThreadPool>

#include <functional>
#include <string>
#include <vector>

namespace korvale::agent {

class BuiltInEngine;

/// Reads the configuration and what it names again, on a thread of its own: a slow disk holds up
/// nobody. Main thread.
class Reload : public QObject {
    Q_OBJECT
public:
    struct Read {
        ConfigurationResult configuration;
        /// Where the engine's signatures lie, as its own configuration says; empty: not looked.
        std::string signatures;
    };
    using Then = std::function<void(const Read& read)>;

    /// `builtIn` must outlive this object.
    Reload(std::string file, BuiltInEngine& builtIn, QObject* parent = nullptr);
    ~Reload() override; ///< waits for the reading at hand

    /// `then` is called once, later, with what the file held at some moment after this call. The
    /// lists of digests of a good configuration are in use by then. Whoever asks while a reading is
    /// at hand waits for one more, all of them together.
    void ask(Then then);

private:
    void begin();

    const std::string m_file;
    BuiltInEngine& m_builtIn;
    QThreadPool m_disk;
    std::vector<Then> m_waiting;
    bool m_reading = false;
};

} // namespace korvale::agent
