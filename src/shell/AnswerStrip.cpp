#include "shell/AnswerStrip.h"

#include "platform/Texts.h"
#include "shell/ElidedLabel.h"
#include "shell/LinkButton.h"
#include "shell/PlainToolTip.h"
#include "shell/StripLayout.h"
#include "shell/ToolTipReach.h"
#include "tables/WindowLook.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

namespace korvale {
namespace {

/// A label's name is its text; while there is none it still has a name.
QString nameOfEmpty(const QString& text, const char* key) {
    return text.isEmpty() ? localizedText(key) : QString();
}

} // namespace

AnswerStrip::AnswerStrip(QWidget* parent) : QWidget(parent) {
    m_why = new ElidedLabel(this);
    m_why->setObjectName(QStringLiteral("whyLbl"));
    new ToolTipReach(*m_why);
    m_whatNow = new LinkButton(this);
    m_whatNow->setObjectName(QStringLiteral("whatNowButton"));
    m_whatNow->setText(localizedText("HPS_WhatNow"));
    m_whatNow->setCheckable(true);
    m_lastScan = new ElidedLabel(this);
    m_lastScan->setObjectName(QStringLiteral("lastScanLbl"));
    m_lastScan->setAlignment(Qt::AlignTrailing | Qt::AlignVCenter);
    m_lastScan->setElideMode(Qt::ElideLeft); // when it was says more than what it was
    m_advice = new QLabel(this);
    m_advice->setObjectName(QStringLiteral("adviceLbl"));
    m_advice->setTextFormat(Qt::PlainText);
    m_advice->setWordWrap(true);
    m_advice->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_advice->setContentsMargins(look::linkPadding, 0, look::linkPadding, look::stripPadding);

    auto* rows = new QVBoxLayout(this);
    // Texts of labels and buttons stand below each other.
    static constexpr int beside = look::margin - look::linkPadding;
    rows->setContentsMargins(beside, look::stripPadding, beside, look::stripPadding);
    for (QLabel* label : {m_why, m_lastScan}) {
        label->setContentsMargins(look::linkPadding, 0, look::linkPadding, 0);
    }
    rows->setSpacing(look::stripPadding);
    m_rows = new StripLayout(look::stripPadding);
    m_rows->setSpacing(look::stripSpacing);
    m_rows->add(StripLayout::Group::Said, *m_why);
    m_rows->add(StripLayout::Group::Said, *m_whatNow);
    m_rows->add(StripLayout::Group::Spare, *m_lastScan);
    makeNotifications();
    makeFind();
    m_export = new LinkButton(this);
    m_export->setObjectName(QStringLiteral("exportButton"));
    m_export->setText(localizedText("HPS_Export"));
    setPlainToolTip(*m_export, localizedText("HPS_ExportHint"));
    m_rows->add(StripLayout::Group::Controls, *m_export);
    rows->addLayout(m_rows);
    rows->addWidget(m_advice);

    connect(m_whatNow, &LinkButton::toggled, this, &AnswerStrip::showAdvice);
    setProtection(Verdict::Good, {}, {}, {});
}

void AnswerStrip::makeNotifications() {
    auto* notifications = new LinkButton(this);
    notifications->setObjectName(QStringLiteral("notificationsButton"));
    notifications->setText(localizedText("HPS_Notifications"));
    setPlainToolTip(*notifications, localizedText("HPS_NotificationsHint"));
    m_rows->add(StripLayout::Group::Controls, *notifications);
    connect(notifications, &LinkButton::clicked, this, &AnswerStrip::notificationsWanted);
}

void AnswerStrip::makeFind() {
    m_find = new QLineEdit(this);
    m_find->setObjectName(QStringLiteral("findField"));
    m_find->setPlaceholderText(localizedText("HPS_Find"));
    m_find->setAccessibleName(localizedText("HPS_Find"));
    setPlainToolTip(*m_find, localizedText("HPS_FindHint"));
    m_find->setClearButtonEnabled(true);
    if (auto* clearButton = m_find->findChild<QAbstractButton*>()) {
        clearButton->setAccessibleName(localizedText("HPS_FindClear"));
    }
    m_find->setMaxLength(look::findLength);
    measureFind();
    m_find->installEventFilter(this);
    m_findCount = new QLabel(this);
    m_findCount->setObjectName(QStringLiteral("findCountLbl"));
    m_findCount->setTextFormat(Qt::PlainText);
    m_findCount->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    auto* finder = new QHBoxLayout; // never apart
    finder->setSpacing(look::stripSpacing);
    finder->addWidget(m_findCount);
    finder->addWidget(m_find);
    m_rows->add(StripLayout::Group::Controls, *finder);
    connect(m_find, &QLineEdit::textChanged, this, &AnswerStrip::findTextChanged);
    connect(m_find, &QLineEdit::returnPressed, this, &AnswerStrip::findDone);
    setFindCount({});
}

void AnswerStrip::measureFind() {
    const int character = m_find->fontMetrics().averageCharWidth();
    m_find->setMinimumWidth(character * look::fewestFindCharacters);
    m_find->setMaximumWidth(character * look::findCharacters);
}

void AnswerStrip::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        measureFind();
    }
}

void AnswerStrip::setFindCount(const QString& text) {
    m_findCount->setText(text);
    m_findCount->setAccessibleName(nameOfEmpty(text, "HPS_FindCountName"));
    m_findCount->setVisible(!text.isEmpty());
}

void AnswerStrip::focusFind() {
    m_find->setFocus(Qt::ShortcutFocusReason);
    m_find->selectAll();
}

QString AnswerStrip::findText() const {
    return m_find->text();
}

void AnswerStrip::clearFind() {
    m_find->clear();
}

bool AnswerStrip::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Down) {
        Q_EMIT findDone();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void AnswerStrip::setProtection(Verdict verdict, const QString& why, const QString& advice,
                                const QString& lastScan) {
    const bool isNews = why != m_why->text();
    m_verdict = verdict;
    m_why->setText(why);
    setPlainToolTip(*m_why, why); // a narrow window shortens it
    m_whatNow->setVisible(!advice.isEmpty());
    m_whatNow->setAccessibleDescription(advice);
    m_advice->setText(advice);
    m_advice->setAccessibleName(nameOfEmpty(advice, "HPS_Advice"));
    showAdvice(m_whatNow->isChecked());
    m_lastScan->setText(lastScan);
    m_lastScan->setVisible(!lastScan.isEmpty());
    m_lastScan->setAccessibleName(nameOfEmpty(lastScan, "HPS_LastScanName"));
    setPlainToolTip(*m_lastScan, lastScan);
    showColors();
    if (isNews && verdict == Verdict::Away) {
        QAccessibleEvent alert(m_why, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

void AnswerStrip::showAdvice(bool isShown) {
    m_advice->setVisible(isShown && !m_advice->text().isEmpty());
}

void AnswerStrip::setDark(bool dark) {
    m_dark = dark;
    showColors();
}

void AnswerStrip::showColors() {
    const std::optional<StripColors> colors = stripColors(m_verdict, m_dark);
    QPalette palette;
    palette.setResolveMask(0);
    if (colors) {
        palette.setColor(QPalette::Window, colors->background);
        palette.setColor(QPalette::WindowText, colors->text);
        palette.setColor(QPalette::Link, colors->text);
    }
    m_lastScan->setForegroundRole(colors ? QPalette::WindowText : QPalette::PlaceholderText);
    setPalette(palette);
    setAutoFillBackground(colors.has_value());
    QFont strong = font();
    strong.setWeight(colors ? QFont::DemiBold : QFont::Normal);
    m_why->setFont(strong);
}

} // namespace korvale
