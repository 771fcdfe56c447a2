#pragma once

#include <QString>
#include <QStringView>

// Text prepared for matching with the [c] and [d] modifiers: case folded, and diacritics
// removed (canonical decomposition with the combining marks dropped). Both sides of a
// comparison are folded the same way and then compared code unit by code unit, which keeps
// searches over many objects on the fast plain-text paths.
namespace TextFolding {

enum Option { CaseInsensitive = 1, DiacriticInsensitive = 2 };
using Options = int;

QString fold(const QString &text, Options options);

// The same without allocating in the common case: answers a view of the text itself when
// nothing changes, otherwise of the buffer, which it reuses. The view lives until the
// buffer's next use.
QStringView fold(const QString &text, Options options, QString &buffer);

} // namespace TextFolding
