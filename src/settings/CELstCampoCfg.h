#pragma once

#include <QList>

class CECampoCfg;

// The rows of one settings list, in file order. The list only points at its rows: it never
// deletes them, so destroying or copying it leaves the rows as they are. Whoever created the
// rows keeps them alive (CEArquivoCfg does for the rows it reads).
class CELstCampoCfg final
{
public:
    int count() const { return static_cast<int>(m_rows.size()); }
    bool isEmpty() const { return m_rows.isEmpty(); }
    // The row at `index`; throws std::invalid_argument outside 0..count()-1.
    CECampoCfg* at(int index) const;
    void append(CECampoCfg* row) { m_rows.append(row); }

private:
    QList<CECampoCfg*> m_rows;
};
