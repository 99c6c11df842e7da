#include "shell/ExportLine.h"

#include "platform/Texts.h"
#include "shell/ElidedLabel.h"
#include "shell/LinkButton.h"
#include "shell/PlainToolTip.h"
#include "shell/ToolTipReach.h"
#include "tables/WindowLook.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QProgressBar>

namespace korvale {

ExportLine::ExportLine(QWidget* parent) : QWidget(parent) {
    m_text = new ElidedLabel(this);
    m_text->setObjectName(QStringLiteral("exportLbl"));
    m_text->setContentsMargins(look::linkPadding, 0, look::linkPadding, 0); // below the strip's
    new ToolTipReach(*m_text);
    m_progress = new QProgressBar(this);
    m_progress->setObjectName(QStringLiteral("exportProgress"));
    m_progress->setTextVisible(false);
    m_progress->setFixedWidth(look::exportProgressWidth);
    m_button = new LinkButton(this);
    m_button->setObjectName(QStringLiteral("exportEndButton"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(look::stripSpacing);
    row->addWidget(m_text);
    row->addWidget(m_progress);
    row->addWidget(m_button);
    row->addStretch();
    connect(m_button, &LinkButton::clicked, this, [this] {
        if (m_isRunning) {
            m_button->setEnabled(false);
            Q_EMIT cancelled();
        } else {
            hide();
        }
    });
}

void ExportLine::setProgress(int percent) {
    m_progress->setValue(percent);
}

void ExportLine::showRunning(const QString& text) {
    m_progress->setAccessibleName(text);
    present(text, true);
}

void ExportLine::showResult(const QString& text) {
    present(text, false);
    QAccessibleEvent alert(m_text, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void ExportLine::focusButton() {
    m_button->setFocus(Qt::OtherFocusReason);
}

void ExportLine::present(const QString& text, bool isRunning) {
    m_isRunning = isRunning;
    m_text->setText(text);
    setPlainToolTip(*m_text, text); // a narrow window shortens it
    m_progress->setVisible(isRunning);
    m_button->setEnabled(true);
    m_button->setText(localizedText(isRunning ? "HPS_Cancel" : "HPS_Close"));
    m_button->updateGeometry();
    show();
}

} // namespace korvale
