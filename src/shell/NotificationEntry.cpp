#include "shell/NotificationEntry.h"

#include "platform/SafeText.h"
#include "platform/Texts.h"
#include "shell/ElidedLabel.h"
#include "shell/LinkButton.h"
#include "shell/NotificationRecords.h"
#include "shell/PlainToolTip.h"
#include "shell/WrappedLabel.h"
#include "tables/WindowLook.h"

#include <QDateTime>
#include <QHBoxLayout>
#include <QLocale>
#include <QPainter>

namespace korvale {
namespace {

QString whenText(const NotificationRecord& record) {
    return QLocale().toString(QDateTime::fromMSecsSinceEpoch(record.when), QLocale::ShortFormat);
}

/// The subtitle stands in front, as in the bubble.
QString bodyText(const NotificationRecord& record) {
    const QString message = severalLinesText(record.message);
    return record.subtitle.isEmpty() ? message
                                     : severalLinesText(record.subtitle) + u'\n' + message;
}

QHBoxLayout* addRow(QVBoxLayout& rows) {
    auto* row = new QHBoxLayout;
    row->setSpacing(look::stripSpacing);
    rows.addLayout(row);
    return row;
}

} // namespace

NotificationEntry::NotificationEntry(const NotificationRecord& record, QWidget* parent)
    : QWidget(parent) {
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, look::stripSpacing, 0, look::stripPadding);
    rows->setSpacing(0);

    const QString titleText = singleLineText(record.title);
    auto* title = new ElidedLabel(this);
    title->setText(titleText);
    QFont strong = title->font();
    strong.setWeight(QFont::DemiBold);
    title->setFont(strong);
    auto* when = new QLabel(whenText(record), this);
    when->setTextFormat(Qt::PlainText);
    when->setForegroundRole(QPalette::PlaceholderText);
    QHBoxLayout* head = addRow(*rows);
    head->setContentsMargins(look::linkPadding, 0, look::linkPadding, 0);
    head->addWidget(title);
    head->addStretch();
    head->addWidget(when);

    auto* body = new WrappedLabel(bodyText(record), this);
    body->setObjectName(QStringLiteral("notificationText"));
    body->setFocusPolicy(Qt::StrongFocus);
    body->setContextMenuPolicy(Qt::ActionsContextMenu);
    QString description = titleText + QLatin1String(", ") + when->text();
    rows->addWidget(body);

    if (record.isHeldBack) {
        auto* heldBack = new WrappedLabel(localizedText("HPS_NotificationHeldBack"), this);
        heldBack->setForegroundRole(QPalette::PlaceholderText);
        rows->addWidget(heldBack);
        description += QLatin1String(", ") + heldBack->text();
    }
    body->setAccessibleDescription(description);

    if (!record.link.isEmpty()) {
        auto* link = new LinkButton(this);
        link->setText(localizedText("NotificationActionOpenLink"));
        setPlainToolTip(*link, record.link);
        auto* target = new ElidedLabel(this);
        target->setText(singleLineText(record.link));
        target->setForegroundRole(QPalette::PlaceholderText);
        QHBoxLayout* row = addRow(*rows);
        row->addWidget(link);
        row->addWidget(target, 1);
        connect(link, &LinkButton::clicked, this,
                [this, link = record.link] { Q_EMIT linkChosen(link); });
    }
}

void NotificationEntry::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawLine(rect().bottomLeft(), rect().bottomRight());
}

} // namespace korvale
