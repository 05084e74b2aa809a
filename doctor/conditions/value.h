#pragma once

#include <QMap>
#include <QString>

namespace doctor {

/// How a value is compared and shown. Sizes are bytes, ages seconds, modes the permission bits.
enum class ValueType {
    Text,
    Number,
    Flag,
    Size,
    Age,
    Version,
    Mode
};

/// Something that a probe has seen.
struct Value
{
    ValueType type = ValueType::Text;
    QString text; ///< of a text or version
    double number = 0;

    static Value ofText(const QString &text) { return {ValueType::Text, text, 0}; }
    static Value ofVersion(const QString &text) { return {ValueType::Version, text, 0}; }
    static Value ofFlag(bool flag) { return {ValueType::Flag, {}, flag ? 1.0 : 0.0}; }
    static Value ofNumber(double number) { return {ValueType::Number, {}, number}; }
    static Value ofSize(double bytes) { return {ValueType::Size, {}, bytes}; }
    static Value ofAge(double seconds) { return {ValueType::Age, {}, seconds}; }
    static Value ofMode(unsigned bits) { return {ValueType::Mode, {}, static_cast<double>(bits)}; }

    /// As people read it: "12.5 MiB", "3 days", "640", "true".
    QString shown() const;
};

using Values = QMap<QString, Value>;

} // namespace doctor
