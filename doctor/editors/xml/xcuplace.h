#pragma once

#include "doctor/editors/xml/xmlreader.h"

namespace doctor {

/// A <prop> and its plain value.
struct XcuProperty
{
    int position = 0;
    /// Of the element <value>; empty without it.
    XmlToken value;
    Span endTag;
    QString text;
    /// It has others in it than text and <unicode>.
    bool hasOthers = false;
};

/// Where a property stands in registrymodifications.xcu.
struct XcuPlace
{
    QString problem;
    /// What the suite reads.
    std::optional<XcuProperty> property;
    /// The property has values for languages.
    bool hasLanguages = false;
    /// What to cut so that the property is gone.
    QVector<Span> removal;
};

/// The path is that of the property's node: an item's oor:path with the names of nodes in it.
XcuPlace placeInXcu(const QByteArray &content, const QString &path, const QString &name);

} // namespace doctor
