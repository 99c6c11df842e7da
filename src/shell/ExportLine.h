#pragma once

#include <QWidget>

QT_BEGIN_NAMESPACE
class QProgressBar;
QT_END_NAMESPACE

namespace korvale {

class ElidedLabel;
class LinkButton;

/// One line about an export: how far it is, with a button to end it, and at last what became of it.
class ExportLine final : public QWidget {
    Q_OBJECT

public:
    explicit ExportLine(QWidget* parent = nullptr);

    void setProgress(int percent);
    void showRunning(const QString& text);
    /// Screen readers are told.
    void showResult(const QString& text);
    /// The button gets the focus.
    void focusButton();

Q_SIGNALS:
    void cancelled();

private:
    void present(const QString& text, bool isRunning);

    ElidedLabel* m_text = nullptr;
    QProgressBar* m_progress = nullptr;
    LinkButton* m_button = nullptr; ///< cancels, and later closes the line
    bool m_isRunning = false;
};

} // namespace korvale
