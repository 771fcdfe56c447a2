#pragma once

#include <QString>

class TAPreferences;

// How the document's next number follows the numbers the user gives invoices.
class TAInvoiceNumbering {
public:
    // An invoice's number field has ended editing with `text`. An empty sequence starts from
    // the text; a text equal to the next number uses it up; any other text leaves the sequence
    // alone. Not an undoable change. Answers whether the sequence moved.
    static bool numberEdited(TAPreferences *preferences, const QString &text);

private:
    TAInvoiceNumbering() = delete;
};
