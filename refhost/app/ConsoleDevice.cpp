#include "ConsoleDevice.h"

namespace KvHost {

ConsoleDevice::ConsoleDevice(QObject* parent) : QIODevice(parent)
{
    open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

qint64 ConsoleDevice::readData(char*, qint64)
{
    return -1;
}

qint64 ConsoleDevice::writeData(const char* data, qint64 size)
{
    emit textWritten(QString::fromUtf8(data, size));
    return size;
}

} // namespace KvHost
