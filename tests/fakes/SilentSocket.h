#pragma once

#include "fakes/ListeningSocket.h"

namespace korvale {

/// A bus that hangs: takes connections at `path` and never says a word. hangUp() ends it.
class SilentSocket {
public:
    explicit SilentSocket(const QByteArray& path) : m_socket(path) {}

    void hangUp() { m_socket.close(); }

private:
    ListeningSocket m_socket;
};

} // namespace korvale
