#pragma once

#include <QIODevice>

namespace KvHost {

// A write-only device that hands every text written to it on as a signal: the reference host's
// console writes through two of these into the command-line pane.
class ConsoleDevice final : public QIODevice
{
    Q_OBJECT

public:
    explicit ConsoleDevice(QObject* parent = nullptr);

signals:
    void textWritten(const QString& text);

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char* data, qint64 size) override;
};

} // namespace KvHost
