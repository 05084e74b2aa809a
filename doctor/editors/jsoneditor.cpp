#include "doctor/editors/jsoneditor.h"

#include "doctor/editors/edits.h"
#include "doctor/editors/json/jsonplace.h"
#include "texts/texts.h"

namespace doctor {

namespace {

JsonPlace placeOf(const QByteArray &content, const QStringList &key)
{
    JsonPlace place;
    place.problem = inputProblem(content, key);
    return place.problem.isEmpty() ? placeInJson(content, key) : place;
}

bool isThere(const JsonPlace &place, const QStringList &key)
{
    return place.problem.isEmpty() && place.parts == key.size();
}

/// The value in an object for each of the names.
QByteArray nested(const QStringList &names, const QByteArray &value)
{
    QByteArray text;
    for (const QString &name : names)
        text += '{' + encodedJson(name) + ": ";
    return text + value + QByteArray(names.size(), '}');
}

EditedContent added(const QByteArray &content, const QStringList &key, const JsonPlace &place,
                    const QByteArray &value)
{
    const QString &name = key.at(place.parts);
    const JsonContainer &container = place.container;
    if (place.value.kind != JsonToken::Kind::Begin)
        return refused(texts::tr("“%1” cannot be added to a value that has no members.").arg(name));
    if (!container.isObject && name != QString::number(container.members))
        return refused(texts::tr("“%1” is not the next index of the array.").arg(name));
    QByteArray text = nested(key.mid(place.parts + 1), value);
    if (container.isObject) {
        const QByteArray colon =
            container.members > 0 ? bytesIn(content, container.colon) : QByteArrayLiteral(": ");
        text.prepend(encodedJson(name) + colon);
    }
    int position = container.begin;
    if (container.members > 0) {
        position = container.last.end;
        text.prepend(',' + bytesIn(content, {container.lastSpace, container.last.begin}));
    }
    return edited(content, {{{position, position}, text}});
}

/// Sets to what text gives for the kind of the value that is there.
template<typename Text>
EditedContent withValue(const QByteArray &content, const QStringList &key, Text text)
{
    const JsonPlace place = placeOf(content, key);
    if (!place.problem.isEmpty())
        return refused(place.problem);
    if (!isThere(place, key))
        return added(content, key, place, text(JsonToken::Kind::String));
    if (place.value.kind == JsonToken::Kind::Begin)
        return refused(atLine(content, place.value.span.begin,
                              texts::tr("an object or array stands here, not a value.")));
    return edited(content, {{place.value.span, text(place.value.kind)}});
}

} // namespace

std::optional<FoundKey> JsonEditor::find(const QByteArray &content, const QStringList &key) const
{
    const JsonPlace place = placeOf(content, key);
    if (!isThere(place, key))
        return std::nullopt;
    const QByteArray value = bytesIn(content, place.value.span);
    const bool isString = place.value.kind == JsonToken::Kind::String;
    return FoundKey{isString ? decodedJson(value) : utf8Text(value),
                    lineAt(content, place.value.span.begin)};
}

EditedContent JsonEditor::set(const QByteArray &content, const QStringList &key,
                              const QString &value) const
{
    if (!hasUtf8(value))
        return refused(texts::tr("JSON cannot hold this text: it has half a character."));
    return withValue(content, key, [&](JsonToken::Kind kind) {
        const QByteArray bare = value.toUtf8();
        return kind == JsonToken::Kind::Bare && isBareJson(bare) ? bare : encodedJson(value);
    });
}

EditedContent setBareJson(const QByteArray &content, const QStringList &key,
                          const QByteArray &value)
{
    if (!isBareJson(value))
        return refused(texts::tr("This is not a number, true, false or null of JSON."));
    return withValue(content, key, [&](JsonToken::Kind /*before*/) { return value; });
}

EditedContent JsonEditor::remove(const QByteArray &content, const QStringList &key) const
{
    const JsonPlace place = placeOf(content, key);
    if (!place.problem.isEmpty())
        return refused(place.problem);
    QVector<Edit> edits;
    if (isThere(place, key)) {
        for (const Span &span : place.removal)
            edits.append(Edit{span, {}});
    }
    return edited(content, edits);
}

} // namespace doctor
