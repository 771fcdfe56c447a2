#include "toolkit/OTFormatter.h"

OTFormatter::OTFormatter(Kind kind, QObject *parent)
    : QValidator(parent)
    , m_kind(kind) {}

std::unique_ptr<OTFormatter> OTFormatter::percentageFormatter(QObject *parent) {
    return std::make_unique<OTFormatter>(Kind::Percentage, parent);
}

std::unique_ptr<OTFormatter> OTFormatter::amountFormatter(QObject *parent) {
    return std::make_unique<OTFormatter>(Kind::Amount, parent);
}

OTFormatter::PartialResult
OTFormatter::isPartialStringValid(const QString &proposed, int proposedLocation,
                                  const QString &original, int originalLocation,
                                  int originalSelectionLength, bool deleteKeyPressed) {
    PartialResult result;
    if (proposed.isEmpty()) {
        result.valid = true;
        return result;
    }
    QString text = proposed;
    int location = proposedLocation;
    if (proposedLocation > originalLocation) {
        const QString inserted =
            proposed.mid(originalLocation, proposedLocation - originalLocation);
        for (const QChar c : inserted) {
            if (!validCharacters().contains(c)) {
                result.refused = true;
                result.errorDescription = QStringLiteral("Invalid characters");
                return result;
            }
        }
    } else if (proposedLocation < originalLocation && originalSelectionLength == 0 &&
               location >= 4 && (location - 4) % 5 == 0) {
        // The cursor just reached a group separator: take the character before it as well.
        if (deleteKeyPressed)
            --location;
        int q = location;
        q -= q / 5;
        if (q >= 0 && q < text.size())
            text.remove(q, 1);
    }
    Q_UNUSED(original);
    result.text = text;
    result.location = location;
    return result;
}

QValidator::State OTFormatter::validate(QString &input, int &pos) const {
    const bool backwardsDelete =
        input.size() == m_original.size() - 1 && pos == m_originalLocation - 1;
    const PartialResult result = isPartialStringValid(input, pos, m_original, m_originalLocation,
                                                      m_originalSelectionLength, backwardsDelete);
    if (result.refused)
        return Invalid;
    if (!result.valid) {
        input = result.text;
        pos = qBound(0, result.location, static_cast<int>(input.size()));
    }
    m_original = input;
    m_originalLocation = pos;
    m_originalSelectionLength = 0;
    return Acceptable;
}

void OTFormatter::setOriginal(const QString &text, int location, int selectionLength) {
    m_original = text;
    m_originalLocation = location;
    m_originalSelectionLength = selectionLength;
}
