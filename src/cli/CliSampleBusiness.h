#pragma once

class TADatabase;

// Fills an empty document with a small sample business: clients, projects with timers and
// materials, invoices in two currencies, a payment, taxes, a recurring invoice and catalogue
// entries. Dates are counted from OTClock, so a fixed clock gives the same document each time.
class CliSampleBusiness {
public:
    static void fill(TADatabase &database);

private:
    CliSampleBusiness() = delete;
};
