#include "shell/DetailsPane.h"

#include "platform/Texts.h"
#include "shell/DetailsText.h"
#include "shell/FlowLayout.h"
#include "shell/LinkButton.h"
#include "shell/PlainToolTip.h"
#include "shell/RowMenu.h"
#include "tables/WindowLook.h"

#include <QAccessible>
#include <QAction>
#include <QHBoxLayout>
#include <QLabel>

namespace korvale {

DetailsPane::DetailsPane(FileManager& files, QWidget* parent)
    : QWidget(parent), m_actions(new RowActions(files, this)) {
    setObjectName(QStringLiteral("detailsPane"));
    setAccessibleName(localizedText("HPS_ColDetails"));
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(look::margin, look::stripPadding, look::margin, look::stripPadding);
    rows->setSpacing(look::stripPadding);
    makeButtons();
    m_notice = new QLabel(this);
    m_notice->setObjectName(QStringLiteral("detailsNotice"));
    m_notice->setTextFormat(Qt::PlainText);
    m_notice->setWordWrap(true);
    QFont strong = font();
    strong.setWeight(QFont::DemiBold);
    m_notice->setFont(strong);
    m_notice->hide();
    m_text = new DetailsText(this);
    rows->addWidget(m_notice);
    rows->addWidget(m_text, 1);

    connect(m_text, &DetailsText::currentPathChanged, this, &DetailsPane::retarget);
    connect(m_text, &DetailsText::contextMenuWanted, this, &DetailsPane::showMenu);
    connect(m_text, &DetailsText::copyWanted, this, &DetailsPane::copy);
    connect(m_actions, &RowActions::copyWanted, this, &DetailsPane::copy);
    connect(m_actions, &RowActions::copyPathWanted, this, &DetailsPane::copyPathWanted);
    connect(m_actions, &RowActions::selectAllWanted, this, [this] {
        m_text->selectAll();
        m_text->setFocus();
    });
    connect(m_actions, &RowActions::notShown, this, &DetailsPane::sayNotShown);
}

void DetailsPane::makeButtons() {
    auto* row = new QHBoxLayout;
    auto* flow = new FlowLayout(look::stripSpacing);
    for (const RowAction which :
         {RowAction::Copy, RowAction::CopyPath, RowAction::SelectAll, RowAction::Show}) {
        auto* button = new LinkButton(this);
        QAction& action = m_actions->action(which);
        button->setText(action.text());
        connect(button, &LinkButton::clicked, &action, &QAction::trigger);
        connect(&action, &QAction::enabledChanged, button, &LinkButton::setEnabled);
        flow->addWidget(button);
    }
    auto* close = new LinkButton(this);
    close->setText(QStringLiteral("✕"));
    close->setAccessibleName(localizedText("HPS_PaneClose"));
    setPlainToolTip(*close, localizedText("HPS_PaneClose"));
    connect(close, &LinkButton::clicked, this, &DetailsPane::closeWanted);
    row->addLayout(flow, 1);
    row->addWidget(close, 0, Qt::AlignTop);
    static_cast<QVBoxLayout*>(layout())->addLayout(row);
}

void DetailsPane::setDetails(const RowDetails& details) {
    m_hasRow = true;
    say({});
    m_text->setDetails(details);
    retarget();
}

void DetailsPane::setGone() {
    m_hasRow = false;
    say(localizedText("HPS_PaneGone"));
    retarget();
}

void DetailsPane::sayNotShown() {
    say(localizedText("HPS_PaneNoManager"));
}

void DetailsPane::focusText() {
    m_text->setFocus(Qt::OtherFocusReason);
}

void DetailsPane::retarget() {
    const Target target{m_hasRow, m_hasRow ? m_text->currentPath() : QString()};
    if (target != m_target) {
        m_target = target;
        m_actions->setTarget(target.hasRow, target.path);
    }
}

/// As the copy key does in any text: what is selected, if anything is.
void DetailsPane::copy() {
    if (m_text->textCursor().hasSelection()) {
        m_text->copy();
    } else if (m_hasRow) {
        Q_EMIT copyRowWanted();
    }
}

void DetailsPane::showMenu(const QPoint& globalPosition) {
    showRowMenu(*m_actions, *this, globalPosition);
}

void DetailsPane::say(const QString& notice) {
    const bool isNews = !notice.isEmpty() && notice != m_notice->text();
    m_notice->setText(notice);
    m_notice->setVisible(!notice.isEmpty());
    if (isNews) {
        QAccessibleEvent alert(m_notice, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

} // namespace korvale
