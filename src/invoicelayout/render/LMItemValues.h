#pragma once

#include <QString>

class TAItem;

// Cell texts of the items table. Columns are numbered in the full list of identifiers, tax
// column included, so that both tax settings share one numbering.
class LMItemValues {
public:
    // The text for the column identifier; empty for an unknown one.
    static QString getValueForItem(TAItem *item, const QString &identifier, bool taxesEnabled);
    // The text for a column index of the identifiers as the document lists them: without the
    // tax column when taxes are off, so indexes from 3 up then move one on.
    static QString getValueForItem(TAItem *item, int column, bool taxesEnabled);

private:
    LMItemValues() = delete;
    static QString valueInFullNumbering(TAItem *item, int column);
};
