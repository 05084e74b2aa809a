#include "doctor/format/fieldreader.h"

#include <QRegularExpression>

#include <algorithm>
#include <numeric>

#include "doctor/conditions/texttemplate.h"
#include "texts/texts.h"

namespace doctor {

namespace {

constexpr int longestText = 4000;
constexpr int longestId = 100;
constexpr int longestSuggestible = 40;
constexpr int mostLanguages = 100;

/// How many characters have to be added, removed or replaced.
int distance(const QString &first, const QString &second)
{
    QVector<int> row(second.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (int i = 0; i < first.size(); ++i) {
        int diagonal = row[0];
        row[0] = i + 1;
        for (int j = 0; j < second.size(); ++j) {
            const int above = row[j + 1];
            const int replaced = diagonal + (first[i] == second[j] ? 0 : 1);
            row[j + 1] = std::min({replaced, above + 1, row[j] + 1});
            diagonal = above;
        }
    }
    return row.last();
}

bool isLanguage(const QString &code)
{
    static const QRegularExpression form(QStringLiteral("^[a-z]{2,3}(_[A-Z]{2}|_[A-Z][a-z]{3})?$"));
    return form.match(code).hasMatch();
}

} // namespace

QString suggestion(const QString &mistyped, const QStringList &names)
{
    if (mistyped.size() > longestSuggestible)
        return {};
    constexpr int close = 2;
    QString closest;
    int least = close + 1;
    for (const QString &name : names) {
        const int steps = distance(mistyped.toLower(), name.toLower());
        if (steps < least && steps < name.size()) {
            least = steps;
            closest = name;
        }
    }
    return closest.isEmpty() ? QString() : texts::tr("; did you mean \"%1\"?").arg(closest);
}

void reportUnknown(const JsonNode &object, const QStringList &known, const QString &what)
{
    for (const auto &[name, node] : object.members()) {
        if (!known.contains(name))
            node.reportName(texts::tr("unknown name \"%1\"; %2 has %3%4")
                                .arg(name.left(100), what, known.join(QStringLiteral(", ")),
                                     suggestion(name, known)));
    }
}

bool isObjectOrReport(const JsonNode &node, const QString &what)
{
    if (!node.isObject())
        node.report(texts::tr("expected an object: %1").arg(what));
    return node.isObject();
}

QString readText(const JsonNode &node, int longest)
{
    const QString text = node.text();
    if (!node.isText() || text.isEmpty())
        node.report(texts::tr("expected a text"));
    else if (text.size() > longest)
        node.report(texts::tr("expected a text of at most %1 characters").arg(longest));
    return text.left(longest);
}

void checkPlaceholders(const JsonNode &node, const QString &text, const QSet<QString> &values)
{
    const QString problem = templateProblem(text);
    if (!problem.isEmpty()) {
        node.report(problem);
        return;
    }
    for (const QString &name : placeholdersOf(text)) {
        if (values.contains(name))
            continue;
        QStringList known = values.values();
        std::sort(known.begin(), known.end());
        node.report(texts::tr("there is no value {%1} here; there is %2%3")
                        .arg(name,
                             known.isEmpty() ? texts::tr("none") : known.join(QStringLiteral(", ")),
                             suggestion(name, known)));
    }
}

LocalText readLocalText(const JsonNode &node, const QSet<QString> &values)
{
    LocalText texts;
    if (node.isText()) {
        texts.byLanguage.insert(QStringLiteral("en"), readText(node, longestText));
    } else if (node.isObject() && !node.names().isEmpty()) {
        for (const auto &[language, member] : node.members().mid(0, mostLanguages)) {
            if (!isLanguage(language))
                member.reportName(texts::tr("expected a language such as \"en\" or \"zh_CN\""));
            texts.byLanguage.insert(language, readText(member, longestText));
        }
    } else {
        node.report(texts::tr("expected a text, or texts by language: {\"en\": \"…\"}"));
    }
    for (const QString &text : qAsConst(texts.byLanguage)) {
        // Only braces mean something in texts for people.
        checkPlaceholders(node, QString(text).replace(QLatin1Char('$'), QLatin1String("$$")),
                          values);
    }
    return texts;
}

QString readId(const JsonNode &object)
{
    static const QRegularExpression form(QStringLiteral("^[a-z0-9]+(?:[.-][a-z0-9]+)*$"));
    const std::optional<JsonNode> node = object.member("id");
    if (!node) {
        object.report(texts::tr("expected an \"id\""));
        return {};
    }
    QString id = readText(*node, longestId);
    if (!id.isEmpty() && !form.match(id).hasMatch())
        node->report(texts::tr("expected an id of lower-case words, such as \"fonts.missing\""));
    return id;
}

} // namespace doctor
