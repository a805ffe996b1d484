#pragma once

#include "settingsui/widgets/CIListViewEdit.h"

#include <QApplication>
#include <QFile>
#include <QTest>
#include <QTimer>
#include <QTranslator>

#include <functional>

namespace DialogTest {

inline bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

inline QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

// Runs `action` on the modal window as soon as one is open (a modal dialog blocks the test in
// its own event loop). A window still open after five seconds is closed so that a failing test
// cannot hang.
inline void actOnModal(std::function<void(QWidget*)> action)
{
    auto* poll = new QTimer;
    poll->setInterval(5);
    auto tries = std::make_shared<int>(0);
    QObject::connect(poll, &QTimer::timeout, [poll, tries, action] {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal && ++*tries < 1000)
            return;
        poll->stop();
        poll->deleteLater();
        if (!modal)
            return;
        action(modal);
        QTimer::singleShot(5000, modal, [modal] {
            if (modal->isVisible())
                modal->close();
        });
    });
    poll->start();
}

inline QPoint cellCenter(const ListView::CIListViewEdit& list, int row, int column)
{
    return list.visualRect(list.model()->index(row, column)).center();
}

inline void clickCell(ListView::CIListViewEdit& list, int row, int column)
{
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, cellCenter(list, row, column));
}

// The small button drawn at the right end of a file or button cell.
inline void clickCellButton(ListView::CIListViewEdit& list, int row, int column)
{
    const QRect cell = list.visualRect(list.model()->index(row, column));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      QPoint(cell.right() - 3, cell.center().y()));
}

// Types `text` into a cell through its editor (F2, the text, Enter) and waits for the commit.
inline bool typeIntoCell(ListView::CIListViewEdit& list, int row, int column, const QString& text)
{
    clickCell(list, row, column);
    QTest::keyClick(&list, Qt::Key_F2);
    QWidget* editor = QApplication::focusWidget();
    if (!editor || editor == &list)
        return false;
    QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(editor, Qt::Key_Backspace);
    QTest::keyClicks(editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
    return QTest::qWaitFor([&] { return !list.isEditing(); }, 1000);
}

// Translates every text of the module's context into "[text]", so that a test can tell that a
// text went through the translation function when it was shown.
class BracketTranslator final : public QTranslator
{
public:
    QString translate(const char* context, const char* sourceText, const char*, int) const override
    {
        if (qstrcmp(context, "KVInsertAuto") != 0)
            return {};
        return QLatin1Char('[') + QString::fromUtf8(sourceText) + QLatin1Char(']');
    }
    bool isEmpty() const override { return false; }
};

} // namespace DialogTest
