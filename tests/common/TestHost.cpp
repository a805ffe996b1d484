#include "TestHost.h"

#include <QDir>

TestHost::TestHost() : m_traceBuffer(&m_traceBytes)
{
    m_traceBuffer.open(QIODevice::WriteOnly | QIODevice::Append);
    m_system.setTempFolder(QDir::toNativeSeparators(path(QStringLiteral("temp"))) + u'/');
    m_electrical.setWorkingFolder(path(QStringLiteral("work")) + u'/');
    m_electrical.setBaseFolder(path(QStringLiteral("base")) + u'/');
    m_trace = std::make_unique<HostTrace>(binding(), &m_traceBuffer);
}

TestHost::~TestHost()
{
    // The trace decorators refer to the fakes: drop them first.
    m_trace.reset();
}

bool TestHost::createDatabase(const QString& sqlText, TestDatabase::Kind kind)
{
    bool opened = false;
    if (kind == TestDatabase::Kind::SQLite) {
        opened = m_database.openSqlite(path(QStringLiteral("standard.sqlite")));
    } else if (TestDatabase::postgresUrl().isEmpty()) {
        m_error = QStringLiteral("KV_TEST_PGURL is not set");
        return false;
    } else {
        opened = m_database.openPostgres(TestDatabase::postgresUrl());
    }
    if (!opened || !m_database.exec(sqlText)) {
        m_error = m_database.errorText();
        return false;
    }
    m_electrical.setConnectionName(m_database.connectionName());
    return true;
}

bool TestHost::execSql(const QString& sqlText)
{
    if (m_database.exec(sqlText))
        return true;
    m_error = m_database.errorText();
    return false;
}

HostBinding TestHost::binding()
{
    HostBinding binding;
    binding.electrical = &m_electrical;
    binding.system = &m_system;
    binding.document = &m_document;
    binding.cad = &m_cad;
    binding.language = &m_language;
    binding.mainWindow = kMainWindow;
    return binding;
}

std::unique_ptr<ScopedHostBinding> TestHost::install()
{
    return std::make_unique<ScopedHostBinding>(m_trace->binding());
}

QStringList TestHost::traceLines() const
{
    QStringList lines = QString::fromUtf8(m_traceBytes).split(u'\n');
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

void TestHost::clearTrace()
{
    m_traceBuffer.close();
    m_traceBytes.clear();
    m_traceBuffer.open(QIODevice::WriteOnly | QIODevice::Append);
}
