#pragma once

#include <QtGlobal>

namespace korvale {

/// While it lives, the toolkit's messages are kept back and its abort for want of a usable display
/// becomes one log line, which says why, and exit status 1. To be alive while the QApplication is
/// constructed.
class DisplayGuard {
public:
    DisplayGuard();
    ~DisplayGuard();
    DisplayGuard(const DisplayGuard&) = delete;
    DisplayGuard& operator=(const DisplayGuard&) = delete;

private:
    QtMessageHandler m_previous;
};

/// Before the QApplication of a one-shot start, which then gets these arguments: lets the toolkit
/// fall back on having no display, whatever platform the environment or an argument asks for.
void allowNoDisplay(int argc, char** argv);

} // namespace korvale
