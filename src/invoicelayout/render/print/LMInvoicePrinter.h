#pragma once

class QPrinter;
class TAInvoice;

// Paper output of an invoice: the render-only page drawing, scaled from points to the printer.
class LMInvoicePrinter {
public:
    // Sets the printer's paper to the template's page size without margins and prints every
    // page; false when the printer could not be started.
    static bool print(TAInvoice *invoice, QPrinter *printer);

private:
    LMInvoicePrinter() = delete;
};
