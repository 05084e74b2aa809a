#pragma once

#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

namespace standin {

/// What a program or shared library says of itself and of the libraries that it needs. Only read:
/// nothing of the file is ever run or mapped.
struct ElfFile
{
    enum class State {
        Good,
        Unreadable,
        Foreign, ///< no ELF file at all
        Broken
    };

    State state = State::Unreadable;
    int machine = 0; ///< processor, as in elf.h
    int width = 0;   ///< ELFCLASS32 or ELFCLASS64
    QStringList needed;
    QString name;            ///< by which others ask for it; empty when it has none
    QStringList earlySearch; ///< DT_RPATH
    QStringList lateSearch;  ///< DT_RUNPATH
    QMap<QString, QStringList> neededVersions; ///< by library
    QSet<QString> definedVersions;

    bool isForSameMachine(const ElfFile &other) const;
};

/// Reads a file from the descriptor, which stays open.
ElfFile readElf(int descriptor);

/// Reads the file of that path; a file that is none, such as a pipe, is unreadable.
ElfFile readElf(const QString &path);

} // namespace standin
