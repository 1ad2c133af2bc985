#ifndef POLICYTEXT_H
#define POLICYTEXT_H

#include <QtCore/QString>

// The policy's numbers in words, as docs/policy.md has them. A number that it does not have is shown in digits.

/// "BtTelephony"
QString statusText(int status);
/// "a telephone call over Bluetooth"; empty for a number beyond 0 to 19.
QString statusMeaning(int status);

/// A source as people call it: "file player" for "S+FilePlayer", also by the name that applications use. A source unknown to the library
/// stays as it is.
QString sourceText(const QString &source);

#endif
