#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>
#include <optional>

#include "doctor/model/plan.h"
#include "doctor/why/open/filetype.h"
#include "doctor/why/open/giochoice.h"
#include "doctor/why/open/kdechoice.h"
#include "doctor/why/open/xdgchoice.h"

namespace doctor {

/// What opens a file or a type, and why.
struct Opening
{
    enum class Verdict {
        Opens,
        NotAsSaid, ///< something opens it, but not what a list says
        Nothing,   ///< nothing opens it
        Undecided  ///< its type is not known, or a list cannot be looked at
    };

    Verdict verdict = Verdict::Undecided;
    FoundType found;
    /// Where a package declares the type.
    Place package;
    /// The type without alias, then the more general ones.
    QStringList types;
    GioChoice gio;
    OpenChoice xdgMime;
    OpenChoice kde;
    /// What xdg-open hands the file to; empty where it opens what xdg-mime names.
    QString xdgOpen;
    /// For people.
    QString text;
    /// The desktop entry that a repair would have open it; empty if none is proposed.
    QString proposal;

    bool isOneForAll() const { return xdgMime.entry == gio.choice.entry; }
};

/// A suffix of the suite's documents and what opens it.
struct SuffixOpening
{
    QString suffix;
    QString type;
    OpenChoice gio;
    OpenChoice xdgMime;
};

/// Answers for one session, whose lists it reads once. Nothing in here changes anything or waits
/// for a pipe.
class OpenQuestion
{
public:
    explicit OpenQuestion(const Machine &machine);
    // A member refers to another one.
    Q_DISABLE_COPY(OpenQuestion)

    /// Answers for a file or a type. A file of that name comes before a type. What names no known
    /// class of types may still be a missing file, if its folder is there.
    Opening of(const QString &subject) const;
    Opening ofType(const QString &type) const;
    /// What gio opens a type with, and the verdict: without the other tools, a package and a
    /// proposal, which take most of the time.
    Opening byGio(const QString &type) const;
    Opening ofFile(const QString &path) const;
    /// By the name alone, as if a file were called "a.docx".
    Opening ofSuffix(const QString &suffix) const;
    QVector<SuffixOpening> ofSuffixes() const;

    /// Has the user's own list open the type with this entry: one line of one file.
    Plan repair(const QString &type, const QString &entry) const;

    const AssociationLists &lists() const { return m_lists; }
    const DesktopEntries &entries() const { return m_entries; }

    /// The suffixes of the suite's documents.
    static QStringList suffixes();
    /// The suite's desktop entry for documents of a suffix; empty for other suffixes.
    static QString entryOf(const QString &suffix);

private:
    Opening answer(const FoundType &found) const;
    void decide(Opening &opening) const;
    /// The suite's entry for a type; empty if it is not installed or the type is none of the
    /// suite's.
    QString suiteEntry(const QString &type) const;
    /// The entry for it of the office suite that is looked after; empty without one.
    QString installedEntry(const Opening &opening) const;
    /// What a repair would have open it; empty if that is nothing.
    QString proposal(const Opening &opening) const;

    OpenPlaces m_places;
    MimeTypes m_types;
    AssociationLists m_lists;
    DesktopEntries m_entries;
    XdgMime m_xdgMime;
    /// It reads all entries, so only once it is asked.
    mutable std::unique_ptr<KdeChoices> m_kde;
};

} // namespace doctor
