#pragma once

#include "doctor/editors/json/jsonreader.h"

#include <QStringList>
#include <QVector>

namespace doctor {

/// An object or array, and where its members stand.
struct JsonContainer
{
    bool isObject = false;
    int members = 0;
    /// Behind the opening bracket.
    int begin = 0;
    /// The last member: its name and value, and the end of the bracket or comma before it.
    Span last;
    int lastSpace = 0;
    /// Between the last member's name and value.
    Span colon;
};

/// Where a key stands in a JSON text. Of members with one name the last counts.
struct JsonPlace
{
    QString problem;
    /// How many parts of the key are there.
    int parts = 0;
    /// What the last of these parts names; its kind is Begin for an object or array.
    JsonToken value;
    /// If that is an object or array.
    JsonContainer container;
    /// What to cut so that the whole key is gone, commas included.
    QVector<Span> removal;
};

JsonPlace placeInJson(const QByteArray &content, const QStringList &key);

} // namespace doctor
