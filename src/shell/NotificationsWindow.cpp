#include "shell/NotificationsWindow.h"

#include "platform/LinkOpener.h"
#include "platform/Texts.h"
#include "shell/NotificationEntry.h"
#include "shell/NotificationHistory.h"
#include "shell/WrappedLabel.h"
#include "tables/WindowLook.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QVBoxLayout>

#include <memory>

namespace korvale {

NotificationsWindow::NotificationsWindow(NotificationHistory& history, LinkOpener& linkOpener,
                                         QWidget* parent)
    : QWidget(parent, Qt::Window), m_history(history), m_linkOpener(linkOpener) {
    setWindowTitle(localizedText("HPS_Notifications"));
    setAttribute(Qt::WA_QuitOnClose, false);
    makeParts();
    makeKeys();
    setDark(false);
    resize(QSize(look::notificationsWidth, look::notificationsHeight)
               .boundedTo(screen()->availableSize()));
    connect(&history, &NotificationHistory::added, this, &NotificationsWindow::showNewest);
    connect(&history, &NotificationHistory::replaced, this, &NotificationsWindow::showAll);
    showAll();
    history.load();
}

void NotificationsWindow::makeParts() {
    m_area = new QScrollArea(this);
    m_area->setWidgetResizable(true);
    m_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_area->setFrameShape(QFrame::NoFrame);
    m_area->setAccessibleName(localizedText("HPS_Notifications"));
    auto* content = new QWidget;
    m_entries = new QVBoxLayout(content);
    m_entries->setContentsMargins(look::margin, 0, look::margin, 0);
    m_entries->setSpacing(0);
    m_entries->addStretch();
    m_area->setWidget(content);

    m_empty = new QLabel(localizedText("HPS_NoNotifications"), this);
    m_empty->setObjectName(QStringLiteral("noNotificationsLbl"));
    m_empty->setTextFormat(Qt::PlainText);
    m_empty->setForegroundRole(QPalette::PlaceholderText);
    m_clear = new QPushButton(localizedText("HPS_ClearNotifications"), this);
    m_clear->setAutoDefault(false);
    auto* foot = new QHBoxLayout;
    foot->setContentsMargins(look::margin, 0, look::margin, 0);
    foot->addWidget(m_empty);
    foot->addStretch();
    foot->addWidget(m_clear);

    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, look::toolbarPadding);
    rows->setSpacing(look::toolbarPadding);
    rows->addWidget(m_area);
    rows->addLayout(foot);
    connect(m_clear, &QPushButton::clicked, &m_history, &NotificationHistory::clear);
}

void NotificationsWindow::makeKeys() {
    for (const QKeySequence& key :
         {QKeySequence(Qt::Key_Escape), QKeySequence(Qt::CTRL | Qt::Key_W)}) {
        connect(new QShortcut(key, this), &QShortcut::activated, this, &QWidget::close);
    }
    m_copy = new QAction(localizedText("HPS_CopyNotification"), this);
    m_copy->setShortcut(QKeySequence::Copy);
    m_copy->setShortcutContext(Qt::WidgetShortcut);
    connect(m_copy, &QAction::triggered, this, &NotificationsWindow::copy);
}

void NotificationsWindow::setDark(bool dark, bool highContrast) {
    setPalette(windowPalette(dark, highContrast));
}

void NotificationsWindow::copy() {
    if (const auto* text = qobject_cast<const WrappedLabel*>(focusWidget())) {
        QGuiApplication::clipboard()->setText(text->text());
    }
}

void NotificationsWindow::showAll() {
    const bool hadFocus = m_area->isAncestorOf(focusWidget());
    removeEntriesFrom(0);
    int position = 0;
    const NotificationRecords& records = m_history.records();
    for (auto record = records.crbegin(); record != records.crend(); ++record) {
        insertEntry(position++, *record);
    }
    if (hadFocus || focusWidget() == nullptr) {
        m_area->setFocus();
    }
    showWhetherEmpty();
}

/// What the person reads stays where it is.
void NotificationsWindow::showNewest() {
    QScrollBar& bar = *m_area->verticalScrollBar();
    const int place = bar.value();
    removeEntriesFrom(static_cast<int>(m_history.records().size()) - 1);
    insertEntry(0, m_history.records().constLast());
    if (place > 0) {
        QWidget* entry = m_entries->itemAt(0)->widget();
        // Once it has got its height.
        const auto keepPlace = [&bar, place, entry] { bar.setValue(place + entry->height()); };
        QMetaObject::invokeMethod(entry, keepPlace, Qt::QueuedConnection);
    }
    showWhetherEmpty();
}

void NotificationsWindow::insertEntry(int position, const NotificationRecord& record) {
    auto* entry = new NotificationEntry(record);
    connect(entry, &NotificationEntry::linkChosen, this,
            [this](const QString& link) { m_linkOpener.openLink(link, {}); });
    entry->findChild<WrappedLabel*>(QStringLiteral("notificationText"))->addAction(m_copy);
    m_entries->insertWidget(position, entry);
}

void NotificationsWindow::removeEntriesFrom(int position) {
    while (m_entries->count() - 1 > position) {
        const std::unique_ptr<QLayoutItem> item(m_entries->takeAt(m_entries->count() - 2));
        delete item->widget();
    }
}

void NotificationsWindow::showWhetherEmpty() {
    const bool hasAny = !m_history.records().isEmpty();
    m_empty->setVisible(!hasAny && m_history.isLoaded());
    m_clear->setEnabled(hasAny);
}

} // namespace korvale
