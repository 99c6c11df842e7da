#pragma once

#include "agent/engine/TestFile.h"
#include "agent/engine/Verdict.h"

#include <chrono>
#include <optional>
#include <string>

namespace korvale::agent {

/// A known bad file that clamd is given now and then: what calls it clean does not scan. (clamd
/// says "OK" when it cannot make its temporary folder or file, which any user can bring about by
/// filling /tmp.) It is packed, so that clamd needs both to find it. One caller at a time.
class ControlSample {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    enum class Meaning {
        Scans,
        Nothing, ///< these signatures do not know it, and never did
        Blind,   ///< it does not scan
    };
    /// What is to be done after a time of blindness, as clamd remembers what it called clean then.
    enum class Cure { None, Reload, Wait };

    /// Between two samples while files are judged, whatever a sample costs.
    static constexpr std::chrono::milliseconds longestWindow{1000};
    /// A sample is at most this part of the time.
    static constexpr int costShare = 50;

    /// Makes the file, with a name, unless it is there; packed or plain for a clamd that unpacks
    /// nothing. False when there is no way to make it.
    bool make(const std::string& folder, bool packed);
    [[nodiscard]] int descriptor() const { return m_file->descriptor().get(); }
    void hideName() { m_file->hide(); }
    void forget() { m_file.reset(); }

    /// Whether a verdict given at `now` needs a new sample.
    [[nodiscard]] bool isDue(TimePoint now) const;
    /// What it means that it was called `verdict` (a judged one). `signatures`: changes with them;
    /// `official`: they are those that know it.
    Meaning meaningOf(Verdict verdict, const std::string& signatures, bool official);
    void tookFrom(TimePoint began, TimePoint now);

    /// It was caught not scanning, by the sample or otherwise.
    void caught();
    /// After a sample that meant `meaning`: until None it is not believed. `settling`: how long it
    /// may take to load its signatures again; twice as long passes between two attempts to make a
    /// blind one forget.
    Cure cure(Meaning meaning, TimePoint now, std::chrono::milliseconds settling);

private:
    std::optional<TestFile> m_file;
    bool m_packed = false;
    std::string m_knownBy; ///< signatures that found it
    bool m_provesNothing = false;
    std::optional<TimePoint> m_found;
    std::chrono::nanoseconds m_cost{0};
    bool m_caught = false;
    std::optional<TimePoint> m_reloaded;
    bool m_settling = false; ///< the last reload began while it scanned
};

} // namespace korvale::agent
