#pragma once

#include "tests/doctor/editors/sectionfile.h"

#include <QStringList>

namespace generated {

inline const QByteArrayList iniSections{"General", "general", "s", "two words", "a%2Bb", "%U4e2d"};
inline const QByteArrayList iniKeys{"k",           "K",     "other",  "two words",
                                    "two%20words", "x%2By", "%U4e2d", "#k"};

inline QString decodedName(const QByteArray &name)
{
    if (name == "a%2Bb")
        return QStringLiteral("a+b");
    if (name == "x%2By")
        return QStringLiteral("x+y");
    if (name == "%U4e2d")
        return QStringLiteral("中");
    return QString::fromUtf8(name).replace(QLatin1String("%20"), QLatin1String(" "));
}

inline QString sectionNamed(const QByteArray &name)
{
    return name.toLower() == "general" ? QString() : decodedName(name);
}

inline QByteArray randomValue(Chooser &choose)
{
    const QByteArrayList values{"",
                                "plain",
                                "two words",
                                "1, 2,3",
                                "\"a;b\"",
                                "\"a, b\", c",
                                "C:\\\\dir",
                                "\\x4e2d1",
                                "\\x41\"b\"",
                                "\"open\\\"\"",
                                "a\\\n  b",
                                "\\101\\0078",
                                "\"a\nb\"",
                                "@@at",
                                "\\ta\\n",
                                "\\q\\'\\?",
                                "\"  kept  \"",
                                "a\" b \"c",
                                "\xe4\xb8\xad",
                                "-1.5",
                                "a=b",
                                "\\x20",
                                "x\\ y",
                                "\"\""};
    return choose.of(values);
}

inline SectionFile randomIni(Chooser &choose)
{
    SectionFile file;
    const QByteArray lineEnd = choose.of({"\n", "\r\n", "\n", "\r"});
    if (choose.percent(10))
        file.start = "\xef\xbb\xbf;" + lineEnd;
    QString section;
    for (int lines = choose.below(15); lines > 0; --lines) {
        SectionFile::Entry entry;
        if (choose.percent(20))
            entry.lead = choose.of({"; a \"comment\" = 1", "", "  ", "\t; x", "junk"}) + lineEnd;
        if (choose.percent(25)) {
            const QByteArray name = choose.of(iniSections);
            section = sectionNamed(name);
            entry.lead +=
                choose.of({"[", " [ "}) + name + choose.of({"]", " ]", "] ; c"}) + lineEnd;
        }
        const QByteArray name = choose.of(iniKeys);
        entry.section = section;
        entry.key = decodedName(name);
        entry.before = choose.of({"", "  "}) + name + choose.of({"=", " = ", "= "});
        entry.value = randomValue(choose);
        entry.hasComment = !entry.value.isEmpty() && choose.percent(15);
        entry.after = (entry.hasComment ? " ; \"note"
                                        : choose.of({"", "", entry.value.isEmpty() ? "" : " "})) +
                      lineEnd;
        file.entries.append(entry);
    }
    if (!file.entries.isEmpty() && choose.percent(30))
        file.entries.last().after.chop(lineEnd.size());
    return file;
}

inline QString wholeName(const QString &section, const QString &key)
{
    return section.isEmpty() ? key : section + QLatin1Char('/') + key;
}

/// A key that the file has, or one that it may lack.
inline QStringList randomKey(Chooser &choose, const SectionFile &file)
{
    if (!file.entries.isEmpty() && choose.percent(60)) {
        const SectionFile::Entry &entry = file.entries.at(choose.below(file.entries.size()));
        return {entry.section, entry.key};
    }
    return {sectionNamed(choose.of(iniSections + QByteArrayList{"", "new", "a/b"})),
            decodedName(choose.of(iniKeys + QByteArrayList{"new", "a=b;\"c\"", "[k]"}))};
}

} // namespace generated
