#include "doctor/machine/secrets.h"

#include <QRegularExpression>

namespace doctor {

QString withoutSecret(const QString &name, const QString &value)
{
    static const QRegularExpression secretName(
        QStringLiteral("pass(w(or)?d|phrase)?$|passw|secret|token|credential|cookie|"
                       "(api|access|private|auth)_?key|auth(orization)?$"),
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression userInAddress(QStringLiteral("://[^/@\\s]+@"));
    const QString hidden = QStringLiteral("(hidden)");
    if (!value.isEmpty() && secretName.match(name).hasMatch())
        return hidden;
    QString shown = value;
    return shown.replace(userInAddress, QStringLiteral("://") + hidden + QLatin1Char('@'));
}

} // namespace doctor
