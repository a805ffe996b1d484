#pragma once

// What the desktop host's tests share: a temporary standard database loaded from the example,
// a host settings file pointing at it, and answering modal dialogs from a timer.

#include "HostSettings.h"
#include "StandardLoader.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>

namespace AppTest {

inline QString examplePath(const QString& relative)
{
    return QDir(QStringLiteral(KV_SOURCE_DIR "/examples")).filePath(relative);
}

// A temporary folder holding example.db (the example standard) and host.ini pointing at it.
struct ExampleSetup
{
    QTemporaryDir dir;
    QString database;
    QString settingsFile;
    QString error;

    ExampleSetup()
    {
        database = dir.filePath(QStringLiteral("example.db"));
        settingsFile = dir.filePath(QStringLiteral("host.ini"));
        const RefHost::StandardLoadResult loaded = RefHost::StandardLoader::loadDatabase(
            database,
            {examplePath(QStringLiteral("standard/schema.sql")),
             examplePath(QStringLiteral("standard/data.sql"))},
            false);
        if (!loaded.ok) {
            error = loaded.error;
            return;
        }
        KvHost::HostSettings settings;
        settings.database = database;
        settings.standard = QStringLiteral("IEC");
        settings.networkFolder = examplePath(QStringLiteral("network"));
        settings.descriptionLanguage = QStringLiteral("1");
        if (!settings.save(settingsFile, &error) && error.isEmpty())
            error = QStringLiteral("settings not written");
    }
};

// Polls for the next modal widget that was not there when it was started and hands it to
// `answer` once. Stops after `timeoutMs` without a dialog.
class ModalAnswer final : public QObject
{
public:
    ModalAnswer(std::function<void(QWidget*)> answer, int timeoutMs = 20000)
        : m_answer(std::move(answer)), m_before(QApplication::activeModalWidget())
    {
        m_elapsed.start();
        m_timer.setInterval(20);
        QObject::connect(&m_timer, &QTimer::timeout, this, [this, timeoutMs]() {
            QWidget* modal = QApplication::activeModalWidget();
            if (modal && modal != m_before && modal->isVisible()) {
                m_timer.stop();
                m_seen = modal;
                m_className = QString::fromLatin1(modal->metaObject()->className());
                m_answer(modal);
                m_answered = true;
            } else if (m_elapsed.elapsed() > timeoutMs) {
                m_timer.stop();
            }
        });
        m_timer.start();
    }

    bool answered() const { return m_answered; }
    const QString& className() const { return m_className; }

private:
    std::function<void(QWidget*)> m_answer;
    QPointer<QWidget> m_before;
    QPointer<QWidget> m_seen;
    QTimer m_timer;
    QElapsedTimer m_elapsed;
    QString m_className;
    bool m_answered = false;
};

} // namespace AppTest
