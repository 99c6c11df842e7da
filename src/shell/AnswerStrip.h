#pragma once

#include "model/ProtectionRules.h"

#include <QWidget>

QT_BEGIN_NAMESPACE
class QLabel;
class QLineEdit;
QT_END_NAMESPACE

namespace korvale {

class ElidedLabel;
class LinkButton;
class StripLayout;

/// The row between the tabs and the tables: how the machine is and why, and on request what that
/// means and what to do. Quiet while all is well, loud while nobody protects.
class AnswerStrip final : public QWidget {
    Q_OBJECT

public:
    explicit AnswerStrip(QWidget* parent = nullptr);

    /// `advice` may be empty: then there is nothing to ask. `lastScan` too.
    void setProtection(Verdict verdict, const QString& why, const QString& advice,
                       const QString& lastScan);
    void setDark(bool dark);

    /// What stands beside the field: how many of the rows are shown. No text hides it.
    void setFindCount(const QString& text);
    /// The field gets the focus, its text selected.
    void focusFind();
    /// Asks for an export.
    [[nodiscard]] LinkButton& exportButton() { return *m_export; }
    /// What is looked for; empty for nothing.
    [[nodiscard]] QString findText() const;
    void clearFind();

Q_SIGNALS:
    void findTextChanged(const QString& text);
    /// Enter or Down in the field: on to the rows.
    void findDone();
    void notificationsWanted();

protected:
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void makeNotifications();
    void makeFind();
    /// The field is as wide as a number of characters.
    void measureFind();
    void showAdvice(bool isShown);
    void showColors();

    StripLayout* m_rows = nullptr; ///< all but the advice
    ElidedLabel* m_why = nullptr;
    LinkButton* m_whatNow = nullptr;
    ElidedLabel* m_lastScan = nullptr;
    QLineEdit* m_find = nullptr;
    QLabel* m_findCount = nullptr;
    LinkButton* m_export = nullptr;
    QLabel* m_advice = nullptr;
    Verdict m_verdict = Verdict::Good;
    bool m_dark = false;
};

} // namespace korvale
