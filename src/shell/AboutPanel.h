#pragma once

#include <QWidget>

QT_BEGIN_NAMESPACE
class QIcon;
class QPlainTextEdit;
QT_END_NAMESPACE

namespace korvale {

/// The About panel: icon, name, version, and the credits as plain text that can be selected and
/// copied. Never modal; Escape and Ctrl+W close it.
class AboutPanel final : public QWidget {
    Q_OBJECT

public:
    AboutPanel(const QIcon& icon, const QString& displayName, const QString& shortVersion,
               QWidget* parent = nullptr);

    void setCredits(const QString& credits);
    void setDark(bool dark, bool highContrast = false);

private:
    QPlainTextEdit* m_credits = nullptr;
};

} // namespace korvale
