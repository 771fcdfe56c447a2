#pragma once

#include <QString>

#include <optional>

// The numeric codes stored in coded fields, with the words the interface shows for them.
class TACodes {
public:
    enum InvoiceStatus { InvoiceDraft = 1, InvoiceSent = 2, InvoicePaid = 3 };
    enum ProjectStatus { ProjectDraft = 1, ProjectActive = 2, ProjectClosed = 3 };
    enum CalculationType { DiscountFirst = 0, TaxFirst = 1 };
    enum RepeatInterval {
        RepeatDaily = 1,
        RepeatWeekly = 2,
        RepeatTwoWeeks = 3,
        RepeatFourWeeks = 4,
        RepeatMonthly = 5,
        RepeatTwoMonths = 6,
        RepeatQuarterly = 7,
        RepeatSixMonths = 8,
        RepeatAnnually = 9,
    };
    enum ReminderType {
        ReminderNone = 0,
        ReminderWeekBefore = 1,
        ReminderTwoDaysBefore = 2,
        ReminderDayBefore = 3,
        ReminderSameDay = 4,
        ReminderDayAfter = 5,
        ReminderTwoDaysAfter = 6,
        ReminderWeekAfter = 7,
        ReminderOnDate = 8,
    };
    enum PhotoType { PhotoNone = 0, PhotoCompany = 1, PhotoStored = 2 };

    // A repeat step as a calendar amount: days or months.
    struct RepeatStep {
        int days = 0;
        int months = 0;
    };

    // Words of each code; the empty text for a value outside the table.
    static QString invoiceStatusWord(int status);
    static QString projectStatusWord(int status);
    static QString repeatIntervalWord(int interval);
    static QString reminderTypeWord(int reminder);

    // Any value outside 1..3 counts as a draft.
    static int foldedInvoiceStatus(qint64 stored);
    static int foldedProjectStatus(qint64 stored);

    static std::optional<RepeatStep> repeatStep(int interval);
    // Alarm offset from the event in seconds; none for "None", "on date" and unknown values.
    static std::optional<qint64> reminderOffsetSeconds(int reminder);

private:
    TACodes() = delete;
};
