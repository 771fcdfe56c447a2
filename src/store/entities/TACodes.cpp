#include "store/entities/TACodes.h"

#include <array>

namespace {
QString wordAt(int value, int first, const auto &words) {
    const int index = value - first;
    if (index < 0 || index >= int(words.size()))
        return {};
    return QString::fromLatin1(words[size_t(index)]);
}

constexpr std::array kStatusWords{"Draft", "Sent", "Paid"};
constexpr std::array kProjectWords{"Draft", "Active", "Closed"};
constexpr std::array kRepeatWords{"Daily",      "Weekly",    "Two Weeks",  "Four Weeks", "Monthly",
                                  "Two Months", "Quarterly", "Six Months", "Annually"};
constexpr std::array kReminderWords{"None",         "1 week before", "2 days before",
                                    "1 day before", "same day",      "1 day after",
                                    "2 days after", "1 week after",  "on date"};
constexpr std::array<TACodes::RepeatStep, 9> kRepeatSteps{
    {{1, 0}, {7, 0}, {14, 0}, {28, 0}, {0, 1}, {0, 2}, {0, 3}, {0, 6}, {0, 12}}};
constexpr std::array<qint64, 7> kReminderOffsets{-604800, -172800, -86400, 0,
                                                 86400,   172800,  604800};
} // namespace

QString TACodes::invoiceStatusWord(int status) {
    return wordAt(status, 1, kStatusWords);
}

QString TACodes::projectStatusWord(int status) {
    return wordAt(status, 1, kProjectWords);
}

QString TACodes::repeatIntervalWord(int interval) {
    return wordAt(interval, 1, kRepeatWords);
}

QString TACodes::reminderTypeWord(int reminder) {
    return wordAt(reminder, 0, kReminderWords);
}

int TACodes::foldedInvoiceStatus(qint64 stored) {
    return stored >= InvoiceDraft && stored <= InvoicePaid ? int(stored) : InvoiceDraft;
}

int TACodes::foldedProjectStatus(qint64 stored) {
    return stored == ProjectActive || stored == ProjectClosed ? int(stored) : ProjectDraft;
}

std::optional<TACodes::RepeatStep> TACodes::repeatStep(int interval) {
    if (interval < RepeatDaily || interval > RepeatAnnually)
        return std::nullopt;
    return kRepeatSteps[size_t(interval - 1)];
}

std::optional<qint64> TACodes::reminderOffsetSeconds(int reminder) {
    if (reminder < ReminderWeekBefore || reminder > ReminderWeekAfter)
        return std::nullopt;
    return kReminderOffsets[size_t(reminder - 1)];
}
