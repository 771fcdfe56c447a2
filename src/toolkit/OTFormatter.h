#pragma once

#include <QString>
#include <QValidator>

#include <memory>

// Keystroke validation of amount and percentage fields. The rules live in the pure function
// isPartialStringValid(), so they can be checked without a widget; validate() feeds it from
// the edit it sees and remembers the last accepted state.
class OTFormatter : public QValidator {
    Q_OBJECT
public:
    enum class Kind { Amount, Percentage };

    struct PartialResult {
        bool valid = false;   // true only for an empty proposal
        bool refused = false; // the edit must not happen at all
        QString text;         // what the field should show (when not refused)
        int location = 0;     // where the cursor goes, with an empty selection
        QString errorDescription;
    };

    explicit OTFormatter(Kind kind, QObject *parent = nullptr);

    static std::unique_ptr<OTFormatter> percentageFormatter(QObject *parent = nullptr);
    static std::unique_ptr<OTFormatter> amountFormatter(QObject *parent = nullptr);

    Kind kind() const { return m_kind; }
    static QString validCharacters() { return QStringLiteral(".,0123456789"); }

    // One keystroke: the proposed text and cursor against the text and selection before it.
    // deleteKeyPressed is true for the key that deletes backwards.
    static PartialResult isPartialStringValid(const QString &proposed, int proposedLocation,
                                              const QString &original, int originalLocation,
                                              int originalSelectionLength, bool deleteKeyPressed);

    State validate(QString &input, int &pos) const override;
    // The state validate() compares the next edit with, as a field reports it.
    void setOriginal(const QString &text, int location, int selectionLength = 0);

private:
    Kind m_kind;
    mutable QString m_original;
    mutable int m_originalLocation = 0;
    mutable int m_originalSelectionLength = 0;
};
