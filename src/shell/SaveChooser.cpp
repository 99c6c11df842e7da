#include "shell/SaveChooser.h"

#include "platform/PortalSaveDialog.h"
#include "platform/Texts.h"

#include <QDBusConnection>
#include <QDir>
#include <QGuiApplication>
#include <QStandardPaths>

#include <utility>

namespace korvale {
namespace {

QString documentsFolder() {
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QDir(documents).exists() ? documents : QDir::homePath();
}

/// As portals name it; only an X server has names that other programs can use at once.
QString portalsName(const QWidget& window) {
    return QGuiApplication::platformName() == QLatin1String("xcb")
               ? QStringLiteral("x11:") + QString::number(window.winId(), 16)
               : QString();
}

} // namespace

SaveChooser::SaveChooser(QWidget& window, QObject* parent) : QObject(parent), m_window(window) {}

SaveChooser::~SaveChooser() {
    delete m_dialog;
}

void SaveChooser::ask(const QDBusConnection* sessionBus, const QString& name) {
    m_portal.reset();
    delete m_dialog;
    if (sessionBus != nullptr && sessionBus->isConnected()) {
        askPortal(*sessionBus, name);
    } else {
        askHere(name);
    }
}

void SaveChooser::askPortal(const QDBusConnection& sessionBus, const QString& name) {
    m_portal = std::make_unique<PortalSaveDialog>(sessionBus);
    // Both end the object that says so, hence later.
    connect(m_portal.get(), &PortalSaveDialog::decided, this, &SaveChooser::finish,
            Qt::QueuedConnection);
    connect(
        m_portal.get(), &PortalSaveDialog::missing, this,
        [this, name] {
            m_portal.reset();
            askHere(name);
        },
        Qt::QueuedConnection);
    m_portal->ask(portalsName(m_window), localizedText("HPS_ExportTitle"), name);
}

void SaveChooser::askHere(const QString& name) {
    m_dialog = new QFileDialog(&m_window, localizedText("HPS_ExportTitle"), documentsFolder());
    m_dialog->setAttribute(Qt::WA_DeleteOnClose);
    m_dialog->setAcceptMode(QFileDialog::AcceptSave);
    m_dialog->setFileMode(QFileDialog::AnyFile);
    m_dialog->setSupportedSchemes({QStringLiteral("file")});
    m_dialog->setPalette(m_window.palette());
    m_dialog->selectFile(name);
    connect(m_dialog, &QFileDialog::finished, this, [this](int result) {
        const QList<QUrl> places = m_dialog->selectedUrls();
        finish(result == QDialog::Accepted && !places.isEmpty() ? places.constFirst() : QUrl());
    });
    m_dialog->open();
}

void SaveChooser::finish(const QUrl& place) {
    m_portal.reset();
    m_dialog.clear();
    Q_EMIT decided(place);
}

} // namespace korvale
