#pragma once

#include "model/ProtectionRules.h"

#include <QWidget>

QT_BEGIN_NAMESPACE
class QHBoxLayout;
class QLabel;
QT_END_NAMESPACE

namespace korvale {

class ElidedLabel;
class LinkButton;

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

private:
    void showAdvice(bool isShown);
    void showColors();

    QHBoxLayout* m_row = nullptr;
    ElidedLabel* m_why = nullptr;
    LinkButton* m_whatNow = nullptr;
    ElidedLabel* m_lastScan = nullptr;
    QLabel* m_advice = nullptr;
    Verdict m_verdict = Verdict::Good;
    bool m_dark = false;
};

} // namespace korvale
