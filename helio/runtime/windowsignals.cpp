#include "helio/runtime/windowsignals.h"

#include <QMetaMethod>

#include "host/kheliopluginwidget.h"

namespace helio {

WindowSignals::WindowSignals(KHelioPluginWidget *page) : QObject(page)
{
    const int end = QMetaMethod::fromSignal(&WindowSignals::forwarded).methodIndex();
    for (int index = staticMetaObject.methodOffset(); index < end; ++index) {
        const QMetaMethod signal = staticMetaObject.method(index);
        // As SIGNAL() writes it.
        const QByteArray name = QByteArray::number(QSIGNAL_CODE) + signal.methodSignature();
        connect(page, name.constData(), this, name.constData());
        connect(this, name.constData(), this,
                signal.parameterCount() == 0 ? SLOT(report()) : SLOT(report(QString)));
    }
}

void WindowSignals::report(const QString &page)
{
    const QMetaMethod signal = metaObject()->method(senderSignalIndex());
    emit forwarded(QString::fromLatin1(signal.name()),
                   signal.parameterCount() == 0 ? QStringList() : QStringList(page));
}

} // namespace helio
