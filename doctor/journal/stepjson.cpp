#include "doctor/journal/stepjson.h"

#include <QVariant>

#include <algorithm>
#include <iterator>

namespace doctor {

namespace {

constexpr const char *stepKinds[] = {"replace", "rights", "move"};
constexpr const char *nodeKinds[] = {"absent", "file", "directory", "link"};
constexpr char kindKey[] = "kind";
constexpr char pathKey[] = "path";
constexpr char targetKey[] = "target";
constexpr char temporaryKey[] = "temporary";
constexpr char fromKey[] = "from";
constexpr char toKey[] = "to";
constexpr char contentKey[] = "content";
constexpr char modeKey[] = "mode";
constexpr char ownerKey[] = "owner";
constexpr char groupKey[] = "group";
constexpr char attributesKey[] = "attributes";
constexpr char accessedKey[] = "accessed";
constexpr char modifiedKey[] = "modified";

QString encoded(const QByteArray &path)
{
    return QString::fromLatin1(path.toPercentEncoding("/ "));
}

QByteArray decoded(const QJsonValue &value)
{
    return QByteArray::fromPercentEncoding(value.toString().toLatin1());
}

/// Index of the word in a list of words; -1 if it is not there.
template<std::size_t count>
int indexOf(const char *const (&words)[count], const QJsonValue &value)
{
    const QByteArray word = value.toString().toLatin1();
    const auto *const found = std::find(std::begin(words), std::end(words), word);
    return found == std::end(words) ? -1 : int(found - std::begin(words));
}

template<typename Number>
void insertNumber(QJsonObject &json, const char *key, const std::optional<Number> &number)
{
    // As text: a JSON number has 53 bits.
    if (number)
        json.insert(QLatin1String(key), QString::number(*number));
}

template<typename Number>
std::optional<Number> numberAt(const QJsonObject &json, const char *key)
{
    bool isNumber = false;
    const qint64 number = json.value(QLatin1String(key)).toString().toLongLong(&isNumber);
    return isNumber ? std::make_optional(Number(number)) : std::nullopt;
}

QJsonObject jsonOf(const Node &node)
{
    QJsonObject json{{QLatin1String(kindKey), QLatin1String(nodeKinds[int(node.kind)])}};
    if (node.content)
        json.insert(QLatin1String(contentKey), QLatin1String(node.content->hash));
    insertNumber(json, modeKey, node.mode);
    insertNumber(json, ownerKey, node.owner);
    insertNumber(json, groupKey, node.group);
    if (node.times) {
        insertNumber(json, accessedKey, std::make_optional(node.times->accessed));
        insertNumber(json, modifiedKey, std::make_optional(node.times->modified));
    }
    if (node.attributes) {
        QJsonObject attributes;
        for (auto it = node.attributes->cbegin(); it != node.attributes->cend(); ++it)
            attributes.insert(encoded(it.key()), QString::fromLatin1(it->toBase64()));
        json.insert(QLatin1String(attributesKey), attributes);
    }
    return json;
}

/// Hashes are names of files in the journal.
bool isHash(const QByteArray &text)
{
    return text.size() == 64 && std::all_of(text.begin(), text.end(), [](char digit) {
               return (digit >= '0' && digit <= '9') || (digit >= 'a' && digit <= 'f');
           });
}

std::optional<Node> nodeOf(const QJsonObject &json)
{
    const int kind = indexOf(nodeKinds, json.value(QLatin1String(kindKey)));
    if (kind < 0)
        return {};
    Node node;
    node.kind = Node::Kind(kind);
    if (json.contains(QLatin1String(contentKey))) {
        node.content.emplace();
        node.content->hash = json.value(QLatin1String(contentKey)).toString().toLatin1();
        if (!isHash(node.content->hash))
            return {};
    }
    node.mode = numberAt<mode_t>(json, modeKey);
    node.owner = numberAt<uid_t>(json, ownerKey);
    node.group = numberAt<gid_t>(json, groupKey);
    const auto accessed = numberAt<qint64>(json, accessedKey);
    const auto modified = numberAt<qint64>(json, modifiedKey);
    if (accessed && modified)
        node.times = Times{*accessed, *modified};
    if (json.contains(QLatin1String(attributesKey))) {
        node.attributes.emplace();
        const QJsonObject attributes = json.value(QLatin1String(attributesKey)).toObject();
        for (auto it = attributes.begin(); it != attributes.end(); ++it)
            node.attributes->insert(decoded(it.key()),
                                    QByteArray::fromBase64(it.value().toString().toLatin1()));
    }
    return node;
}

bool isPlainPath(const QByteArray &path)
{
    const QList<QByteArray> names = path.split('/');
    return path.startsWith('/') && !path.contains('\0') &&
           std::all_of(names.begin() + 1, names.end(), [](const QByteArray &name) {
               return !name.isEmpty() && name != "." && name != "..";
           });
}

/// A step has what its kind needs, and no more. Both nodes of a replacement are files or links with
/// content.
bool isWhole(const TreeStep &step)
{
    const auto hasContent = [](const Node &node) {
        const bool needsContent = node.kind == Node::Kind::File || node.kind == Node::Kind::Link;
        return !needsContent || node.content;
    };
    switch (step.kind) {
    case TreeStep::Kind::Move:
        return isPlainPath(step.target) && step.temporary.isEmpty();
    case TreeStep::Kind::Rights:
        return !step.from.content && !step.to.content && step.target.isEmpty() &&
               step.temporary.isEmpty();
    default:
        return hasContent(step.from) && hasContent(step.to) && step.target.isEmpty() &&
               !step.temporary.isEmpty() && !step.temporary.contains('/') &&
               !step.temporary.contains('\0');
    }
}

} // namespace

QJsonObject jsonOf(const TreeStep &step)
{
    QJsonObject json{{QLatin1String(kindKey), QLatin1String(stepKinds[int(step.kind)])},
                     {QLatin1String(pathKey), encoded(step.path)},
                     {QLatin1String(fromKey), jsonOf(step.from)},
                     {QLatin1String(toKey), jsonOf(step.to)}};
    if (!step.target.isEmpty())
        json.insert(QLatin1String(targetKey), encoded(step.target));
    if (!step.temporary.isEmpty())
        json.insert(QLatin1String(temporaryKey), encoded(step.temporary));
    return json;
}

std::optional<TreeStep> stepOf(const QJsonObject &json)
{
    const int kind = indexOf(stepKinds, json.value(QLatin1String(kindKey)));
    const std::optional<Node> from = nodeOf(json.value(QLatin1String(fromKey)).toObject());
    const std::optional<Node> to = nodeOf(json.value(QLatin1String(toKey)).toObject());
    if (kind < 0 || !from || !to)
        return {};
    TreeStep step;
    step.kind = TreeStep::Kind(kind);
    step.path = decoded(json.value(QLatin1String(pathKey)));
    step.target = decoded(json.value(QLatin1String(targetKey)));
    step.temporary = decoded(json.value(QLatin1String(temporaryKey)));
    step.from = *from;
    step.to = *to;
    if (!isPlainPath(step.path) || !isWhole(step))
        return {};
    return step;
}

} // namespace doctor
