#pragma once

#include "platform/Appearance.h"

#include <QIcon>
#include <QObject>

namespace korvale {

/// Which of the two sets of pictures the program wears.
enum class IconSet { Standard, Vexa };

/// Indexes of getImage that the program itself asks for.
namespace image {
inline constexpr int logo = 10;
} // namespace image

/// All pictures, and the desktop's light or dark appearance. One instance, made first thing at
/// launch. Main thread. The texts are installed by Translations and looked up by localizedText.
class Resources : public QObject {
    Q_OBJECT

public:
    Resources(Appearance& appearance, IconSet iconSet, QObject* parent = nullptr);

    /// Once, right after construction: looks up the pictures, reads the appearance and follows it.
    void initialize();

    /// The picture of that index, for the present appearance: scalable, to be drawn at any size.
    /// Null for an index without one (9, those below 0 and above 14) and for a missing picture.
    /// Equal cacheKey() means the very same picture.
    [[nodiscard]] QIcon getImage(int index) const;

    /// The program's own picture, the same in every appearance, for its windows' title bars and for
    /// lists of windows. It says nothing of the machine's state, as it does not follow it.
    [[nodiscard]] QIcon programIcon() const { return m_programIcon; }

    [[nodiscard]] bool isDark() const { return m_isDark; }
    /// Whether the user has the desktop ask for more contrast.
    [[nodiscard]] bool isHighContrast() const { return m_isHighContrast; }
    void setHighContrast(bool isHigh);

    /// Reads the appearance again; darkModeFlipped() follows when it is another than before.
    void darkModeChanged();

Q_SIGNALS:
    /// The pictures and colours that follow the appearance are others now.
    void darkModeFlipped();

private:
    Appearance& m_appearance;
    IconSet m_iconSet;
    bool m_isDark = false;
    bool m_isHighContrast = false;

    QIcon greenImage, yellowImage, redImage;
    QIcon greenImage_Inverted, yellowImage_Inverted, redImage_Inverted;
    QIcon greenImage_TitleBar, yellowImage_TitleBar, redImage_TitleBar;
    QIcon connectedImage, notConnectedImage, partialAvailableImage;
    QIcon logoImage;
    QIcon appIcon;
    QIcon m_programIcon;
};

} // namespace korvale
