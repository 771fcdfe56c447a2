#pragma once

#include "foundation/Result.h"

class QPrinter;
class TAInvoice;

// Paper output of an invoice: the render-only page drawing, scaled from points to the printer.
class LMInvoicePrinter {
public:
    // Sets the printer's paper to the template's page size without margins and prints every
    // page; an error when the printer could not be started or did not take every page.
    static Result<void> print(TAInvoice *invoice, QPrinter *printer);

private:
    LMInvoicePrinter() = delete;
};
