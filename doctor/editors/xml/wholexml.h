#pragma once

#include <QByteArray>
#include <QString>

namespace doctor {

/// Whether XML is well-formed as far as XmlReader looks, or where it is not.
struct XmlState
{
    bool isWhole = false;
    /// The name of the outermost element.
    QString root;
    QString problem;
    /// Of the problem; 0 without one.
    int line = 0;
};

XmlState xmlState(const QByteArray &content);

/// The settings of LibreOffice (registrymodifications.xcu) that can still be read: each item that
/// is whole, within a root of its own. Items that a damaged part swallows are lost.
QByteArray wholeItems(const QByteArray &content);

} // namespace doctor
