#pragma once

#include <QString>
#include <QStringList>

// A generated standard "IEC" for the import benchmark: C components in groups of one to three
// that share a TYPE and a MAKER and whose PART_NUMBERs share a prefix, eight custom properties
// per component, descriptions in two languages, block names taken from the example standard's
// blocks, and every twentieth component bringing the next one as an associated component.
// A row that searches TYPE exactly and MAKER and the group's part-number prefix by containment
// matches the one to three components of its group.
class SyntheticStandard
{
public:
    explicit SyntheticStandard(int components);

    int components() const { return m_components; }
    int groups() const { return m_groups; }

    // Writes data.sql (rows only; the tables are examples/standard/schema.sql) into `folder`;
    // the path, or empty when it cannot be written.
    QString writeData(const QString& folder) const;

    // The search cells of workbook row `row` (zero-based): TYPE, MAKER, PART_NUMBER prefix.
    QStringList searchCells(int row) const;
    // How many components row `row` matches.
    int matchesOfRow(int row) const;

private:
    int groupSize(int group) const { return 1 + group % 3; }
    int firstComponentOf(int group) const;

    int m_components;
    int m_groups = 0;
};
