#pragma once

#include <QWidget>

namespace korvale {

struct NotificationRecord;

/// One desktop notification in the list of them: when, title, text, a button for its link, and
/// whether it was held back. Its text can have the focus.
class NotificationEntry final : public QWidget {
    Q_OBJECT

public:
    explicit NotificationEntry(const NotificationRecord& record, QWidget* parent = nullptr);

Q_SIGNALS:
    void linkChosen(const QString& link);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace korvale
